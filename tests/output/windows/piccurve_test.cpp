#include "output/windows/piccurve.h"

#include <gmock/gmock.h>

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <random>

#include "base/notfinite.h"
#include "output/curvesupport.h"

namespace spectrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A surface of 600 by 400 pixels with a hundred points from 400 to 499 nm, as many nanometres as points. The
/// plot lies from 80 to 566.7 across and from 20 to 353.3 down.
class CurveSurface : public testing::Test {
 protected:
  void SetUp() override {
    std::vector<double> x;
    std::vector<double> y;
    for (int i = 0; i < 100; ++i) {
      x.push_back(400 + i);
      y.push_back(0.01 * i);
    }
    Curve = OwnedCurve(std::move(x), std::move(y));
    Curve.View.Scale = {{400, 500}, {0, 2}};
    Curve.Show();
    Surface.resize(600, 400);
    Surface.SetView(Curve.View);
    Surface.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&Surface));
    QObject::connect(&Surface, &PicCurve::PointedAt, &Surface, [this](std::size_t line, std::size_t index) {
      Pointed.push_back({line, index});
    });
    QObject::connect(&Surface, &PicCurve::PointedAway, &Surface, [this] { ++Away; });
    QObject::connect(&Surface, &PicCurve::ScaleChosen, &Surface,
                     [this](const CurveScale& scale) { Chosen.push_back(scale); });
    QObject::connect(&Surface, &PicCurve::RectangleSelected, &Surface,
                     [this](const CurveScale& scale, const QSize& pixels) {
                       Rectangles.push_back(scale);
                       RectangleSize = pixels;
                     });
    QObject::connect(&Surface, &PicCurve::HomeWanted, &Surface, [this] { ++Homes; });
  }

  const QLabel& Label(const char* name) const { return *Surface.findChild<QLabel*>(QLatin1String(name)); }
  std::string Across() const { return Label("WavelengthLabel").text().toStdString(); }
  std::string Upward() const { return Label("TestDataLabel").text().toStdString(); }
  bool LabelsShown() const {
    EXPECT_EQ(Label("WavelengthLabel").isVisible(), Label("TestDataLabel").isVisible());
    return Label("WavelengthLabel").isVisible();
  }
  void Press(int x, int y) { QTest::mousePress(&Surface, Qt::LeftButton, {}, {x, y}); }
  void Move(int x, int y, Qt::MouseButtons buttons = Qt::NoButton) {
    const QPointF at(x, y);
    QMouseEvent event(QEvent::MouseMove, at, Surface.mapToGlobal(at), Qt::NoButton, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(&Surface, &event);
  }
  void Release(int x, int y) { QTest::mouseRelease(&Surface, Qt::LeftButton, {}, {x, y}); }
  void Wheel(int x, int y, int delta, Qt::KeyboardModifiers modifiers = {}) {
    const QPointF at(x, y);
    QWheelEvent event(at, Surface.mapToGlobal(at), {}, {0, delta}, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&Surface, &event);
  }
  void Key(Qt::Key key) { QTest::keyClick(&Surface, key); }
  QImage Shot() { return Surface.grab().toImage().convertToFormat(QImage::Format_RGB32); }
  std::vector<std::size_t> TakePointed() {
    std::vector<std::size_t> indices;
    for (const PicCurve::PointPlace& place : Pointed) indices.push_back(place.Index);
    Pointed.clear();
    return indices;
  }

  OwnedCurve Curve{{}, {}};
  PicCurve Surface;
  std::vector<PicCurve::PointPlace> Pointed;
  std::vector<CurveScale> Chosen;
  std::vector<CurveScale> Rectangles;
  QSize RectangleSize;
  int Away = 0;
  int Homes = 0;
};

