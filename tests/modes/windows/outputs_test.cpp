#include <QAbstractButton>
#include <QClipboard>
#include <QFile>
#include <QRegularExpression>

#include "app/ground/reportprinter.h"
#include "modes/windows/frmbasicfixture.h"
#include "modes/windows/frmqua.h"
#include "output/workbook/workbooksupport.h"
#include "windowsupport/badplaces.h"

namespace spectrane::testing_windows {
namespace {

using testing::HasSubstr;

/// A photometry window with two readings, and a person who exports them.
class Outputs : public BasicWindow {
 protected:
  void OpenWithRows() {
    OpenWithBlank();
    Measure(2);
  }
  static QString TextFilter() { return Words(921); }
  static QString SheetFilter() { return Words(935); }
  static QString PdfFilter() { return QStringLiteral("PDF files(*.pdf)|*.pdf"); }
  std::string Bytes(const char* name) const { return ReadBytes(Folder.Path(name)); }
  /// Files of the folder that have to do with exports.
  std::size_t Exports() const {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(Folder.Path())) {
      const std::string name = entry.path().filename().string();
      if (name.find("run") != std::string::npos || name.starts_with(".")) ++count;
    }
    return count;
  }
};

TEST_F(Outputs, TextGoesIntoTheFileNamedAndGetsItsEnding) {
  OpenWithRows();
  Boxes.ExpectSaveName(TextFilter(), PathOf("run"));
  Window->mmuFileOutputTXT();
  const std::string text = Bytes("run.txt");
  EXPECT_THAT(
      text, HasSubstr("\nNo.\tWavelength(nm)\tAbsorbance(Abs)\tTransmittance(%T)\tEnergy\tNote\n1\t546.0\t"));
  EXPECT_TRUE(text.ends_with("\t\n"));
  EXPECT_THAT(Display.Remark, HasSubstr("run.txt"));
  EXPECT_EQ(Exports(), 1u) << "and nothing else is left";
}

TEST_F(Outputs, BeginsBesideTheDocumentUnderItsName) {
  OpenWithRows();
  Boxes.ExpectSaveName(TextFilter(), {});
  Window->mmuFileOutputTXT();
  EXPECT_TRUE(Boxes.BeganWith.endsWith(QStringLiteral("/Photometry.txt"))) << Boxes.BeganWith.toStdString();
}

TEST_F(Outputs, NonLatinNamesAndASpreadsheet) {
  OpenWithRows();
  const QString path = PathOf("\xE6\xB5\x8B run.xls");
  Boxes.ExpectSaveName(SheetFilter(), path);
  Window->mmuFileOutputXLS();
  EXPECT_THAT(testing_workbook::WorkbookListing(path.toStdString()), HasSubstr("cell 4 1 number 546.0 0.0"));
}

TEST_F(Outputs, TheProgramsOwnSettingsAreNeverWrittenOver) {
  OpenWithRows();
  std::filesystem::create_symlink(Settings.Path(), Folder.Path("link.txt"));
  const std::string before = Bytes("link.txt");
  Boxes.ExpectSaveName(TextFilter(), PathOf("link.txt"));
  Boxes.ExpectWords(Words(1213));
  Window->mmuFileOutputTXT();
  EXPECT_EQ(Bytes("link.txt"), before);
}

TEST_F(Outputs, AnExistingFileStaysOnNo) {
  OpenWithRows();
  WriteBytes(Folder.Path("run.txt"), "old");
  Boxes.ExpectSaveName(TextFilter(), PathOf("run.txt"));
  Boxes.ExpectYesNo(PathOf("run.txt") + u' ' + Words(1212), Answer::No);
  Window->mmuFileOutputTXT();
  EXPECT_EQ(Bytes("run.txt"), "old");
}

TEST_F(Outputs, AnExistingFileIsReplacedOnYes) {
  OpenWithRows();
  WriteBytes(Folder.Path("run.txt"), "old");
  Boxes.ExpectSaveName(TextFilter(), PathOf("run.txt"));
  Boxes.ExpectYesNo(PathOf("run.txt") + u' ' + Words(1212), Answer::Yes);
  Window->mmuFileOutputTXT();
  EXPECT_NE(Bytes("run.txt"), "old");
}

// The folder goes while the person answers: the write fails, and the old export is still there.
TEST_F(Outputs, AWriteThatFailsAfterYesLeavesTheOldFile) {
  OpenWithRows();
  std::filesystem::create_directory(Folder.Path("run.txt"));
  WriteBytes(Folder.Path("run.txt/old"), "old");
  Boxes.ExpectSaveName(TextFilter(), PathOf("run.txt"));
  Boxes.ExpectYesNo(PathOf("run.txt") + u' ' + Words(1212), Answer::Yes);
  Boxes.ExpectWords(Words(1213));
  Window->mmuFileOutputTXT();
  EXPECT_EQ(Bytes("run.txt/old"), "old");
  EXPECT_NE(Boxes.Details, QString());
  EXPECT_EQ(Exports(), 1u);
}

// The rows that the sheet has no place for were left out, and the export was told as done.
TEST_F(Outputs, MoreRowsThanASpreadsheetHoldsAreRefused) {
  Open();
  // Three lines and the titles stand above the rows.
  constexpr std::int32_t kMost = 65536 - 4;
  ASSERT_FALSE(
      SaveDataFile(BasicModule(), Folder.Path("long.bas"), BasicOption(), kMost + 1, [](std::int32_t) {
        return BasicRecord{50, 100, 0, 546, ""};
      }));
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("long.bas")));
  Boxes.ExpectWords(Words(1213));
  Window->mmuFileOutputXLS();
  EXPECT_EQ(Boxes.Details, QStringLiteral("a spreadsheet of this kind holds 65536 rows; export as text"));
  EXPECT_EQ(Exports(), 0u);
  EXPECT_TRUE(Window->Offers(kOutputWorkbook));
  Boxes.ExpectSaveName(TextFilter(), PathOf("run.txt"));
  Window->mmuFileOutputTXT();
  EXPECT_THAT(Bytes("run.txt"), HasSubstr("\n65533\t546.0\t0.301\t50.0\t50\t\n"));
}

