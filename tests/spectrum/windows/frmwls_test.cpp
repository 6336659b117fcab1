#include "spectrum/windows/frmwls.h"

#include <QClipboard>
#include <QDir>
#include <QImage>
#include <QTimer>

#include "app/ground/commands.h"
#include "output/workbook/workbooksupport.h"
#include "spectrum/windows/scanfixture.h"

namespace spectrane::testing_windows {
namespace {

using testing::HasSubstr;

TEST_F(ScanWindow, ANewWindowIsEmptyAndHasTheStoredOptions) {
  Settings.PutSetting(kScanSection, "Start WaveLength", "400");
  Settings.PutSetting(kScanSection, "Display Mode", "2");
  Settings.PutSetting(kScanSection, "Peak Height", "0.5");
  Open();
  EXPECT_EQ(Window->Caption(), QStringLiteral("Wavelength Scan"));
  EXPECT_EQ(Window->CheckFileType(), 3);
  EXPECT_EQ(Window->GetRecordNo(), 0);
  EXPECT_EQ(Window->OpenFileName(), QString());
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Window->Settings().PeakHeight, 0.5);
  EXPECT_EQ(Seen(), (CurveScale{{400, 1100}, {0, 100}}));
  EXPECT_EQ(Records().rowCount(), 0);
  EXPECT_EQ(Peaks().rowCount(), 1) << "an empty list keeps an empty row";
  EXPECT_EQ(Window->DataTable()->windowTitle(), QStringLiteral("Wavelength Scan Record List"));
  ExpectNamesEverywhere(*Window);
  ExpectNamesEverywhere(*Window->DataTable());
}

TEST_F(ScanWindow, AFileFillsCurveAndTable) {
  OpenPoints({100, 10, 1});
  EXPECT_EQ(Window->GetRecordNo(), 3);
  EXPECT_EQ(Window->OpenFileName(), PathOf("a.wls"));
  EXPECT_EQ(Stored("File Path"), Folder.Path());
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Seen(), (CurveScale{{490.5, 520}, {10, 120}})) << "the home view of the file";
  ASSERT_EQ(Curve->View().Lines.size(), 1U);
  EXPECT_EQ(Curve->View().Lines[0].Count(), 3U);
  EXPECT_DOUBLE_EQ(Curve->View().Lines[0].Y[1], 10) << "in %T";
  QStringList titles;
  for (int column = 0; column < Records().columnCount(); ++column)
    titles.append(Records().headerData(column, Qt::Horizontal).toString());
  EXPECT_EQ(titles, (QStringList{QStringLiteral("No."), QStringLiteral("WL.(nm)"),
                                 QStringLiteral("Absorbance(Abs)"), QStringLiteral("Transmittance(%T)"),
                                 QStringLiteral("Energy"), QStringLiteral("Energy(100%T)"),
                                 QStringLiteral("Energy(0%T)"), QStringLiteral("Gain")}));
  EXPECT_EQ(RowText(Records(), 1), QStringLiteral("2|501.0|1.000|10.0|1050|10050|50|3"));
}

TEST_F(ScanWindow, RunCommandsDoNothing) {
  OpenPoints({100, 10, 1});
  const std::string before = ReadBytes(Folder.Path("a.wls"));
  Window->mmuStartTest();
  Window->mmuStopTest();
  Window->mmuScanEnergy();
  Window->mmuOperationRezero();
  Window->mmuDeleteReport();
  EXPECT_EQ(Window->GetRecordNo(), 3);
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Main.Runs, 0);
  EXPECT_EQ(ReadBytes(Folder.Path("a.wls")), before);
  for (const int command : {kStartTest, kStopTest, kSetBlank, kDeleteRecord})
    EXPECT_FALSE(Window->Offers(command)) << command;
}