TEST_F(CurveSurface, TheLeftButtonShowsTheValuesUnderThePointerUntilItComesUp) {
  EXPECT_FALSE(LabelsShown());
  // 226 pixels are 3390 twips: (3390 - 1200) x 100 / 7300 = 30; 120 are 1800: 2 - 1500 x 2 / 5000 = 1.4.
  Press(226, 120);
  ASSERT_TRUE(LabelsShown());
  EXPECT_TRUE(Surface.CursorShown());
  EXPECT_EQ(Across(), "430.0");
  EXPECT_EQ(Upward(), "1.400");
  const QImage shot = Shot();
  EXPECT_EQ(shot.pixelColor(226, 300), Curve.View.Colours.Mark);
  EXPECT_EQ(shot.pixelColor(500, 120), Curve.View.Colours.Mark);
  EXPECT_NE(shot.pixelColor(226, 370), Curve.View.Colours.Mark) << "below the plot";
  Move(299, 220, Qt::LeftButton);
  EXPECT_EQ(Across(), "445.0");
  EXPECT_EQ(Upward(), "0.800");
  Move(20, 220, Qt::LeftButton);
  EXPECT_EQ(Across(), "445.0") << "beside the plot nothing changes";
  Release(299, 220);
  EXPECT_FALSE(LabelsShown());
  EXPECT_FALSE(Surface.CursorShown());
}

TEST_F(CurveSurface, BesideThePlotTheButtonShowsNothing) {
  for (const QPoint& at : {QPoint(79, 100), QPoint(568, 100), QPoint(300, 19), QPoint(300, 355)}) {
    Press(at.x(), at.y());
    EXPECT_FALSE(LabelsShown()) << at.x() << ", " << at.y();
    Release(at.x(), at.y());
  }
  Press(80, 20);
  EXPECT_TRUE(LabelsShown()) << "the corner belongs to it";
  EXPECT_EQ(Across() + " " + Upward(), "400.0 2.000");
}

TEST_F(CurveSurface, TheLabelsStayOnTheSurfaceAndApart) {
  for (const int x : {80, 300, 500, 566}) {
    for (const int y : {20, 200, 353}) {
      Press(x, y);
      const QRect across = Label("WavelengthLabel").geometry();
      const QRect upward = Label("TestDataLabel").geometry();
      EXPECT_TRUE(Surface.rect().contains(across) && Surface.rect().contains(upward)) << x << ", " << y;
      EXPECT_FALSE(across.intersects(upward));
      EXPECT_EQ(across.right() < x, x == 566) << "left of the pointer beside the right margin only";
      Release(x, y);
    }
  }
}

TEST_F(CurveSurface, EnergiesAndPatternsOfTheWindowAreShownAsGiven) {
  Curve.View.Y.Kind = AxisKind::Energy;
  Curve.View.Scale.Y = {0, 65535};
  Curve.View.X.CursorPattern = "0.0s";
  Surface.SetView(Curve.View);
  Press(226, 120);
  // 65535 x 0.7
  EXPECT_EQ(Upward(), "45875");
  EXPECT_EQ(Across(), "430.0s");
}

TEST_F(CurveSurface, ARectangleIsToldWithItsValuesOnce) {
  Surface.SetZoomSelecting(true);
  const QImage before = Shot();
  Press(226, 120);
  EXPECT_FALSE(LabelsShown());
  Move(299, 220, Qt::LeftButton);
  const QImage during = Shot();
  EXPECT_NE(during, before);
  EXPECT_EQ(during.pixelColor(226, 150), QColor(Qt::black)) << "white paper inverted";
  Release(299, 220);
  ASSERT_EQ(Rectangles.size(), 1U);
  EXPECT_NEAR(Rectangles[0].X.Low, 430, 1e-9);
  EXPECT_NEAR(Rectangles[0].X.High, 445, 1e-9);
  EXPECT_NEAR(Rectangles[0].Y.Low, 0.8, 1e-9);
  EXPECT_NEAR(Rectangles[0].Y.High, 1.4, 1e-9);
  EXPECT_EQ(RectangleSize, QSize(73, 100));
  EXPECT_FALSE(Surface.ZoomSelecting());
  EXPECT_EQ(Surface.View().Scale, Curve.View.Scale) << "the window decides";
  EXPECT_EQ(Shot(), before);
}