#ifndef _WIN32
TEST_F(Outputs, AFullDiskLeavesTheOldFileAndNothingElse) {
  OpenWithRows();
  for (const char* name : {"run.txt", "run.xls", "run.pdf"}) {
    WriteBytes(Folder.Path(name), "old");
    const QString path = PathOf(name);
    const bool report = path.endsWith(QStringLiteral("pdf"));
    const bool sheet = path.endsWith(QStringLiteral("xls"));
    Boxes.ExpectSaveName(report ? PdfFilter() : sheet ? SheetFilter() : TextFilter(), path);
    Boxes.ExpectYesNo(path + u' ' + Words(1212), Answer::Yes);
    Boxes.ExpectWords(Words(1213));
    {
      const FullDisk full(64);
      report ? Window->PrintReport() : sheet ? Window->mmuFileOutputXLS() : Window->mmuFileOutputTXT();
    }
    EXPECT_NE(Boxes.Details, QString()) << name;
    EXPECT_EQ(Bytes(name), "old");
  }
  EXPECT_EQ(Exports(), 3u);
}

TEST_F(Outputs, AReadOnlyFolderLeavesTheOldFile) {
  OpenWithRows();
  std::filesystem::create_directory(Folder.Path("locked"));
  WriteBytes(Folder.Path("locked/run.txt"), "old");
  std::filesystem::permissions(Folder.Path("locked"), std::filesystem::perms{0555});
  Boxes.ExpectSaveName(TextFilter(), PathOf("locked/run.txt"));
  Boxes.ExpectYesNo(PathOf("locked/run.txt") + u' ' + Words(1212), Answer::Yes);
  Boxes.ExpectWords(Words(1213));
  {
    const NoPrivileges nobody;
    Window->mmuFileOutputTXT();
  }
  EXPECT_EQ(Bytes("locked/run.txt"), "old");
  EXPECT_EQ(std::ranges::distance(std::filesystem::directory_iterator(Folder.Path("locked"))), 1);
  std::filesystem::permissions(Folder.Path("locked"), std::filesystem::perms{0755});
}
#endif

TEST_F(Outputs, AReportNeverTakesThePlaceOfAnOpenDocument) {
  OpenWithRows();
  WriteBytes(Folder.Path("data.pdf"), "data");
  Main.Shown = PathOf("data.pdf");
  Boxes.ExpectSaveName(PdfFilter(), PathOf("data.pdf"));
  Boxes.ExpectWords(u'<' + PathOf("data.pdf") + u'>' + Words(1218));
  Window->PrintReport();
  EXPECT_EQ(Bytes("data.pdf"), "data");
}

TEST_F(Outputs, AVanishedFolderIsToldInWords) {
  OpenWithRows();
  for (const bool sheet : {false, true}) {
    Boxes.ExpectSaveName(sheet ? SheetFilter() : TextFilter(), PathOf("gone/run"));
    Boxes.ExpectWords(Words(1213));
    sheet ? Window->mmuFileOutputXLS() : Window->mmuFileOutputTXT();
  }
  EXPECT_EQ(Exports(), 0u);
}

TEST_F(Outputs, ADocumentWithoutRowsHasExportsWithItsWords) {
  Open();
  Boxes.ExpectSaveName(TextFilter(), PathOf("run.txt"));
  Window->mmuFileOutputTXT();
  EXPECT_TRUE(Bytes("run.txt").ends_with("\tNote\nNo Photometry Test Record!\n"));
}

TEST_F(Outputs, EscEndsAnExportWithoutAFile) {
  OpenWithRows();
  Boxes.ExpectSaveName(SheetFilter(), PathOf("run.xls"));
  QTimer::singleShot(0, Window, [this] { QTest::keyClick(Window, Qt::Key_Escape); });
  Window->mmuFileOutputXLS();
  EXPECT_EQ(Exports(), 0u);
  EXPECT_THAT(Display.Remark, HasSubstr("cancelled"));
}

