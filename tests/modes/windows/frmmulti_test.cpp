#include <QComboBox>
#include <QHeaderView>

#include "app/ground/commands.h"
#include "base/notfinite.h"
#include "modes/windows/samplefixture.h"

namespace spectrane::testing_windows {
namespace {

using testing::HasSubstr;

TEST_F(MultiWindow, BeginsEmptyWithTheWavelengthsOfConfigIni) {
  Settings.PutSetting("Multi WaveLength", "WaveLength No", "2");
  Settings.PutSetting("Multi WaveLength", "WaveLength 2", "600.5");
  Open();
  EXPECT_EQ(Headings(), "No.|Sample Name|Abs(546.0nm)|Abs(600.5nm)|Result");
  EXPECT_EQ(Rows(), 0);
  EXPECT_EQ(Window->GetWorkWaveLength(1), 600.5);
  EXPECT_EQ(Window->GetParameter(14), 1.0);
  EXPECT_EQ(Window->Caption(), QStringLiteral("Multi Wavelength"));
  EXPECT_EQ(Window->CheckFileType(), 4);
  ExpectNamesEverywhere(*Window);
}

TEST_F(MultiWindow, OneTwoAndFifteenWavelengthsHaveAColumnEach) {
  OpenTable(1);
  EXPECT_EQ(Headings(), "No.|Sample Name|Abs(200.0nm)|Result");
  EXPECT_EQ(RowText(0), "1|one|0.500|71.250");
  OpenTable(2);
  EXPECT_EQ(RowText(1), "2|two|1.000|1.100|7.125");
  OpenTable(15);
  EXPECT_EQ(Columns(), 18);
  EXPECT_EQ(Grid->model()->headerData(16, Qt::Horizontal).toString(), QStringLiteral("Abs(900.0nm)"));
  EXPECT_EQ(Cell(0, 16), QStringLiteral("1.900"));
  EXPECT_EQ(Cell(0, 17), QStringLiteral("71.250"));
}

TEST_F(MultiWindow, FiguresHaveFewerDecimalsTheLargerTheyAre) {
  const struct {
    double Value;
    const char* Standard;
    const char* High;
  } cases[] = {{1234.56, "1234.6", "1234.6"}, {999.96, "1000.0", "1000.0"},      {999.95, "999.95", "999.95"},
               {99.996, "100.00", "100.00"},  {99.995, "99.995", "99.995"},      {9.9996, "10.000", "10.000"},
               {9.9995, "10.000", "9.9995"},  {9.9994, "9.999", "9.9994"},       {0.12345, "0.123", "0.1235"},
               {-0.00001, "0.000", "0.0000"}, {-12.3456, "-12.346", "-12.3456"}, {kNaN, "-", "-"},
               {kInfinity, "-", "-"}};
  MultiOption option = MultiTable(1);
  std::vector<MultiRecord> samples;
  for (const auto& c : cases) samples.push_back(MultiSample("x", c.Value, c.Value));
  ASSERT_TRUE(WriteSamples(MultiModule(), Folder.Path("run.mul"), option, samples));
  Open();
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("run.mul")));
  for (int row = 0; row < Rows(); ++row) {
    for (const int column : {2, 3})
      EXPECT_EQ(Cell(row, column), QLatin1String(cases[row].Standard)) << cases[row].Value;
  }
  Link.Formats.ApplyOption(1);
  Window->FormatsChanged();
  for (int row = 0; row < Rows(); ++row) {
    for (const int column : {2, 3})
      EXPECT_EQ(Cell(row, column), QLatin1String(cases[row].High)) << cases[row].Value;
  }
}

TEST_F(MultiWindow, AFileWithAnotherTableLeavesConfigIniAsItIs) {
  OpenTable(3);
  EXPECT_EQ(Window->GetWorkWaveLength(0), 200.0);
  EXPECT_EQ(Stored("Multi WaveLength", "WaveLength No"), "1");
  EXPECT_EQ(Stored("Multi WaveLength", "WaveLength 1"), "546");
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Window->OpenFileName(), PathOf("run.mul"));
}

TEST_F(MultiWindow, MeasuresNothingAndSaysWhy) {
  OpenTable(2);
  ConnectNow();
  const std::int64_t before = Instrument.Requests();
  for (const int command : {kStartTest, kStopTest, kSetBlank}) EXPECT_FALSE(Window->Offers(command));
  for (const int command : {kStartTest, kSetBlank})
    EXPECT_EQ(Window->WhyNot(command),
              QStringLiteral("This window measures nothing: its rows come from files."));
  EXPECT_EQ(Window->WhyNot(kSave), QString());
  Window->mmuStartTest();
  Window->mmuOperationRezero();
  Window->mmuStopTest();
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(Instrument.Requests(), before);
}