TEST_F(CurveSurface, ARectangleDrawnBackwardAndBeyondThePlotIsSortedAndHeldInside) {
  Surface.SetZoomSelecting(true);
  Press(299, 220);
  Move(-50, -50, Qt::LeftButton);
  Release(-50, -50);
  ASSERT_EQ(Rectangles.size(), 1U);
  EXPECT_EQ(Rectangles[0].X.Low, 400);
  EXPECT_EQ(Rectangles[0].Y.High, 2);
  EXPECT_NEAR(Rectangles[0].X.High, 445, 1e-9);
}

TEST_F(CurveSurface, ARectangleWithoutASizeOnlyEndsTheSelection) {
  for (const QPoint& to : {QPoint(226, 120), QPoint(226, 200), QPoint(400, 120)}) {
    Surface.SetZoomSelecting(true);
    Press(226, 120);
    Release(to.x(), to.y());
    EXPECT_FALSE(Surface.ZoomSelecting());
  }
  EXPECT_THAT(Rectangles, IsEmpty());
}

TEST_F(CurveSurface, EscapeEndsTheSelection) {
  QSignalSpy changed(&Surface, &PicCurve::ZoomSelectingChanged);
  Surface.SetZoomSelecting(true);
  Press(226, 120);
  Key(Qt::Key_Escape);
  EXPECT_FALSE(Surface.ZoomSelecting());
  Release(299, 220);
  EXPECT_THAT(Rectangles, IsEmpty());
  EXPECT_EQ(changed.count(), 2);
}

TEST_F(CurveSurface, TheWheelZoomsAroundTheValueUnderThePointer) {
  Wheel(226, 120, 120);
  ASSERT_EQ(Chosen.size(), 1U);
  EXPECT_NEAR(Chosen[0].X.Length(), 80, 1e-9);
  EXPECT_NEAR(Chosen[0].Y.Length(), 1.6, 1e-9);
  Surface.SetScale(Chosen[0]);
  Press(226, 120);
  EXPECT_EQ(Across() + " " + Upward(), "430.0 1.400") << "it stays under the pointer";
  EXPECT_EQ(Surface.View().Scale, Chosen[0]);
}

TEST_F(CurveSurface, TheWheelGoesBackNoFartherThanThereIsSomethingToSee) {
  for (int i = 0; i < 30; ++i) Wheel(226, 120, -120);
  Surface.SetScale({{430, 440}, {0.5, 0.6}});
  Chosen.clear();
  for (int i = 0; i < 40; ++i) {
    Wheel(226, 120, -120);
    Surface.SetScale(Chosen.back());
  }
  EXPECT_EQ(Chosen.back(), (CurveScale{{400, 499}, {-0.5, 3}}));
  Curve.View.FarthestX = AxisRange{190, 1100};
  Surface.SetView(Curve.View);
  for (int i = 0; i < 40; ++i) {
    Wheel(226, 120, -120);
    Surface.SetScale(Chosen.back());
  }
  EXPECT_EQ(Chosen.back().X, (AxisRange{190, 1100}));
}

TEST_F(CurveSurface, BesideThePlotTheWheelTurnsOneAxis) {
  Wheel(30, 120, 120);
  Wheel(226, 380, 120);
  Wheel(226, 120, 120, Qt::ShiftModifier);
  Wheel(226, 120, 120, Qt::ControlModifier);
  ASSERT_EQ(Chosen.size(), 4U);
  EXPECT_EQ(Chosen[0].X, Curve.View.Scale.X);
  EXPECT_LT(Chosen[0].Y.Length(), 2);
  EXPECT_EQ(Chosen[1].Y, Curve.View.Scale.Y);
  EXPECT_LT(Chosen[1].X.Length(), 100);
  EXPECT_EQ(Chosen[2].Y, Curve.View.Scale.Y);
  EXPECT_EQ(Chosen[3].X, Curve.View.Scale.X);
}