TEST_F(Outputs, TheWindowDoesNotGoInTheMiddleOfAnExport) {
  OpenWithRows();
  Boxes.ExpectSaveName(TextFilter(), PathOf("run.txt"));
  Boxes.ExpectYesNo(Words(1211), Answer::Yes);
  QTimer::singleShot(0, Window, [this] { Window->close(); });
  const QPointer<FrmBasic> window(Window);
  Window->mmuFileOutputTXT();
  ASSERT_TRUE(window);
  EXPECT_EQ(Exports(), 0u) << "the person wanted it to end";
  EXPECT_EQ(Main.RunDepth, 0);
}

TEST_F(Outputs, WithoutAPrinterTheReportIsOfferedAsAFile) {
  OpenWithRows();
  Main.Window().Operator = "Ada";
  Boxes.ExpectSaveName(PdfFilter(), PathOf("run"));
  Window->PrintReport();
  const std::string text =
      testing_workbook::OutputOf("pdftotext -layout '" + Folder.Path("run.pdf") + "' - | sed 's/  */ /g'");
  EXPECT_THAT(text, HasSubstr("Photometry Test Report\n"));
  EXPECT_THAT(text, HasSubstr("Operator: Ada\n"));
  EXPECT_THAT(text, HasSubstr("Instrument: Simulated instrument\n"));
  EXPECT_THAT(text, HasSubstr(" 1 546.0 "));
}

TEST_F(Outputs, AReportOfADocumentWithoutAFileIsOfferedUnderItsCaption) {
  OpenWithBlank();
  Measure(1);
  ASSERT_TRUE(Window->OpenFileName().isEmpty());
  const QString folder = PathOf("2024.05");
  QDir().mkpath(folder);
  Main.Settings().PutSetting("Basic Test", "File Path", (folder + QStringLiteral("/old.bas")).toStdString());
  Boxes.ExpectSaveName(PdfFilter(), QString());
  Window->PrintReport();
  EXPECT_EQ(Boxes.BeganWith.toStdString(),
            (folder + u'/' + Window->windowTitle().remove(QStringLiteral("[*]")) + QStringLiteral(".pdf"))
                .toStdString());
}

TEST_F(Outputs, AReportThatCannotBeWrittenIsToldInWords) {
  OpenWithRows();
  Boxes.ExpectSaveName(PdfFilter(), PathOf("gone/run.pdf"));
  Boxes.ExpectWords(Words(1213));
  Window->PrintReport();
  WriteBytes(Folder.Path("run.pdf"), "old");
  Boxes.ExpectSaveName(PdfFilter(), PathOf("run.pdf"));
  Boxes.ExpectYesNo(PathOf("run.pdf") + u' ' + Words(1212), Answer::No);
  Window->PrintReport();
  EXPECT_EQ(Bytes("run.pdf"), "old");
}

TEST_F(Outputs, ThePreviewShowsThePagesAndPrints) {
  OpenWithRows();
  Boxes.ExpectSaveName(PdfFilter(), PathOf("run.pdf"));
  InDialog("ReportPreview", [](QWidget& dialog) {
    EXPECT_FALSE(Find<QWidget>(dialog, "NextPage")->isEnabled()) << "one page";
    QTest::mouseClick(Find<QWidget>(dialog, "PrintCmd"), Qt::LeftButton);
  });
  Window->PreviewReport();
  EXPECT_TRUE(Bytes("run.pdf").starts_with("%PDF"));
}

TEST_F(Outputs, SetupSaysThatThereIsNoPrinter) {
  Main.Printer().Setup();
  EXPECT_THAT(Display.Remark, HasSubstr("no printer"));
}

TEST_F(Outputs, SetupPrintsNothingAndDoesNotSaySo) {
#ifdef _WIN32
  GTEST_SKIP() << "the dialog is the system's own";
#else
  Main.Printer().HasPrinter = [] { return true; };
  InDialog("PrinterSetup", [](QWidget& dialog) {
    QStringList captions;
    for (const QAbstractButton* button : dialog.findChildren<QAbstractButton*>())
      captions.append(PlainCaption(button->text()));
    EXPECT_TRUE(captions.contains(QStringLiteral("OK"))) << captions.join(u'|').toStdString();
    EXPECT_FALSE(captions.contains(QStringLiteral("Print"))) << captions.join(u'|').toStdString();
    dialog.close();
  });
  Main.Printer().Setup();
#endif
}

TEST_F(Outputs, TheCurveOfAQuantitationIsCopiedAtItsSize) {
  FrmQua window(Main);
  Present(window);
  window.CopyPicture();
  const QWidget* const curve = Find<QWidget>(window, "QuaLinePic");
  EXPECT_EQ(QGuiApplication::clipboard()->image().size(), curve->size());
  Boxes.ExpectSaveName(SheetFilter(), PathOf("run.xls"));
  window.mmuFileOutputXLS();
  EXPECT_GT(std::filesystem::file_size(Folder.Path("run.xls")), 8000u) << "with its picture";
}

}  // namespace
}  // namespace spectrane::testing_windows
