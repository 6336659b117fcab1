// Panes and columns of the quantitation window, and the read-out of its picture.

#include <QHeaderView>
#include <QScrollBar>
#include <QSplitter>

#include "base/numbers.h"
#include "link/function.h"
#include "modes/windows/frmquafixture.h"
#include "output/quantitationplot.h"

namespace spectrane::testing_windows {
namespace {

class QuaLayout : public QuaWindow {
 protected:
  /// Right edge of a column, in pixels of the grid's viewport.
  static int RightOf(const QTableView* grid, int column) {
    return grid->columnViewportPosition(column) + grid->columnWidth(column);
  }
  /// Another window after this one.
  void OpenNext() {
    delete Window.data();
    Open();
    QCoreApplication::processEvents();
  }
  /// A person drags the border of two panes.
  void Drag(const char* name, const QPoint& by) {
    auto* const splitter = Find<QSplitter>(*Window, name);
    QWidget* const handle = splitter->handle(1);
    const QPoint grip = handle->rect().center();
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, grip);
    QTest::mouseMove(handle, grip + by);
    QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, grip + by);
    QCoreApplication::processEvents();
  }
  QList<int> Panes(const char* name) { return Find<QSplitter>(*Window, name)->sizes(); }
};

TEST_F(QuaLayout, TheConcentrationsOfTheStandardsAreInSightAtOnce) {
  Open(5);
  QCoreApplication::processEvents();
  EXPECT_LT(RightOf(Standards, kConc), Standards->viewport()->width());
  EXPECT_EQ(Standards->horizontalScrollBar()->maximum(), 0) << "and a note beside them";
  EXPECT_GT(Find<QuaLinePic>(*Window, "QuaLinePic")->width(), 400) << "the curve has the rest";
}

TEST_F(QuaLayout, MoreColumnsGetMoreRoomButNeverAll) {
  Settings.PutSetting("Quantitative Measurement", "WaveLength Number", "2");
  Open(5);
  Window->resize(1400, 700);
  QCoreApplication::processEvents();
  EXPECT_LT(RightOf(Standards, kConc + 2), Standards->viewport()->width());
  Window->resize(600, 400);
  QCoreApplication::processEvents();
  const QList<int> panes = Panes("QuaColumns");
  EXPECT_NEAR(panes[0], 0.6 * (panes[0] + panes[1]), 2);
}

TEST_F(QuaLayout, TheBordersThatSomebodyMovedComeBack) {
  Open();
  const QList<int> columns = Panes("QuaColumns");
  const QList<int> rows = Panes("QuaRows");
  OpenNext();
  EXPECT_EQ(Panes("QuaColumns"), columns);
  Drag("QuaColumns", {-60, 0});
  Drag("QuaRows", {0, -50});
  const QList<int> columnsMoved = Panes("QuaColumns");
  const QList<int> rowsMoved = Panes("QuaRows");
  EXPECT_NEAR(columnsMoved[0], columns[0] - 60, 2);
  EXPECT_NEAR(rowsMoved[0], rows[0] - 50, 2);
  OpenNext();
  EXPECT_EQ(Panes("QuaColumns"), columnsMoved);
  EXPECT_EQ(Panes("QuaRows"), rowsMoved);
  Main.Layout().Reset();
  delete Window.data();
  Main.Layout().Reset();
  Open();
  QCoreApplication::processEvents();
  EXPECT_EQ(Panes("QuaColumns"), columns);
}

TEST_F(QuaLayout, BordersThatNobodyMovedAreNotRemembered) {
  Open();
  delete Window.data();
  for (const char* name :
       {"FrmQua/QuaColumns", "FrmQua/QuaRows", "FrmQua/QuaConfigGrid1", "FrmQua/RecordGrid1"})
    EXPECT_TRUE(Main.Layout().Bytes(QLatin1String(name)).isEmpty()) << name;
}

TEST_F(QuaLayout, AForeignPlaceOfABorderIsPassedOver) {
  Open();
  const QList<int> columns = Panes("QuaColumns");
  for (const char* place : {"", "x", "-1", "0", "1", "7", "NaN"}) {
    Main.Layout().Store(QStringLiteral("FrmQua/QuaColumns"), QByteArray(place));
    OpenNext();
    EXPECT_EQ(Panes("QuaColumns"), columns) << place;
  }
}

TEST_F(QuaLayout, ColumnWidthsComeBackForEachNumberOfWavelengths) {
  Open();
  const int width = Standards->columnWidth(kName) + 31;
  const int recordWidth = Records->columnWidth(kConc) + 17;
  const int untouched = Records->columnWidth(kName);
  Standards->horizontalHeader()->resizeSection(kName, width);
  Records->horizontalHeader()->resizeSection(kConc, recordWidth);
  Settings.PutSetting("Quantitative Measurement", "WaveLength Number", "2");
  OpenNext();
  EXPECT_NE(Standards->columnWidth(kName), width) << "other columns";
  Settings.PutSetting("Quantitative Measurement", "WaveLength Number", "1");
  OpenNext();
  EXPECT_EQ(Standards->columnWidth(kName), width);
  EXPECT_EQ(Records->columnWidth(kConc), recordWidth);
  EXPECT_EQ(Records->columnWidth(kName), untouched);
}

TEST_F(QuaLayout, OpeningAFileKeepsTheWidthsOfTheWindow) {
  OpenWithCoefficients();
  Boxes.ExpectSaveName(Words(1047), PathOf("a.qua"));
  ASSERT_TRUE(Window->mmuSaveAsFile());
  Records->horizontalHeader()->resizeSection(kName, 222);
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("a.qua")));
  EXPECT_EQ(Records->columnWidth(kName), 222);
}

TEST_F(QuaLayout, TheStatusBarReadsOutThePointUnderThePointer) {
  OpenWithCoefficients();
  auto* const picture = Find<QuaLinePic>(*Window, "QuaLinePic");
  const QuantitationPlot plot(picture->rect(), kScreenTwips, AxesOf(Window->Document().Option()));
  const QPoint place = plot.At({1.0, 12.0}).toPoint();
  QTest::mouseMove(picture, place);
  QCoreApplication::processEvents();
  const CurvePoint value = plot.ValueAt(place);
  EXPECT_EQ(Display.Remark, Format(value.Abs, "0.000") + " Abs   " + FormatValue(value.Conc) + " mg/ml");
  EXPECT_NEAR(value.Conc, 12.0, 0.1);
  Link.Formats.ApplyOption(1);
  QTest::mouseMove(picture, place + QPoint(1, 0));
  QCoreApplication::processEvents();
  EXPECT_EQ(Display.Remark.find(" Abs"), 6u) << "in the formats of the window: " << Display.Remark;
  QTest::mouseMove(picture, QPoint(1, 1));
  QCoreApplication::processEvents();
  EXPECT_EQ(Display.Remark, "");
}

}  // namespace
}  // namespace spectrane::testing_windows