TEST_F(CurveSurface, TheMiddleButtonDragsTheView) {
  Surface.SetScale({{430, 440}, {0.5, 1}});
  QTest::mousePress(&Surface, Qt::MiddleButton, {}, {200, 200});
  Move(273, 100, Qt::MiddleButton);
  ASSERT_EQ(Chosen.size(), 1U);
  // 73 of 486.7 pixels are 1.5 of 10 nm; 100 of 333.3 are 0.15 of 0.5.
  EXPECT_NEAR(Chosen[0].X.Low, 428.5, 1e-9);
  EXPECT_NEAR(Chosen[0].X.High, 438.5, 1e-9);
  EXPECT_NEAR(Chosen[0].Y.Low, 0.35, 1e-9);
  EXPECT_NEAR(Chosen[0].Y.High, 0.85, 1e-9);
  QTest::mouseRelease(&Surface, Qt::MiddleButton, {}, {273, 100});
  Move(300, 300);
  EXPECT_EQ(Chosen.size(), 1U) << "the button is up";
}

TEST_F(CurveSurface, ADoubleClickAsksForTheHomeView) {
  QTest::mouseDClick(&Surface, Qt::LeftButton, {}, {226, 120});
  EXPECT_EQ(Homes, 1);
  EXPECT_FALSE(LabelsShown());
}

TEST_F(CurveSurface, TheNearestPointUnderThePointerIsToldOnce) {
  Move(226, 120);
  Move(227, 121);
  EXPECT_THAT(TakePointed(), ElementsAre(30)) << "430 nm, told once";
  Move(226 + 49, 200);
  EXPECT_THAT(TakePointed(), ElementsAre(40));
  Move(20, 120);
  EXPECT_EQ(Away, 1);
}

TEST_F(CurveSurface, OfSeveralCurvesTheNearestIsRead) {
  const std::vector<double> high(100, 1.8);
  CurveLine second = Curve.View.Lines[0];
  second.Y = high;
  Curve.View.Lines.push_back(second);
  Surface.SetView(Curve.View);
  Move(226, 60);
  Move(226, 300);
  ASSERT_EQ(Pointed.size(), 2U);
  EXPECT_EQ(Pointed[0], (PicCurve::PointPlace{1, 30}));
  EXPECT_EQ(Pointed[1], (PicCurve::PointPlace{0, 30}));
  Curve.View.Lines[1].Visible = false;
  Surface.SetView(Curve.View);
  Move(226, 60);
  EXPECT_EQ(Pointed.back(), (PicCurve::PointPlace{0, 30}));
}

TEST_F(CurveSurface, ArrowKeysWalkFromPointToPoint) {
  Key(Qt::Key_Right);
  Key(Qt::Key_Right);
  Key(Qt::Key_Right);
  EXPECT_THAT(TakePointed(), ElementsAre(0, 1, 2));
  EXPECT_EQ(Across() + " " + Upward(), "402.0 0.020");
  EXPECT_TRUE(LabelsShown());
  Key(Qt::Key_Left);
  Key(Qt::Key_End);
  Key(Qt::Key_Right);
  Key(Qt::Key_Home);
  Key(Qt::Key_Left);
  EXPECT_THAT(TakePointed(), ElementsAre(1, 99, 0));
  Key(Qt::Key_Escape);
  EXPECT_FALSE(LabelsShown());
}

TEST_F(CurveSurface, AHiddenCursorStaysAwayInAnotherView) {
  Key(Qt::Key_Right);
  EXPECT_TRUE(LabelsShown());
  Surface.HideCursor();
  Surface.SetScale({{400, 450}, {0, 2}});
  EXPECT_FALSE(LabelsShown());
  Surface.resize(Surface.width() + 40, Surface.height());
  EXPECT_FALSE(LabelsShown());
}

TEST_F(CurveSurface, TheWalkBeginsWhereThePointerWas) {
  Move(226, 120);
  Key(Qt::Key_Right);
  EXPECT_THAT(TakePointed(), ElementsAre(30, 31));
}

TEST_F(CurveSurface, TheWalkLeavesOutGapsAndWhatIsNotInTheView) {
  Curve.Y[51] = kNaN;
  Curve.X[52] = kNaN;
  Surface.SetView(Curve.View);
  Surface.SetScale({{450, 454}, {0, 2}});
  for (int i = 0; i < 6; ++i) Key(Qt::Key_Right);
  EXPECT_THAT(TakePointed(), ElementsAre(50, 53, 54));
}

