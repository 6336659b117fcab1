#include "spectrum/windows/frmwlscompare.h"

#include <QClipboard>
#include <QListWidget>
#include <QTabWidget>

#include <set>

#include "app/ground/commands.h"
#include "spectrum/windows/processfixture.h"

namespace spectrane::testing_windows {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Comparison : public ProcessFixture {
 protected:
  /// Names files by their rows in the options, and confirms.
  void Compare(FrmWLSCompare& window, const std::vector<std::pair<int, QString>>& files) {
    OptionsOf(window, "FrmWLSCompareConfig", [&](QWidget& dialog) {
      for (const auto& [row, path] : files)
        Find<QLineEdit>(dialog, qPrintable(QStringLiteral("TextFileName%1").arg(row)))->setText(path);
      Click(dialog, "OKCmd");
    });
  }
  static std::vector<bool> Tabs(const FrmWLSCompare& window) {
    const auto* const tabs = Find<QTabWidget>(*window.DataTable(), "DataTabs");
    std::vector<bool> visible;
    for (int i = 0; i < tabs->count(); ++i) visible.push_back(tabs->isTabVisible(i));
    return visible;
  }
  static QListWidget& Legend(const FrmWLSCompare& window) {
    return *Find<QListWidget>(window, "CompareLegend");
  }
};

TEST_F(Comparison, NamesOfTheLastTimeAreNoFilesUntilTheyAreConfirmed) {
  CompareSettings stored;
  stored.FileName[0] = PathOf("gone.wls").toStdString();
  ASSERT_TRUE(StoreSettings<CompareSettings>(Settings, kCompareSettingRows, stored));
  FrmWLSCompare window(Main);
  Present(window);
  InDialog("FrmWLSCompareConfig", [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  window.ShowConfigWindow();
  EXPECT_EQ(window.LoadedFiles(), 0);
  EXPECT_EQ(window.DataTable(), nullptr);
  EXPECT_NE(ViewOf(window).Caption, QString());
}

TEST_F(Comparison, BeginsEmpty) {
  FrmWLSCompare window(Main);
  Present(window);
  EXPECT_EQ(window.objectName(), QStringLiteral("FrmWLSCompare"));
  EXPECT_EQ(window.Caption(), QStringLiteral("Spectrum Compare"));
  EXPECT_EQ(window.CheckFileType(), 3);
  EXPECT_EQ(window.LoadedFiles(), 0);
  EXPECT_EQ(ViewOf(window).Scale, (CurveScale{{190, 1100}, {0, 1}}));
  EXPECT_EQ(ViewOf(window).Caption,
            QStringLiteral("Up to ten files are compared here: Operate, Option (F4) names them."));
  EXPECT_FALSE(Legend(window).isVisible());
  EXPECT_EQ(window.DataTable(), nullptr) << "an empty table would only take room";
  EXPECT_FALSE(window.isWindowModified());
}

TEST_F(Comparison, EachRowHasItsColourItsPatternAndItsTable) {
  FrmWLSCompare window(Main);
  Present(window);
  // Rows 0, 1, 3 and 9; the others are left blank.
  Compare(window, {{0, Measured("a.wls", {100, 10})},
                   {1, Measured("b.wls", {10, 1, 10})},
                   {3, Measured("d.wls", {50})},
                   {9, Measured("j.wls", {1, 1})}});
  EXPECT_EQ(window.LoadedFiles(), 4);
  const std::vector<CurveLine>& lines = ViewOf(window).Lines;
  ASSERT_EQ(lines.size(), 10U);
  std::vector<std::size_t> counts;
  for (const CurveLine& line : lines) counts.push_back(line.Count());
  EXPECT_THAT(counts, ElementsAre(2, 3, 0, 1, 0, 0, 0, 0, 0, 2));
  EXPECT_EQ(lines[0].Colour, QColor(255, 128, 128));
  EXPECT_EQ(lines[1].Colour, QColor(255, 255, 128));
  EXPECT_EQ(lines[3].Colour, QColor(255, 255, 128)) << "the colour of the row, not of the count";
  EXPECT_EQ(lines[9].Colour, QColor(0, 128, 255));
  std::set<std::pair<QRgb, int>> looks;
  for (const CurveLine& line : lines) looks.insert({line.Colour.rgb(), static_cast<int>(line.Pattern)});
  EXPECT_EQ(looks.size(), 10U) << "equal colours have different patterns";
  EXPECT_EQ(Tabs(window),
            (std::vector<bool>{true, true, false, true, false, false, false, false, false, true}));
  EXPECT_EQ(TabText(window, 3), QStringLiteral("Record List d"));
  EXPECT_EQ(RowText(Grid(window, 1), 1), QStringLiteral("2|501.0|2.000|1.0"));
  EXPECT_EQ(ViewOf(window).Room.Width, 4200);
  EXPECT_FALSE(ViewOf(window).Room.Either);
  EXPECT_TRUE(ViewOf(window).Marks.empty());
}

TEST_F(Comparison, TheLegendNamesTheFilesAndHidesThem) {
  FrmWLSCompare window(Main);
  Present(window);
  Compare(window, {{0, Measured("a.wls", {100, 10})}, {4, Measured("e.wls", {1, 1})}});
  QListWidget& legend = Legend(window);
  ASSERT_TRUE(legend.isVisible());
  ASSERT_EQ(legend.count(), 2);
  EXPECT_EQ(legend.item(0)->text(), QStringLiteral("a.wls"));
  EXPECT_EQ(legend.item(1)->text(), QStringLiteral("e.wls"));
  EXPECT_EQ(legend.item(1)->toolTip(), PathOf("e.wls"));
  ExpectNamesEverywhere(window);
  legend.setFocus();
  legend.setCurrentRow(1);
  QTest::keyClick(&legend, Qt::Key_Space);
  EXPECT_TRUE(window.IsHidden(4));
  EXPECT_FALSE(ViewOf(window).Lines[4].Visible);
  EXPECT_TRUE(ViewOf(window).Lines[0].Visible);
  EXPECT_EQ(Tabs(window)[4], true) << "its figures stay";
  // The same files again: what was hidden stays so; another file in the row is shown.
  Compare(window, {});
  EXPECT_TRUE(window.IsHidden(4));
  Compare(window, {{4, Measured("f.wls", {1, 1})}});
  EXPECT_FALSE(window.IsHidden(4));
}

TEST_F(Comparison, AFileThatIsMissingIsLeftOutAndKeepsItsRow) {
  FrmWLSCompare window(Main);
  Present(window);
  Compare(window, {{0, Measured("a.wls", {100, 10})}, {1, PathOf("missing.wls")}});
  EXPECT_EQ(window.LoadedFiles(), 1);
  EXPECT_EQ(window.Settings().FileName[1], PathOf("missing.wls").toStdString());
  EXPECT_EQ(Key(kCompareSection, "File name 1"), PathOf("missing.wls").toStdString());
  EXPECT_THAT(Display.Remark, HasSubstr("missing.wls (no such file)"));
  ASSERT_EQ(Legend(window).count(), 2);
  EXPECT_FALSE(Legend(window).item(1)->flags().testFlag(Qt::ItemIsEnabled));
}

TEST_F(Comparison, AFileThatIsRefusedIsTold) {
  FrmWLSCompare window(Main);
  Present(window);
  SaveSpectrum(WLS2Module(), Folder.Path("p.wls"), OtherOption(), std::vector<WLS2Record>{{500, 10, 1}});
  WriteBytes(Folder.Path("t.wls"), "text");
  Boxes.ExpectWords(QStringLiteral("Read Wavelength scan file error."), [&window] { window.grab(); });
  Compare(window, {{0, PathOf("p.wls")}, {1, PathOf("t.wls")}, {2, Measured("a.wls", {100, 10})}});
  EXPECT_TRUE(Boxes.Details.contains(QStringLiteral("p.wls"))) << "one box for all";
  EXPECT_TRUE(Boxes.Details.contains(QStringLiteral("t.wls")));
  EXPECT_EQ(window.LoadedFiles(), 1);
}

TEST_F(Comparison, WhatCouldBeReadOfAFileIsShown) {
  FrmWLSCompare window(Main);
  Present(window);
  CutFile(Measured("c.wls", {100, 10, 1}).toStdString(), 1);
  Compare(window, {{0, PathOf("c.wls")}});
  EXPECT_EQ(window.Compared(0).Size(), 2U);
  EXPECT_EQ(Grid(window, 0).rowCount(), 2);
  EXPECT_THAT(Display.Remark, HasSubstr("c.wls (damaged: has 2 of the 3 records that it states)"));
}

TEST_F(Comparison, LoadingRefusesWhatThereIsNot) {
  FrmWLSCompare window(Main);
  const QString good = Measured("a.wls", {100});
  EXPECT_FALSE(window.LoadCompareFile(good, 10));
  EXPECT_FALSE(window.LoadCompareFile({}, 0));
  EXPECT_FALSE(window.LoadCompareFile(PathOf("no.wls"), 0));
  EXPECT_TRUE(window.LoadCompareFile(good, 9));
}

TEST_F(Comparison, ReadsEverythingAnew) {
  FrmWLSCompare window(Main);
  Present(window);
  const QString path = Measured("a.wls", {100, 10});
  Compare(window, {{0, path}, {1, path}});
  ASSERT_EQ(window.Compared(0).Size(), 2U);
  Measured("a.wls", {1, 1, 1});
  Compare(window, {{1, QStringLiteral("   ")}});
  EXPECT_EQ(window.Compared(0).Size(), 3U);
  EXPECT_EQ(window.Compared(1).Size(), 0U);
  EXPECT_EQ(window.LoadedFiles(), 1);
  EXPECT_EQ(Legend(window).count(), 1);
  EXPECT_EQ(Key(kCompareSection, "File name 1"), "");
  QFile::remove(path);
  Compare(window, {});
  EXPECT_EQ(window.LoadedFiles(), 0);
  EXPECT_EQ(window.DataTable(), nullptr);
  window.grab();
}

TEST_F(Comparison, EveryFieldReachesTheWindowAndTheSettings) {
  FrmWLSCompare window(Main);
  Present(window);
  const QString path = Measured("a.wls", {100, 10});
  Boxes.ExpectOpenName(QString::fromUtf8("波长扫描文档(*.wls)|*.wls|所有文件(*.*)|*.*"), path);
  Boxes.ExpectColour(QStringLiteral("Curve Color"), QColor(1, 2, 3));
  Boxes.ExpectColour(QStringLiteral("Scale Color"), QColor(4, 5, 6));
  OptionsOf(window, "FrmWLSCompareConfig", [](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Spectrum Compare Option"));
    ExpectNamesEverywhere(dialog);
    for (int i = 1; i <= 10; ++i) Find<QWidget>(dialog, qPrintable(QStringLiteral("Label%1").arg(i)));
    Click(dialog, "CmdOpen7");
    Click(dialog, "PicColor7");
    Click(dialog, "PictureScale");
    Click(dialog, "OptionTrans");
    TypeInto(dialog, "ScaleTopText", "250");
    TypeInto(dialog, "StartWLText", "700");
    TypeInto(dialog, "EndWLText", "400");
    Click(dialog, "CheckGrid");
    Click(dialog, "CheckDataTable");
    Click(dialog, "OKCmd");
  });
  ASSERT_EQ(window.Compared(7).Size(), 2U);
  EXPECT_EQ(ViewOf(window).Lines[7].Colour, QColor(1, 2, 3));
  EXPECT_EQ(ViewOf(window).Lines[7].Y[1], 10);
  EXPECT_EQ(ViewOf(window).Colours.Scale, QColor(4, 5, 6));
  EXPECT_EQ(ViewOf(window).Scale, (CurveScale{{400, 700}, {0, 200}}));
  EXPECT_FALSE(ViewOf(window).Grid);
  EXPECT_EQ(window.DataTable(), nullptr);
  EXPECT_EQ(Key(kCompareSection, "File name 7"), path.toStdString());
  EXPECT_EQ(Key(kCompareSection, "Curve Color 7"), std::to_string(1 + 256 * 2 + 65536 * 3));
  EXPECT_EQ(Key(kCompareSection, "Display Mode"), "2");
  EXPECT_EQ(Key(kCompareSection, "Grid Enable"), "False");
}

TEST_F(Comparison, HasNoTablesToExportAndSaysSo) {
  FrmWLSCompare window(Main);
  Present(window);
  Compare(window, {{0, Measured("a.wls", {100, 10})}});
  Boxes.ExpectMessage(1152);
  window.mmuFileOutputXLS();
  Boxes.ExpectMessage(1153);
  window.mmuFileOutputTXT();
  for (const int command :
       {kCopyPicture, kOutputPicture, kOutputText, kOutputWorkbook, kZoomIn, kTestOption, kClose})
    EXPECT_TRUE(window.Offers(command)) << command;
  for (const int command : {kSave, kSaveAs, kSearchPeak, kPeakValueSetup, kPrint, kPrintPreview,
                            kSpectrumSmooth, kSpectrumDerivative, kDeleteRecord, kStopTest})
    EXPECT_FALSE(window.Offers(command)) << command;
}

TEST_F(Comparison, PicturesHaveTheLegend) {
  FrmWLSCompare window(Main);
  Present(window);
  Compare(window, {{0, Measured("a.wls", {100, 10})}, {1, Measured("b.wls", {10, 1})}});
  const int height = Find<PicCurve>(window, "PicCurve")->height();
  window.CopyPicture();
  const int both = QGuiApplication::clipboard()->image().height();
  EXPECT_GT(both, height);
  window.Hide(0, true);
  window.Hide(1, true);
  window.CopyPicture();
  EXPECT_EQ(QGuiApplication::clipboard()->image().height(), height) << "no curve, no legend";
  Boxes.ExpectSaveName(Words(934), PathOf("c.bmp"));
  window.mmuFileOutputBMP();
  EXPECT_EQ(ReadBytes(Folder.Path("c.bmp")).substr(0, 2), "BM");
}

TEST_F(Comparison, NothingIsSetWhileAnExportRuns) {
  FrmWLSCompare window(Main);
  Present(window);
  Compare(window, {{0, Measured("a.wls", {100, 10})}});
  bool tried = false;
  Boxes.ExpectSaveName(Words(934), PathOf("gone/c.bmp"));
  Boxes.ExpectWords(Words(1213), [&] {
    tried = true;
    ExpectNoOptions(window);
  });
  window.mmuFileOutputBMP();
  EXPECT_TRUE(tried);
  EXPECT_TRUE(window.Offers(kTestOption));
}

TEST_F(Comparison, ZoomsAndReadsOut) {
  FrmWLSCompare window(Main);
  Present(window);
  Compare(window, {{2, Measured("c.wls", {100, 10})}});
  auto* const curve = Find<PicCurve>(window, "PicCurve");
  emit curve->ScaleChosen({{500, 502}, {0, 2}});
  EXPECT_EQ(ViewOf(window).Scale, (CurveScale{{500, 502}, {0, 2}}));
  window.mmuZoomWindow();
  EXPECT_EQ(ViewOf(window).Scale, (CurveScale{{190, 1100}, {0, 1}}));
  emit curve->PointedAt(2, 1);
  EXPECT_THAT(Main.Readout.toStdString(), HasSubstr("c.wls    No. 2    501.0 nm    1.000 Abs"));
  Link.Formats = DisplayFormats::AtStart(1);
  window.FormatsChanged();
  EXPECT_EQ(RowText(Grid(window, 2), 1), QStringLiteral("2|501.0|1.0000|10.00"));
}

}  // namespace
}  // namespace spectrane::testing_windows