TEST_F(ScanWindow, WhatCannotBeOpenedIsToldAndChangesNothing) {
  OpenPoints({100, 10, 1});
  SaveSpectrum(WLS2Module(), Folder.Path("b.wls"), OtherOption(), std::vector<WLS2Record>{{500, 10, 1}});
  for (const char* name : {"", "gone.wls", "b.wls"}) {
    const QString path = name[0] == '\0' ? QString() : PathOf(name);
    Boxes.ExpectWords(path + QStringLiteral(" Open File Error!"));
    EXPECT_FALSE(Window->mmuOpenFile(path)) << name;
    EXPECT_EQ(Window->GetRecordNo(), 3) << name;
    EXPECT_EQ(Window->OpenFileName(), PathOf("a.wls")) << name;
    EXPECT_EQ(Records().rowCount(), 3) << name;
  }
}

TEST_F(ScanWindow, AFileThatIsCutShowsWhatItHasAndIsNeverReplaced) {
  OpenPoints({100, 10, 1});
  CutFile(Folder.Path("a.wls"), 5);
  Boxes.ExpectWords(PathOf("a.wls") + QStringLiteral(" Open File Error!"));
  EXPECT_FALSE(Window->mmuOpenFile(PathOf("a.wls")));
  EXPECT_EQ(Window->GetRecordNo(), 2);
  EXPECT_EQ(Curve->View().Lines[0].Count(), 2U);
  Boxes.ExpectSaveName(Words(928), PathOf("rest"));
  EXPECT_TRUE(Window->mmuSaveFile());
  EXPECT_EQ(Window->OpenFileName(), PathOf("rest.wls"));
}

TEST_F(ScanWindow, SaveAsBeginsInTheStoredFolderAndKeepsTheFolder) {
  Settings.PutSetting(kScanSection, "File Path", Folder.Path());
  OpenPoints({100, 10, 1});
  QDir(PathOf("")).mkdir(QStringLiteral("sub"));
  Boxes.ExpectSaveName(Words(928), PathOf("sub/b"));
  ASSERT_TRUE(Window->mmuSaveAsFile());
  EXPECT_EQ(Stored("File Path"), Folder.Path("sub"));
  EXPECT_EQ(Window->Caption(), QStringLiteral("b.wls"));
  EXPECT_EQ(ReadBytes(Folder.Path("sub/b.wls")), ReadBytes(Folder.Path("a.wls")));
}

TEST_F(ScanWindow, ASpectrumUnderAnotherEndingIsSavedUnderANewName) {
  OpenPoints({100, 10, 1});
  QFile::rename(PathOf("a.wls"), PathOf("a.dat"));
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("a.dat")));
  Boxes.ExpectSaveName(Words(928), PathOf("c"));
  EXPECT_TRUE(Window->mmuSaveFile());
  EXPECT_EQ(Window->OpenFileName(), PathOf("c.wls"));
}

TEST_F(ScanWindow, AFileThatVanishedIsWrittenAnew) {
  OpenPoints({100, 10, 1});
  const std::string before = ReadBytes(Folder.Path("a.wls"));
  QFile::remove(PathOf("a.wls"));
  EXPECT_TRUE(Window->mmuSaveFile());
  EXPECT_EQ(ReadBytes(Folder.Path("a.wls")), before);
}