TEST_F(CurveSurface, RightIsRightInAFallingRecord) {
  std::reverse(Curve.X.begin(), Curve.X.end());
  Surface.SetView(Curve.View);
  Key(Qt::Key_Right);
  Key(Qt::Key_Right);
  EXPECT_THAT(TakePointed(), ElementsAre(99, 98));
  EXPECT_EQ(Across(), "401.0");
}

TEST_F(CurveSurface, UpAndDownGoToTheOtherCurve) {
  const std::vector<double> high(100, 1.8);
  CurveLine second = Curve.View.Lines[0];
  second.Y = high;
  Curve.View.Lines.push_back(second);
  Surface.SetView(Curve.View);
  Key(Qt::Key_Right);
  Key(Qt::Key_Down);
  EXPECT_EQ(Upward(), "1.800");
  Key(Qt::Key_Down);
  Key(Qt::Key_Up);
  EXPECT_EQ(Upward(), "0.000");
}

TEST_F(CurveSurface, WithoutPointsKeysAndPointerFindNothing) {
  Curve.View.Lines.clear();
  Surface.SetView(Curve.View);
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Left, Qt::Key_Home, Qt::Key_End, Qt::Key_Up, Qt::Key_Down})
    Key(key);
  Move(226, 120);
  Curve.View.Scale.Y = {2, 0};
  Surface.SetView(Curve.View);
  Move(226, 120);
  Press(226, 120);
  Release(300, 200);
  Wheel(226, 120, 120);
  Surface.SetZoomSelecting(true);
  Press(226, 120);
  Release(300, 200);
  EXPECT_THAT(Pointed, IsEmpty());
  EXPECT_THAT(Chosen, IsEmpty());
  EXPECT_THAT(Rectangles, IsEmpty());
}

TEST_F(CurveSurface, CursorAndRectangleAreLaidOverTheFinishedPicture) {
  const QImage before = Shot();
  // Drawn anew the curve would be another one.
  std::fill(Curve.Y.begin(), Curve.Y.end(), 1.0);
  Press(226, 120);
  EXPECT_NE(Shot(), before);
  Release(226, 120);
  EXPECT_EQ(Shot(), before);
  Surface.SetView(Curve.View);
  EXPECT_NE(Shot(), before);
}

TEST_F(CurveSurface, PointsThatAreAddedGiveThePictureOfTheWhole) {
  const QImage whole = Shot();
  const std::span<const double> x = Curve.X;
  const std::span<const double> y = Curve.Y;
  CurveView growing = Curve.View;
  growing.Grid = false;
  Surface.SetView(growing);
  const QImage plain = Shot();
  growing.Lines[0].X = x.first(1);
  growing.Lines[0].Y = y.first(1);
  Surface.SetView(growing);
  EXPECT_NE(Shot(), plain);
  for (std::size_t count = 2; count <= x.size(); ++count) Surface.Extend(0, x.first(count), y.first(count));
  EXPECT_EQ(Shot(), plain);
  EXPECT_EQ(Surface.View().Lines[0].Count(), 100U);
  Surface.Extend(7, x, y);
  EXPECT_NE(whole, plain) << "the grid";
}

TEST_F(CurveSurface, ANewSizeOrViewIsDrawnAtOnce) {
  const QImage before = Shot();
  Surface.resize(500, 300);
  EXPECT_EQ(Shot().size(), QSize(500, 300));
  EXPECT_EQ(Shot().pixelColor(80, 200), Curve.View.Colours.Scale);
  Surface.resize(600, 400);
  EXPECT_EQ(Shot(), before);
  EXPECT_EQ(Surface.Image().convertToFormat(QImage::Format_RGB32), before) << "the picture by itself";
}

TEST_F(CurveSurface, ADarkPaletteLeavesThePaperWhiteAndTheLabelsReadable) {
  const QImage before = Shot();
  QPalette dark;
  for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::ToolTipBase})
    dark.setColor(role, QColor(30, 30, 30));
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ToolTipText})
    dark.setColor(role, Qt::white);
  Surface.setPalette(dark);
  EXPECT_EQ(Shot(), before);
  Press(226, 120);
  const QImage label = Surface.findChild<QLabel*>(QStringLiteral("TestDataLabel"))->grab().toImage();
  EXPECT_EQ(label.pixelColor(1, 1), QColor(30, 30, 30));
}