TEST_F(MultiWindow, OffersWhatItHasRowsFor) {
  Open();
  EXPECT_FALSE(Window->Offers(kSave));
  EXPECT_FALSE(Window->Offers(kDeleteRecord));
  EXPECT_TRUE(Window->Offers(kTestOption));
  OpenTable(2);
  for (const int command : {kSave, kSaveAs, kDeleteRecord, kOutputText, kOutputWorkbook, kPrint, kClose})
    EXPECT_TRUE(Window->Offers(command)) << command;
}

TEST_F(MultiWindow, ANameIsTypedOverAndSaved) {
  OpenTable(2);
  TypeInto(1, 1, "second \xC2\xB5");
  EXPECT_TRUE(Window->mmuSaveFile()) << "the open editor is taken over";
  EXPECT_FALSE(Window->isWindowModified());
  MultiOption option;
  std::vector<MultiRecord> samples;
  EXPECT_FALSE(LoadDataFile(MultiModule(), Folder.Path("run.mul"), option, samples));
  ASSERT_EQ(samples.size(), 2u);
  EXPECT_EQ(samples[1].Name, "second \xC2\xB5");
  EXPECT_EQ(samples[1].Result, 7.125);
  EXPECT_EQ(samples[1].Abs[15], 7777.0) << "what nobody sees stays";
}

