// Faults that windows with tests and exports meet. The names begin with the row of the catalogue in
// docs/reliability.md.

#include <QClipboard>
#include <QFile>

#include <algorithm>

#include "files/filesupport.h"
#include "modes/windows/frmbasicfixture.h"
#include "modes/windows/frmqua.h"
#include "modes/windows/frmtsfixture.h"
#include "output/workbook/workbooksupport.h"

namespace spectrane::testing_windows {
namespace {

using testing::HasSubstr;

class ExportFaults : public BasicWindow {
 protected:
  struct Way {
    QString Filter;
    const char* Ending;
    std::function<void()> Export;
  };
  /// The three ways out of a photometry window that ask for a file.
  std::vector<Way> Ways() {
    return {{Words(921), ".txt", [this] { Window->mmuFileOutputTXT(); }},
            {Words(935), ".xls", [this] { Window->mmuFileOutputXLS(); }},
            {QStringLiteral("PDF files(*.pdf)|*.pdf"), ".pdf", [this] { Window->PrintReport(); }}};
  }
};

TEST_F(ExportFaults, E03_NotesStayInTheirCellsAndAreNoFormulas) {
  OpenWithBlank();
  const char* const notes[] = {"=1+1", "+1", "-1", "@SUM(A1)", "\"quoted\" 'too'", "a;b,c"};
  Measure(static_cast<int>(std::size(notes)));
  for (int row = 0; row < Rows(); ++row) {
    TypeNote(row, notes[row]);
    QTest::keyClick(Editor(), Qt::Key_Return);
  }
  Boxes.ExpectSaveName(Words(921), PathOf("notes.txt"));
  Window->mmuFileOutputTXT();
  Boxes.ExpectSaveName(Words(935), PathOf("notes.xls"));
  Window->mmuFileOutputXLS();
  const QString text = QString::fromStdString(ReadBytes(Folder.Path("notes.txt")));
  const std::string sheet = testing_workbook::WorkbookListing(Folder.Path("notes.xls"));
  for (const char* note : notes) {
    EXPECT_TRUE(text.contains(u'\t' + QString::fromUtf8(note) + u'\n')) << note;
  }
  // The reader that lists the cells tells texts from formulas by the records of the file.
  for (const char* note : {"=1+1", "+1", "-1", "@SUM(A1)"}) {
    EXPECT_THAT(sheet, HasSubstr("text '" + std::string(note) + "' @"));
  }
  EXPECT_THAT(sheet, testing::Not(HasSubstr("formula")));
}

/// A file of another program may have what nobody can type into a cell.
TEST_F(ExportFaults, E03_TabsAndLineEndsOfAFileMakeNoCellsAndNoRows) {
  struct OddNote {
    std::string Note;
    /// In the text file, and as the listing of the workbook writes it.
    const char* Line;
    const char* Cell;
  };
  const std::vector<OddNote> notes = {{"a\tb", "a b", R"(a\tb)"},       {"a\nb", "a b", R"(a\nb)"},
                                      {"a\r\nb", "a  b", R"(a\r\nb)"},  {"\t=1+1", " =1+1", R"(\t=1+1)"},
                                      {"\n=1+1", " =1+1", R"(\n=1+1)"}, {"last", "last", "last"}};
  std::string bytes = HeaderBytes(11) + BasicOptionBytes(static_cast<std::int64_t>(notes.size()));
  for (const OddNote& each : notes) bytes += BasicRecordBytes(10000, each.Note);
  WriteBytes(Folder.Path("odd.bas"), bytes);
  Open();
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("odd.bas")));
  Boxes.ExpectSaveName(Words(921), PathOf("odd.txt"));
  Window->mmuFileOutputTXT();
  Boxes.ExpectSaveName(Words(935), PathOf("odd.xls"));
  Window->mmuFileOutputXLS();
  const QStringList lines = QString::fromStdString(ReadBytes(Folder.Path("odd.txt"))).split(u'\n');
  const std::string sheet = testing_workbook::WorkbookListing(Folder.Path("odd.xls"));
  const auto first =
      std::ranges::find_if(lines, [](const QString& line) { return line.startsWith(QStringLiteral("1\t")); });
  ASSERT_GE(lines.end() - first, static_cast<std::ptrdiff_t>(notes.size()));
  for (std::size_t row = 0; row < notes.size(); ++row) {
    const QStringList cells = (first + static_cast<std::ptrdiff_t>(row))->split(u'\t');
    EXPECT_EQ(cells.value(0), QString::number(row + 1));
    EXPECT_EQ(cells.size(), 6) << row;
    EXPECT_EQ(cells.last().toStdString(), notes[row].Line);
    // A cell of a spreadsheet may have lines; it is one cell and a text all the same.
    EXPECT_THAT(sheet, HasSubstr("cell " + std::to_string(row + 4) + " 5 text '" + notes[row].Cell + "' @"));
  }
  EXPECT_THAT(sheet, testing::Not(HasSubstr("formula")));
}