TEST_F(CurveSurface, TheRightButtonOpensThePopupMenuWhenItComesUp) {
  QTest::mouseClick(&Surface, Qt::RightButton, {}, {226, 120});
  EXPECT_EQ(Surface.findChild<QMenu*>(QStringLiteral("Popup")), nullptr) << "without actions there is none";
  QObject actions;
  std::vector<int> asked;
  Surface.SetPopup([&](int command) -> QAction* {
    asked.push_back(command);
    return command == 314 ? nullptr : new QAction(QString::number(command), &actions);
  });
  QTest::mousePress(&Surface, Qt::RightButton, {}, {226, 120});
  EXPECT_EQ(Surface.findChild<QMenu*>(QStringLiteral("Popup")), nullptr);
  QTest::mouseRelease(&Surface, Qt::RightButton, {}, {226, 120});
  auto* const menu = Surface.findChild<QMenu*>(QStringLiteral("Popup"));
  ASSERT_NE(menu, nullptr);
  EXPECT_TRUE(menu->isVisible());
  EXPECT_THAT(asked, ElementsAre(304, 305, 315, 314, 316, 317, 402, 403, 405, 121, 104, 105, 106, 107, 108));
  std::vector<std::string> entries;
  for (const QAction* const action : menu->actions()) {
    if (!action->isSeparator()) entries.push_back(action->text().toStdString());
  }
  EXPECT_THAT(entries, ElementsAre("304", "305", "315", "316", "317", "402", "403", "405", "121", "104",
                                   "105", "106", "107", "108"));
  menu->close();
}

TEST_F(CurveSurface, SaysWhatItShows) {
  Curve.View.Marks = {{450, 0.5, false, {}}, {460, 0.6, false, {}}, {470, 0.1, true, {}}};
  Curve.View.Lines[0].Name = QStringLiteral("holmium.wls");
  Surface.SetView(Curve.View);
  EXPECT_EQ(
      Surface.accessibleDescription().toStdString(),
      "WL.(nm) 400.0 to 500.0\nAbsorbance(Abs) 0.000 to 2.000\nholmium.wls: 100 points\n2 peaks, 1 valleys");
}

TEST_F(CurveSurface, AnyRowOfHandsLeavesItAlive) {
  std::mt19937 random(11);
  const auto upTo = [&random](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  const Qt::Key keys[] = {Qt::Key_Left, Qt::Key_Right,  Qt::Key_Home,    Qt::Key_Up,
                          Qt::Key_Down, Qt::Key_Escape, Qt::Key_PageDown};
  for (int i = 0; i < 3000; ++i) {
    const int x = upTo(620) - 10;
    const int y = upTo(420) - 10;
    switch (upTo(9)) {
      case 0:
        Press(x, y);
        break;
      case 1:
        Move(x, y, Qt::LeftButton);
        break;
      case 2:
        Release(x, y);
        break;
      case 3:
        Wheel(x, y, upTo(960) - 480);
        break;
      case 4:
        QTest::mousePress(&Surface, Qt::MiddleButton, {}, {x, y});
        break;
      case 5:
        QTest::mouseRelease(&Surface, Qt::MiddleButton, {}, {x, y});
        break;
      case 6:
        Key(keys[upTo(7)]);
        break;
      case 7:
        Surface.SetZoomSelecting(upTo(2) == 0);
        break;
      default: {
        if (upTo(10) == 0) Surface.resize(upTo(700) + 1, upTo(500) + 1);
        if (upTo(10) == 0)
          Curve.View.Lines[0].X = std::span<const double>(Curve.X).first(static_cast<std::size_t>(upTo(100)));
        if (upTo(10) == 0) Surface.SetView(Curve.View);
        Shot();
      }
    }
    if (!Chosen.empty()) Surface.SetScale(Chosen.back());
    if (!Rectangles.empty()) Surface.SetScale(Rectangles.back());
    Chosen.clear();
    Rectangles.clear();
    ASSERT_TRUE(Surface.View().Scale.Drawable());
  }
}

}  // namespace
}  // namespace spectrane