TEST_F(MultiWindow, FiguresCannotBeTyped) {
  OpenTable(2);
  for (const int column : {0, 2, 3, 4}) {
    EXPECT_FALSE(Grid->model()->flags(Grid->model()->index(0, column)).testFlag(Qt::ItemIsEditable));
    EXPECT_FALSE(Grid->model()->setData(Grid->model()->index(0, column), QStringLiteral("9")));
  }
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(MultiWindow, DeletingARowAsksAndMovesTheOthersUp) {
  OpenTable(2);
  Grid->selectRow(0);
  const QString question = QStringLiteral("Are you sure to remove Record <1>from this file?");
  Boxes.ExpectYesNo(question, Answer::No);
  Window->mmuDeleteReport();
  EXPECT_EQ(Rows(), 2);
  Boxes.ExpectYesNo(question, Answer::Yes);
  Window->mmuDeleteReport();
  ASSERT_EQ(Rows(), 1);
  EXPECT_EQ(RowText(0), "1|two|1.000|1.100|7.125");
  EXPECT_TRUE(Window->isWindowModified());
}

TEST_F(MultiWindow, WithoutASelectionNothingIsDeleted) {
  OpenTable(2);
  Grid->clearSelection();
  Boxes.ExpectMessage(1215);
  Window->mmuDeleteReport();
  EXPECT_EQ(Rows(), 2);
}

TEST_F(MultiWindow, SaveAsOffersItsOwnKind) {
  OpenTable(2);
  Boxes.ExpectSaveName(QStringLiteral("Multi Wavelength files(*.mul)|*.mul"), PathOf("copy"));
  EXPECT_TRUE(Window->mmuSaveAsFile());
  EXPECT_EQ(Window->OpenFileName(), PathOf("copy.mul"));
  EXPECT_EQ(ReadBytes(Folder.Path("copy.mul")), ReadBytes(Folder.Path("run.mul")));
  EXPECT_EQ(Stored("Multi Wavelength", "File Path"), Folder.Path("copy.mul"));
}

TEST_F(MultiWindow, RefusesAPictureFile) {
  OpenTable(2);
  Boxes.ExpectMessage(1015);
  Window->mmuFileOutputBMP();
}

TEST_F(MultiWindow, TextExportHasFormulaAndGrid) {
  OpenTable(2);
  Boxes.ExpectSaveName(Words(921), PathOf("run.txt"));
  Window->mmuFileOutputTXT();
  EXPECT_THAT(ReadBytes(Folder.Path("run.txt")),
              HasSubstr("\nResult = 1.000×Abs(200.0nm)+2.000×Abs(250.0nm)\n"
                        "No.\tSample Name\tAbs(200.0nm)\tAbs(250.0nm)\tResult\n"
                        "1\tone\t0.500\t0.600\t71.250\n"
                        "2\ttwo\t1.000\t1.100\t7.125\n"));
}

TEST_F(MultiWindow, CutAndContradictoryFiles) {
  OpenTable(2);
  const std::string whole = ReadBytes(Folder.Path("run.mul"));
  const struct {
    const char* Name;
    std::string Bytes;
    int Rows;
  } cases[] = {
      {"more rows stated", whole.substr(0, 364) + Long(3) + whole.substr(368), 2},
      {"negative rows", whole.substr(0, 364) + Long(-1) + whole.substr(368), 0},
      {"too many rows", whole.substr(0, 364) + Long(2147483647) + whole.substr(368), 2},
      {"cut in the last row", whole.substr(0, whole.size() - 1), 1},
      {"cut in the option block", whole.substr(0, 300), 0},
  };
  for (const auto& c : cases) {
    WriteBytes(Folder.Path("bad.mul"), c.Bytes);
    Open();
    Boxes.ExpectWords(PathOf("bad.mul") + Words(1214));
    EXPECT_FALSE(Window->mmuOpenFile(PathOf("bad.mul"))) << c.Name;
    EXPECT_EQ(Rows(), c.Rows) << c.Name;
    EXPECT_FALSE(Boxes.Details.isEmpty()) << c.Name;
    EXPECT_EQ(Window->OpenFileName().isEmpty(), c.Rows == 0) << c.Name;
  }
}

TEST_F(MultiWindow, FewerRowsStatedThanThereAre) {
  OpenTable(2);
  const std::string whole = ReadBytes(Folder.Path("run.mul"));
  WriteBytes(Folder.Path("run.mul"), whole.substr(0, 364) + Long(1) + whole.substr(368));
  Open();
  EXPECT_TRUE(Window->mmuOpenFile(PathOf("run.mul")));
  EXPECT_EQ(Rows(), 1);
}

TEST_F(MultiWindow, ATableThatCannotBeShowsWhatItCan) {
  const struct {
    std::int32_t Stated;
    int Columns;
  } cases[] = {{0, 3}, {-1, 3}, {16, 18}, {2147483647, 18}};
  for (const auto& c : cases) {
    OpenTable(c.Stated);
    EXPECT_EQ(Columns(), c.Columns) << c.Stated;
    EXPECT_EQ(Cell(0, c.Columns - 1), QStringLiteral("71.250")) << c.Stated;
    Boxes.ExpectSaveName(Words(921), PathOf("run.txt"));
    Window->mmuFileOutputTXT();
    EXPECT_THAT(ReadBytes(Folder.Path("run.txt")),
                HasSubstr("\nError Wavelength and Error Wavelength Coefficient!\n"));
    std::filesystem::remove(Folder.Path("run.txt"));
  }
}

TEST_F(MultiWindow, AFileOfAnotherKindLeavesTheWindowEmpty) {
  ASSERT_TRUE(WriteSamples(DNAModule(), Folder.Path("run.dna"), DNATable(), std::vector<DNARecord>(1)));
  Open();
  Boxes.ExpectWords(PathOf("run.dna") + Words(1214));
  EXPECT_FALSE(Window->mmuOpenFile(PathOf("run.dna")));
  EXPECT_EQ(Rows(), 0);
}

TEST_F(MultiWindow, WidthsAreRememberedForEachNumberOfColumns) {
  OpenTable(2);
  Grid->horizontalHeader()->resizeSection(1, 333);
  OpenTable(3);
  EXPECT_NE(Grid->horizontalHeader()->sectionSize(1), 333);
  OpenTable(2);
  EXPECT_EQ(Grid->horizontalHeader()->sectionSize(1), 333);
}

TEST_F(MultiWindow, AnEditorThatIsOpenWhenTheWindowGoes) {
  OpenTable(2);
  TypeInto(0, 1, "late");
  delete Window.data();
  EXPECT_TRUE(Boxes.AllAsked());
}

TEST_F(MultiWindow, ClosingAsksToSave) {
  OpenTable(2);
  TypeInto(0, 1, "new");
  Boxes.ExpectYesNoCancel(Words(1210), Answer::Cancel);
  EXPECT_FALSE(Window->close());
  Boxes.ExpectYesNoCancel(Words(1210), Answer::Yes);
  EXPECT_TRUE(Window->close());
  EXPECT_THAT(ReadBytes(Folder.Path("run.mul")), HasSubstr("new "));
}

}  // namespace
}  // namespace spectrane::testing_windows