TEST_F(ScanWindow, CloseAsksOnlyForChangesAFileWouldMiss) {
  OpenPoints({100, 10, 1});
  Window->FindPeak();
  EXPECT_TRUE(Window->QueryClose(false));
  Options([](QWidget& dialog) {
    Type(dialog, "ScaleTopText", "50");
    Click(dialog, "OKCmd");
  });
  EXPECT_TRUE(Window->isWindowModified());
  const QString question = QStringLiteral("Are you sure to save the Record?");
  Boxes.ExpectYesNoCancel(question, Answer::Cancel);
  EXPECT_FALSE(Window->QueryClose(false));
  Boxes.ExpectYesNoCancel(question, Answer::No);
  EXPECT_TRUE(Window->QueryClose(false));
  Boxes.ExpectYesNoCancel(question, Answer::Yes);
  EXPECT_TRUE(Window->QueryClose(false));
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(ScanWindow, TheSearchMarksAndLists) {
  OpenPoints({100, 10, 100, 50, 100});
  Window->FindPeak();
  EXPECT_EQ(Window->DataTable()->SelectedTab(), 1);
  ASSERT_EQ(Peaks().rowCount(), 3);
  EXPECT_EQ(RowText(Peaks(), 0), QStringLiteral("1|501.0|1.000|10.0|1050|10050|50|3"));
  EXPECT_EQ(RowText(Peaks(), 1), QStringLiteral("2|503.0|0.301|50.0|5050|10050|50|3"));
  EXPECT_EQ(RowText(Peaks(), 2), QStringLiteral("3|502.0|0.000|100.0|10050|10050|50|3"))
      << "valleys come behind the peaks and count on";
  const std::vector<PointMark>& marks = Curve->View().Marks;
  ASSERT_EQ(marks.size(), 3U);
  EXPECT_EQ(marks[0].X, 501);
  EXPECT_DOUBLE_EQ(marks[0].Y, 10) << "in the mode of the window";
  EXPECT_EQ(marks[0].Text, QStringLiteral("1"));
  EXPECT_FALSE(marks[1].Valley);
  EXPECT_TRUE(marks[2].Valley);
  EXPECT_EQ(marks[2].Text, QStringLiteral("3"));
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(ScanWindow, NothingFoundLeavesOneEmptyRow) {
  OpenPoints({100, 90, 80});
  Window->FindPeak();
  EXPECT_EQ(Window->DataTable()->SelectedTab(), 1);
  EXPECT_EQ(Peaks().rowCount(), 1);
  EXPECT_EQ(RowText(Peaks(), 0), QStringLiteral("|||||||"));
}

TEST_F(ScanWindow, DetailsTellPlaceAndValueInTheMode) {
  Settings.PutSetting(kScanSection, "Peak Detail Enable", "True");
  Settings.PutSetting(kScanSection, "Valley Detail Enable", "True");
  for (const auto& [mode, peak, valley] :
       {std::tuple{1, "501.0nm-1.000", "502.0nm-0.000"}, std::tuple{2, "501.0nm-10.0%T", "502.0nm-100.0%T"},
        std::tuple{3, "501.0nm-1050", "502.0nm-10050"}}) {
    WLSOption option = OtherOption();
    option.DisplayMode = mode;
    OpenPoints({100, 10, 100, 50, 100}, option);
    Window->FindPeak();
    EXPECT_EQ(Curve->View().Marks[0].Text.toStdString(), peak);
    EXPECT_EQ(Curve->View().Marks[2].Text.toStdString(), valley);
    delete Window.data();
  }
}

TEST_F(ScanWindow, FormatsReachTablesMarksAndCursor) {
  Settings.PutSetting(kScanSection, "Peak Detail Enable", "True");
  WLSOption option = OtherOption();
  option.DisplayMode = 1;
  OpenPoints({100, 10, 100}, option);
  Window->FindPeak();
  Link.Formats.ApplyOption(1);
  Main.FormatsChanged();
  EXPECT_EQ(RowText(Records(), 1), QStringLiteral("2|501.0|1.0000|10.00|1050|10050|50|3"));
  EXPECT_EQ(Curve->View().Marks[0].Text, QStringLiteral("501.0nm-1.0000"));
  EXPECT_EQ(Curve->View().Y.CursorPattern, "0.0000");
}

TEST_F(ScanWindow, ZoomInRoundsOutwardAndArmsTheRectangle) {
  OpenPoints({100, 10, 1});
  // 29.5 nm are divided by 2 nm, 110 %T by 20 %T.
  Window->mmuZoomIn();
  EXPECT_EQ(Seen(), (CurveScale{{490, 520}, {0, 120}}));
  EXPECT_TRUE(Curve->ZoomSelecting());
  EXPECT_EQ(Window->Document().Option().StartWavelength, 490.5) << "the home view stays";
  EXPECT_FALSE(Window->isWindowModified());
  Window->mmuZoomWindow();
  EXPECT_EQ(Seen(), (CurveScale{{490.5, 520}, {10, 120}}));
}

TEST_F(ScanWindow, WhatTheCurveAsksForBecomesTheView) {
  OpenPoints({100, 10, 1});
  const CurveScale wheel{{500, 510}, {20, 60}};
  emit Curve->ScaleChosen(wheel);
  EXPECT_EQ(Seen(), wheel);
  const CurveScale rectangle{{501, 502}, {5, 15}};
  emit Curve->RectangleSelected(rectangle, QSize(40, 30));
  EXPECT_EQ(Seen(), rectangle);
  EXPECT_EQ(Window->Document().View().Trans, (ScanRange{15, 5}));
  EXPECT_EQ(Window->Document().View().Abs, (ScanRange{2.5, -0.25})) << "the other modes keep their own";
  // A click, no rectangle; and one that has no size.
  emit Curve->RectangleSelected({{501.4, 501.5}, {5, 6}}, QSize(1, 1));
  emit Curve->RectangleSelected({{501, 501}, {5, 6}}, QSize(0, 30));
  emit Curve->ScaleChosen({{501, 501}, {5, 6}});
  EXPECT_EQ(Seen(), rectangle);
  emit Curve->HomeWanted();
  EXPECT_EQ(Seen(), (CurveScale{{490.5, 520}, {10, 120}}));
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(ScanWindow, ThePointUnderThePointerIsToldInTheStatusBar) {
  OpenPoints({100, 10, 1});
  emit Curve->PointedAt(0, 1);
  EXPECT_EQ(Main.Readout.toStdString(), "No. 2    501.0 nm    1.000 Abs    10.0 %T");
  emit Curve->PointedAway();
  EXPECT_EQ(Main.Readout, QString());
  emit Curve->PointedAt(0, 99);
  EXPECT_EQ(Main.Readout, QString());
}

TEST_F(ScanWindow, ThePictureGoesToTheClipboard) {
  OpenPoints({100, 10, 1});
  QGuiApplication::clipboard()->clear();
  Window->CopyPicture();
  const QImage image = QGuiApplication::clipboard()->image();
  EXPECT_EQ(image.size(), Curve->size() * Curve->devicePixelRatioF());
  EXPECT_EQ(image.pixelColor(2, 2), QColor(Qt::white));
}

TEST_F(ScanWindow, ExportsTextSpreadsheetAndPictureOfItsSurface) {
  OpenPoints({100, 10, 100});
  Window->FindPeak();
  Boxes.ExpectSaveName(Words(921), PathOf("a.txt"));
  Window->mmuFileOutputTXT();
  const std::string text = ReadBytes(Folder.Path("a.txt"));
  EXPECT_TRUE(text.starts_with("a.wls\nScan Wavelength: 490.5 nm - 520.0 nm  Time:")) << text;
  EXPECT_THAT(text, HasSubstr("Energy(0%T)\n1\t501.0\t1.000\t10.0\t1050\t10050\t50\nWavelength Scan"));
  Boxes.ExpectSaveName(Words(934), PathOf("a"));
  Window->mmuFileOutputBMP();
  const QImage picture(PathOf("a.bmp"));
  EXPECT_EQ(picture.size(), Curve->size() * Curve->devicePixelRatioF());
  EXPECT_EQ(picture, Curve->Image().convertToFormat(picture.format()));
  Boxes.ExpectSaveName(Words(935), PathOf("a.xls"));
  Window->mmuFileOutputXLS();
  const std::string sheet = ReadBytes(Folder.Path("a.xls"));
  EXPECT_THAT(sheet, HasSubstr("\x89PNG"));
  // Of the picture's place: its first corner, column 7 and row 1 (H2), nothing beside them.
  EXPECT_THAT(sheet, HasSubstr(std::string("\x10\xF0\x12\0\0\0\x02\0\x07\0\0\0\x01\0\0\0", 16)));
  EXPECT_THAT(testing_workbook::WorkbookListing(Folder.Path("a.xls")),
              HasSubstr("cell 4 1 number 501.0 0.0 Verdana"));
}

TEST_F(ScanWindow, NothingIsSearchedOrSetWhileAnExportRuns) {
  OpenPoints({100, 10, 100, 50, 100});
  Window->FindPeak();
  Window->DataTable()->SelectTab(0);
  bool ran = false;
  QTimer::singleShot(0, Window, [&] {
    ran = Window->RunsNow();
    EXPECT_FALSE(Window->Offers(kSearchPeak));
    EXPECT_FALSE(Window->Offers(kTestOption));
    Window->FindPeak();
    Window->ShowConfigWindow();
  });
  Boxes.ExpectSaveName(Words(921), PathOf("a.txt"));
  Window->mmuFileOutputTXT();
  EXPECT_TRUE(ran);
  EXPECT_EQ(Window->DataTable()->SelectedTab(), 0) << "a search goes to its list";
  EXPECT_TRUE(Window->Offers(kSearchPeak));
}

TEST_F(ScanWindow, TheHintOfTheRectangleGoesWithIt) {
  OpenPoints({100, 10, 1});
  Window->mmuZoomIn();
  EXPECT_NE(Main.Readout, QString());
  QTest::keyClick(Curve, Qt::Key_Escape);
  EXPECT_EQ(Main.Readout, QString());
}

TEST_F(ScanWindow, ColoursAndGridReachTheCurve) {
  Settings.PutSetting(kScanSection, "Scale Color", "1");
  Settings.PutSetting(kScanSection, "Curve Color", "256");
  Settings.PutSetting(kScanSection, "Mark Color", "65536");
  Settings.PutSetting(kScanSection, "Peak Color", "2");
  Settings.PutSetting(kScanSection, "Valley Color", "512");
  Settings.PutSetting(kScanSection, "Grid Enable", "False");
  Open();
  const CurveView& view = Curve->View();
  EXPECT_EQ(view.Colours.Scale, QColor(1, 0, 0));
  EXPECT_EQ(view.Lines[0].Colour, QColor(0, 1, 0));
  EXPECT_EQ(view.Colours.Mark, QColor(0, 0, 1));
  EXPECT_EQ(view.Colours.Peak, QColor(2, 0, 0));
  EXPECT_EQ(view.Colours.Valley, QColor(0, 2, 0));
  EXPECT_FALSE(view.Grid);
}

TEST_F(ScanWindow, CommandsFollowTheDocument) {
  Open();
  EXPECT_FALSE(Window->Offers(kSave)) << "there is nothing to save";
  for (const int command :
       {kClose, kTestOption, kZoomIn, kZoomOut, kZoomWindow, kSearchPeak, kPeakValueSetup})
    EXPECT_TRUE(Window->Offers(command)) << command;
  CopyHolmium();
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("holmium.wls")));
  EXPECT_TRUE(Window->Offers(kSave));
  EXPECT_TRUE(Window->Offers(kSaveAs));
}

TEST_F(ScanWindow, HolmiumHasItsBands) {
  Settings.PutSetting(kScanSection, "Peak Height", "0.05");
  Settings.PutSetting(kScanSection, "Valley Enable", "False");
  OpenHolmium();
  Window->FindPeak();
  // Of the published bands those that stand out that far, to the half nanometre of the scan.
  for (const double band : {241.13, 249.87, 287.18, 361.31, 416.28, 451.30, 536.64}) {
    bool found = false;
    for (const PointMark& mark : Curve->View().Marks) found = found || std::abs(mark.X - band) <= 1.0;
    EXPECT_TRUE(found) << band;
  }
}

}  // namespace
}  // namespace spectrane::testing_windows