TEST_F(ExportFaults, E04_NoExportTakesThePlaceOfAnOpenFileOrOfTheSettings) {
  OpenWithBlank();
  Measure(1);
  for (const Way& way : Ways()) {
    const std::string settings = std::string("settings") + way.Ending;
    std::filesystem::create_symlink(Settings.Path(), Folder.Path(settings));
    const std::string before = ReadBytes(Settings.Path());
    Boxes.ExpectSaveName(way.Filter, PathOf(settings.c_str()));
    Boxes.ExpectWords(Words(1213));
    way.Export();
    EXPECT_EQ(ReadBytes(Settings.Path()), before) << way.Ending;
    EXPECT_TRUE(std::filesystem::is_symlink(Folder.Path(settings))) << way.Ending;
    const std::string data = std::string("data") + way.Ending;
    WriteBytes(Folder.Path(data), "measured");
    Main.Shown = PathOf(data.c_str());
    Boxes.ExpectSaveName(way.Filter, Main.Shown);
    Boxes.ExpectWords(u'<' + Main.Shown + u'>' + Words(1218));
    way.Export();
    EXPECT_EQ(ReadBytes(Folder.Path(data)), "measured") << way.Ending;
  }
}

TEST_F(ExportFaults, E05_ACancelledDialogWritesNothingAndSaysNothing) {
  OpenWithBlank();
  Measure(1);
  const std::size_t before = NamesIn(Folder.Path());
  for (const Way& way : Ways()) {
    Boxes.ExpectSaveName(way.Filter, {});
    way.Export();
    EXPECT_TRUE(Window->isVisible()) << way.Ending;
  }
  EXPECT_EQ(NamesIn(Folder.Path()), before);
  EXPECT_EQ(Main.RunDepth, 0);
}

TEST_F(ExportFaults, E06_TheCableGoesInTheMiddleOfAnExportThatIsWhole) {
  OpenWithBlank();
  Measure(3);
  Boxes.ExpectSaveName(Words(921), PathOf("whole.txt"));
  bool pulled = false;
  QTimer::singleShot(0, Window, [&] {
    pulled = Main.RunDepth == 1;
    PullCable();
    Link.Live.SampleTimerTick();
  });
  Window->mmuFileOutputTXT();
  EXPECT_TRUE(pulled) << "while the export was under way";
  EXPECT_THAT(ReadBytes(Folder.Path("whole.txt")), HasSubstr("\n3\t546.0\t"));
  EXPECT_EQ(Rows(), 3);
}

class CurveFaults : public TimeScanWindow {};

TEST_F(CurveFaults, E05_ACurveWithoutRoomIsNoPictureAndTheClipboardStays) {
  Open();
  Measure();
  Curve->setMinimumSize(0, 0);
  Curve->resize(0, 0);
  QGuiApplication::clipboard()->setText(QStringLiteral("before"));
  Window->CopyPicture();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
  EXPECT_THAT(Display.Remark, HasSubstr("no picture"));
  Display.SetRemark({});
  Window->mmuFileOutputBMP();
  EXPECT_THAT(Display.Remark, HasSubstr("no picture"));
  Boxes.ExpectSaveName(Words(935), PathOf("run.xls"));
  Window->mmuFileOutputXLS();
  EXPECT_TRUE(QFile::exists(PathOf("run.xls"))) << "the figures go without a picture";
  Boxes.ExpectSaveName(QStringLiteral("PDF files(*.pdf)|*.pdf"), PathOf("run.pdf"));
  Window->PrintReport();
  EXPECT_TRUE(QFile::exists(PathOf("run.pdf"))) << "paper has room of its own";
}

// Both boxes belong to a start at another wavelength: blank, then sample.
class CableAtABox : public TimeScanWindow {
 protected:
  void OpenElsewhere() {
    Settings.PutSetting(kTimeScanSection, "Work WaveLength", "500");
    Open();
    ConnectNow();
    Insert("blank");
  }
  void ExpectUsable() {
    EXPECT_TRUE(Boxes.AllAsked());
    EXPECT_EQ(Main.RunDepth, 0);
    EXPECT_FALSE(Link.State.RunUnderWay);
    EXPECT_FALSE(Link.State.InstrumentBusy);
    EXPECT_EQ(Window->Document().DataCount(), 0);
    // Plugged in again, released and connected it measures.
    Link.Connect.ReleaseCommand();
    ConnectNow();
    Window->mmuOperationRezero();
    EXPECT_TRUE(Window->Test().BlankHolds());
    Boxes.ExpectYesNo(Words(926), Answer::No);
    Window->mmuStartTest();
    EXPECT_EQ(Window->Document().DataCount(), 6);
  }
};

TEST_F(CableAtABox, W05_PulledWhileTheSampleIsAskedForGivesOneMessage) {
  OpenElsewhere();
  Boxes.ExpectMessage(977);
  Boxes.ExpectMessage(978, [this] { PullCable(); });
  Boxes.ExpectMessage(1096);
  Window->mmuStartTest();
  ExpectUsable();
}

TEST_F(CableAtABox, W05_PulledWhileTheBlankIsAskedForEndsWithTheBlankThatIsMissing) {
  OpenElsewhere();
  Boxes.ExpectMessage(977, [this] { PullCable(); });
  Boxes.ExpectMessage(978);
  Boxes.ExpectMessage(971);
  Window->mmuStartTest();
  ExpectUsable();
}

}  // namespace
}  // namespace spectrane::testing_windows
