#include "app/ground/commands.h"
#include "modes/windows/samplefixture.h"

namespace spectrane::testing_windows {
namespace {

using testing::HasSubstr;

TEST_F(DNAWindow, BeginsEmptyWithTheWavelengthsOfConfigIni) {
  Settings.PutSetting("DNA/Protein Test", "WaveLength 2", "230");
  Open();
  EXPECT_EQ(Headings(),
            "No.|Sample Name|Abs(260.0nm)|Abs(230.0nm)|Abs(320.0nm)|DNA(ug/ml)|Protein(ug/ml)|Radio|Note");
  EXPECT_EQ(Rows(), 0);
  EXPECT_EQ(Window->GetWaveLength(1), 230.0);
  EXPECT_EQ(Window->Caption(), QStringLiteral("DNA_Protein"));
  EXPECT_EQ(Window->CheckFileType(), 5);
  ExpectNamesEverywhere(*Window);
}

TEST_F(DNAWindow, ShowsTheRowsOfAFileAsTheyStand) {
  OpenTable();
  EXPECT_EQ(RowText(0), "1|a|0.500|0.300|0.050|1.5000|2.5000|3.5000|note of a");
  EXPECT_EQ(Window->OpenFileName(), PathOf("run.dna"));
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(DNAWindow, ResultsHaveFewerDecimalsTheLargerTheyAre) {
  const struct {
    double Value;
    const char* Text;
  } cases[] = {{1234.56, "1234.6"},  {999.951, "1000.0"}, {999.95, "999.95"},    {99.9951, "100.00"},
               {99.995, "99.995"},   {9.99951, "10.000"}, {9.9995, "9.9995"},    {0, "0.0000"},
               {-9.9999, "-9.9999"}, {-10, "-10.000"},    {-99.9995, "-100.00"}, {-100, "-100.00"},
               {-1000, "-1000.0"},   {std::nan(""), "-"}};
  std::vector<DNARecord> samples;
  for (const auto& c : cases) {
    samples.push_back(DNASample("x", 0, 0, 0));
    samples.back().DNA = samples.back().Protein = samples.back().Ratio = c.Value;
  }
  ASSERT_TRUE(WriteSamples(DNAModule(), Folder.Path("run.dna"), DNATable(), samples));
  Open();
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("run.dna")));
  for (int row = 0; row < Rows(); ++row) {
    for (const int column : {5, 6, 7}) EXPECT_EQ(Cell(row, column).toStdString(), cases[row].Text);
  }
}

TEST_F(DNAWindow, AbsorbancesFollowThePrecision) {
  OpenTable();
  Link.Formats.ApplyOption(1);
  Window->FormatsChanged();
  EXPECT_EQ(RowText(0), "1|a|0.5000|0.3000|0.0500|1.5000|2.5000|3.5000|note of a");
}

TEST_F(DNAWindow, MeasuresNothingAndSaysWhy) {
  OpenTable();
  ConnectNow();
  const std::int64_t before = Instrument.Requests();
  for (const int command : {kStartTest, kSetBlank}) {
    EXPECT_FALSE(Window->Offers(command));
    EXPECT_EQ(Window->WhyNot(command),
              QStringLiteral("This window measures nothing: its rows come from files."));
  }
  Window->mmuStartTest();
  Window->mmuOperationRezero();
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(Instrument.Requests(), before);
}

TEST_F(DNAWindow, NamesAndNotesAreTypedOverAndSaved) {
  OpenTable();
  TypeInto(0, 1, "first");
  QTest::keyClick(Editor(), Qt::Key_Return);
  TypeInto(1, 8, "cloudy");
  EXPECT_TRUE(Window->mmuSaveFile());
  DNAOption option;
  std::vector<DNARecord> samples;
  EXPECT_FALSE(LoadDataFile(DNAModule(), Folder.Path("run.dna"), option, samples));
  ASSERT_EQ(samples.size(), 2u);
  EXPECT_EQ(samples[0].Name, "first");
  EXPECT_EQ(samples[0].Note, "note of a");
  EXPECT_EQ(samples[1].Note, "cloudy");
  EXPECT_EQ(samples[1].Abs[3], 7777.0);
  EXPECT_EQ(option.Spare, 4711);
}

TEST_F(DNAWindow, TextsAreCutAtTheWidthOfTheFileInOneLine) {
  OpenTable();
  const QModelIndex note = Grid->model()->index(0, 8);
  EXPECT_TRUE(Grid->model()->setData(note, QString(300, u'n') + u'x'));
  EXPECT_EQ(note.data().toString(), QString(256, u'n'));
  EXPECT_TRUE(Grid->model()->setData(note, QStringLiteral("two\nlines")));
  EXPECT_EQ(note.data().toString(), QStringLiteral("two lines"));
}

TEST_F(DNAWindow, DeletingARowAsks) {
  OpenTable();
  Grid->selectRow(1);
  Boxes.ExpectYesNo(QStringLiteral("Are you sure to remove Record <2>from this file?"), Answer::Yes);
  Window->mmuDeleteReport();
  ASSERT_EQ(Rows(), 1);
  EXPECT_EQ(Cell(0, 1), QStringLiteral("a"));
}

TEST_F(DNAWindow, SaveAsOffersItsOwnKind) {
  OpenTable();
  Boxes.ExpectSaveName(QStringLiteral("DNA/Protein Test files(*.dna)|*.dna"), PathOf("copy"));
  EXPECT_TRUE(Window->mmuSaveAsFile());
  EXPECT_EQ(ReadBytes(Folder.Path("copy.dna")), ReadBytes(Folder.Path("run.dna")));
  EXPECT_EQ(Stored("DNA/Protein Test", "File Path"), Folder.Path("copy.dna"));
}

TEST_F(DNAWindow, RefusesAPictureFile) {
  OpenTable();
  Boxes.ExpectMessage(1025);
  Window->mmuFileOutputBMP();
}

TEST_F(DNAWindow, TextExportHasFormulasAndGrid) {
  OpenTable();
  Boxes.ExpectSaveName(Words(921), PathOf("run.txt"));
  Window->mmuFileOutputTXT();
  EXPECT_THAT(
      ReadBytes(Folder.Path("run.txt")),
      HasSubstr("\nAnalysis Mode: Mode 1\n"
                "Conc.(DNA) = [Abs(260.0nm)-Abs(320.0nm)]×(62.9)-[Abs(280.0nm)-Abs(320.0nm)]×(36)\n"
                "Conc.(Protein) = [Abs(280.0nm)-Abs(320.0nm)]×(1552)-[Abs(260.0nm)-Abs(320.0nm)]×(757.3)\n"
                "Radio = [Abs(260.0nm)-Abs(320.0nm)]/[Abs(280.0nm)-Abs(320.0nm)]\n"
                "No.\tSample Name\tAbs(260.0nm)\tAbs(280.0nm)\tAbs(320.0nm)\tDNA(ug/ml)\tProtein(ug/ml)\t"
                "Radio\tNote\n"
                "1\ta\t0.500\t0.300\t0.050\t1.5000\t2.5000\t3.5000\tnote of a\n"));
}

TEST_F(DNAWindow, CutAndContradictoryFiles) {
  OpenTable();
  const std::string whole = ReadBytes(Folder.Path("run.dna"));
  const struct {
    const char* Name;
    std::string Bytes;
    int Rows;
  } cases[] = {
      {"more rows stated", whole.substr(0, 176) + Long(3) + whole.substr(180), 2},
      {"negative rows", whole.substr(0, 176) + Long(-2) + whole.substr(180), 0},
      {"cut in the last row", whole.substr(0, whole.size() - 1), 1},
      {"cut in the option block", whole.substr(0, 150), 0},
  };
  for (const auto& c : cases) {
    WriteBytes(Folder.Path("bad.dna"), c.Bytes);
    Open();
    Boxes.ExpectWords(PathOf("bad.dna") + Words(1214));
    EXPECT_FALSE(Window->mmuOpenFile(PathOf("bad.dna"))) << c.Name;
    EXPECT_EQ(Rows(), c.Rows) << c.Name;
  }
}

TEST_F(DNAWindow, AnEditorThatIsOpenWhenTheWindowGoes) {
  OpenTable();
  TypeInto(0, 8, "late");
  delete Window.data();
  EXPECT_TRUE(Boxes.AllAsked());
}

}  // namespace
}  // namespace spectrane::testing_windows
