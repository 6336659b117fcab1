#include "output/quantitationpicture.h"

#include <limits>

#include "base/basesupport.h"
#include "base/notfinite.h"
#include "output/quantitationpicturesupport.h"

namespace spectrane {
namespace {

const QuantitationColours kColours;

QColor ColourAt(const QImage& image, double x, double y) {
  return image.pixelColor(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)));
}

/// Some pixel beside the place is nearer to the colour than to anything else in the picture.
bool IsNear(const QImage& image, const QPointF& place, const QColor& colour) {
  for (int y = -1; y <= 1; ++y) {
    for (int x = -1; x <= 1; ++x) {
      const QColor found = ColourAt(image, place.x() + x, place.y() + y);
      const int off = std::abs(found.red() - colour.red()) + std::abs(found.green() - colour.green()) +
                      std::abs(found.blue() - colour.blue());
      if (off < 60) return true;
    }
  }
  return false;
}

// 500 by 300 pixels, axes to 1 and 20: the area is 400 by 213.3 pixels from (80, 20) to (480, 233.3).
QuaOption Line(std::int32_t wavelengths = 1) {
  QuaOption qua = FittedStandards({{0.2, 4}, {0.5, 10}, {0.95, 19}}, 1, wavelengths);
  // Without the rounding of the fit, which would need a longer axis.
  qua.CurveK = {0, 20, 0, 0};
  return qua;
}

TEST(QuantitationPicture, HasARedCrossWhereAStandardLies) {
  const QImage image = PictureOf(Line(), {500, 300});
  // Absorbance 0.5 and 10: half way on both axes, at (280, 126.67). The arms reach 45 twips, 3 pixels, before
  // the point, and 60 from it, which ends the last pixel 3 pixels behind it.
  for (int i = -3; i <= 3; ++i) {
    EXPECT_EQ(image.pixelColor(280 + i, 127), kColours.Mark) << i;
    EXPECT_EQ(image.pixelColor(280, 127 + i), kColours.Mark) << i;
  }
  for (const int i : {-4, 4}) {
    EXPECT_NE(image.pixelColor(280 + i, 127), kColours.Mark) << i;
    EXPECT_NE(image.pixelColor(280, 127 + i), kColours.Mark) << i;
  }
  EXPECT_EQ(CountOf(image, kColours.Mark), 3 * 13)
      << "three crosses of 7 by 7 pixels, and nothing else is red";
}

TEST(QuantitationPicture, HasTwiceTheDotsOnAFineScreen) {
  const QImage image = PictureOf(Line(), {500, 300}, {}, 2);
  EXPECT_EQ(CountOf(image, kColours.Mark), 3 * (14 * 2 + 14 * 2 - 4));
  EXPECT_EQ(ColourAt(image, 560, 253), kColours.Mark);
}

TEST(QuantitationPicture, HasTheSameSizesInFineDotsOnPaper) {
  QuantitationPictureOptions options;
  // 600 dots an inch; the picture has the same 7500 by 4500 twips.
  options.TwipsPerUnit = 2.4;
  const QImage image = PictureOf(Line(), {3125, 1875}, options);
  // The point lies at 4200 and 1900 twips; its arms are 6 dots thick, reach 18.75 dots before it and end
  // at 25.
  const QPointF at(1750, 1900 / 2.4);
  for (const double along : {-18.0, 0.0, 24.0}) {
    EXPECT_EQ(ColourAt(image, at.x() + along, at.y() + 3), kColours.Mark) << along;
    EXPECT_EQ(ColourAt(image, at.x() + 3, at.y() + along), kColours.Mark) << along;
  }
  for (const double along : {-21.0, 27.0})
    EXPECT_NE(ColourAt(image, at.x() + along, at.y() + 3), kColours.Mark);
}

TEST(QuantitationPicture, HasTheCurveWhereTheEquationPutsIt) {
  const QImage image = PictureOf(Line(), {500, 300});
  // Concentration = 20 x absorbance.
  for (const double abs : {0.1, 0.35, 0.7})
    EXPECT_TRUE(IsNear(image, {80 + 400 * abs, 20 + 640 / 3.0 * (1 - abs)}, kColours.Curve)) << abs;
  EXPECT_FALSE(IsNear(image, {80 + 400 * 0.35, 20 + 640 / 3.0 * 0.35}, kColours.Curve));
  // 20 x absorbance squared: a quarter of the height at half the way.
  QuaOption parabola = Line();
  parabola.FittingMethod = 2;
  parabola.CurveK = {0, 0, 20, 0};
  EXPECT_TRUE(IsNear(PictureOf(parabola, {500, 300}), {280, 20 + 160}, kColours.Curve));
}

TEST(QuantitationPicture, HoldsTheCurveInsideItsAxes) {
  QuaOption qua = Line();
  qua.FittingMethod = 2;
  // A parabola far above the axes in the middle and below them at the end.
  qua.CurveK = {-50, 1000, -1000, 0};
  const QImage image = PictureOf(qua, {500, 300});
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y) != kColours.Curve) continue;
      ASSERT_TRUE(x >= 80 && x <= 480 && y >= 20 && y <= 233) << x << " " << y;
    }
  }
  EXPECT_TRUE(IsNear(image, {280, 20}, kColours.Curve)) << "held at the upper end";
}

TEST(QuantitationPicture, PutsStandardsBeyondTheAxesOnTheirEnds) {
  QuaOption qua = Line();
  qua.StandardAbs[0][0] = -3;
  qua.StandardConc[0] = -1e308;
  const QImage image = PictureOf(qua, {500, 300});
  EXPECT_EQ(image.pixelColor(80, 233), kColours.Mark);
}

TEST(QuantitationPicture, TakesTheCombinedAbsorbanceOfTwoWavelengths) {
  QuaOption qua = Line(2);
  qua.StandardAbs[1][0] = 0.05;
  EXPECT_EQ(PictureOf(qua, {500, 300}).pixelColor(280, 127), kColours.Mark);
}

TEST(QuantitationPicture, StressesTheStandardThatIsSelected) {
  QuantitationPictureOptions options;
  options.Colours.Selected = QColor(0, 200, 0);
  EXPECT_EQ(CountOf(PictureOf(Line(), {500, 300}, options), options.Colours.Selected), 0);
  options.SelectedRow = 1;
  const QImage image = PictureOf(Line(), {500, 300}, options);
  // A ring of 8 pixels round the point.
  for (const QPointF& side : {QPointF(8.5, 0.5), QPointF(-7.5, 0.5), QPointF(0.5, 8.5), QPointF(0.5, -7.5)})
    EXPECT_TRUE(IsNear(image, QPointF(280, 126.7) + side, options.Colours.Selected));
  EXPECT_EQ(CountOf(image, kColours.Mark), 3 * 13) << "the cross stays whole";
  options.SelectedRow = 7;
  EXPECT_EQ(CountOf(PictureOf(Line(), {500, 300}, options), options.Colours.Selected), 0);
}

TEST(QuantitationPicture, ShowsRejectedStandardsWithTheRemark) {
  const QuaOption qua = FittedStandards({{0.1, 10}, {0.5, 1}, {0.6, 9}}, 0);
  ASSERT_EQ(StateOf(qua), QuantitationState::Rejected);
  const QImage image = PictureOf(qua, {500, 300});
  EXPECT_EQ(CountOf(image, kColours.Mark), 3 * 13);
  int ink = 0;
  for (int x = 80; x < 480; ++x) {
    for (int y = 2; y < 18; ++y) ink += image.pixelColor(x, y) != kColours.Paper ? 1 : 0;
  }
  EXPECT_GT(ink, 200) << "words above the plot";
}

TEST(QuantitationPicture, HasNeitherCurveNorCrossWithoutAFit) {
  QuaOption incomplete = Line();
  incomplete.StandardAbsSet[2] = false;
  QuaOption none = Line();
  none.SampleNumber = 0;
  QuaOption endless = Line();
  endless.StandardConc[1] = kInfinity;
  for (const QuaOption& qua : {incomplete, none, endless}) {
    QuantitationPictureOptions options;
    options.Colours.HintPaper = QColor(10, 20, 30);
    options.Colours.HintInk = QColor(200, 210, 220);
    const QImage image = PictureOf(qua, {500, 300}, options);
    EXPECT_EQ(CountOf(image, kColours.Mark), 0);
    EXPECT_EQ(CountOf(image, kColours.Curve), 0);
    EXPECT_GT(CountOf(image, options.Colours.HintPaper), 500 * 300 / 2);
    EXPECT_GT(CountOf(image, options.Colours.HintInk), 50) << "the hint";
  }
}

/// Two standards on the line concentration = 6000 x absorbance.
QuaOption SteepLine(double lastAbs) {
  return FittedStandards({{0.11, 660}, {lastAbs, 6000 * lastAbs}}, 1);
}

int DotsBetween(const QImage& image, int top, int bottom) {
  int dots = 0;
  for (int y = top; y < bottom; ++y) {
    for (int x = 0; x < image.width(); ++x) dots += image.pixelColor(x, y) != kColours.Paper ? 1 : 0;
  }
  return dots;
}

// Where an axis had no end the equation was gone with the curve.
TEST(QuantitationPicture, KeepsTheEquationBelowTheHintWhereAnAxisHasNoEnd) {
  // Absorbances to 1.1 have an axis to 2, where the concentration is 12000; those to 1 end at 6000.
  const QuaOption steep = SteepLine(1.1);
  ASSERT_TRUE(steep.CurveValid);
  ASSERT_EQ(StateOf(steep), QuantitationState::OffScale);
  const QuaOption drawn = SteepLine(1.0);
  ASSERT_EQ(StateOf(drawn), QuantitationState::Curve);
  const QImage image = PictureOf(steep, {500, 300});
  // The equation has the lowest lines for itself, from 233.3 + 2.2 x 19 pixels on.
  constexpr int kTop = 274;
  const auto line = [](const QImage& picture) { return picture.copy(0, kTop, 500, 300 - kTop); };
  EXPECT_EQ(line(image), line(PictureOf(drawn, {500, 300}))) << "the same equation in the same place";
  EXPECT_GT(DotsBetween(image, kTop, 300), 200);
  EXPECT_EQ(DotsBetween(image, kTop - 4, kTop), 0) << "apart from the hint";
  EXPECT_GT(DotsBetween(image, 0, kTop - 4), 500) << "the hint";
  EXPECT_EQ(CountOf(image, kColours.Mark) + CountOf(image, kColours.Curve), 0);

  QuaOption typed = Line();
  typed.CurveItem = 2;
  typed.InputK = {0, 8000, 0, 0};
  const QuaOption rejected = FittedStandards({{0.1, 60000}, {0.5, 6000}, {0.6, 54000}}, 0);
  EXPECT_FALSE(rejected.CurveValid);
  for (const QuaOption& qua : {typed, rejected}) {
    ASSERT_EQ(StateOf(qua), QuantitationState::OffScale);
    EXPECT_GT(DotsBetween(PictureOf(qua, {500, 300}), kTop, 300), 200);
  }
}

TEST(QuantitationPicture, HasNoCrossesBesideTypedCoefficients) {
  QuaOption qua = Line();
  qua.CurveItem = 2;
  qua.InputK = {0, 5, 0, 0};
  const QImage image = PictureOf(qua, {500, 300});
  EXPECT_EQ(CountOf(image, kColours.Mark), 0);
  EXPECT_GT(CountOf(image, kColours.Curve), 100);
}

TEST(QuantitationPicture, StaysOnItsSurface) {
  QImage image(400, 400, QImage::Format_RGB32);
  image.fill(Qt::magenta);
  QPainter painter(&image);
  QuaOption qua = Line();
  qua.ConcUnit = std::string(200, 'W');
  qua.CurveK = {0, 9000, 0, 0};
  // Numbers wider than the margin they stand in.
  QuantitationPictureOptions options;
  options.Font.setStretch(400);
  PaintQuantitation(painter, QRectF(50, 60, 200, 180), qua, DisplayFormats(), options);
  painter.end();
  EXPECT_EQ(CountOf(image.copy(50, 60, 200, 180), Qt::magenta), 0);
  EXPECT_EQ(CountOf(image, Qt::magenta), 400 * 400 - 200 * 180);
}

TEST(QuantitationPicture, LeavesThePainterAsItWas) {
  QImage image(300, 200, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setPen(QPen(Qt::green, 3));
  painter.translate(5, 5);
  const QTransform before = painter.transform();
  PaintQuantitation(painter, QRectF(0, 0, 300, 200), Line(), DisplayFormats(), {});
  EXPECT_EQ(painter.pen(), QPen(Qt::green, 3));
  EXPECT_EQ(painter.transform(), before);
  EXPECT_FALSE(painter.hasClipping());
}

TEST(QuantitationPicture, TakesSurfacesOfEverySize) {
  const int sizes[] = {0, 1, 2, 7, 80, 100, 101, 120, 160, 161, 200, 333, 1000, 2000, 3000};
  for (const QuaOption& qua :
       {Line(), FittedStandards({{0.1, 10}, {0.5, 1}, {0.6, 9}}, 1), QuaOption(), SteepLine(1.1)}) {
    for (const int width : sizes) {
      for (const int height : {1, 3, 86, 87, 107, 127, 200}) {
        if (width == 0) continue;
        EXPECT_EQ(CountOf(PictureOf(qua, {width, height}), Qt::magenta), 0) << width << " " << height;
        EXPECT_EQ(CountOf(PictureOf(qua, {height, width}), Qt::magenta), 0) << height << " " << width;
      }
    }
    EXPECT_EQ(CountOf(PictureOf(qua, {3000, 2000}), Qt::magenta), 0);
  }
  QImage image(10, 10, QImage::Format_RGB32);
  QPainter painter(&image);
  for (const QRectF& surface :
       {QRectF(0, 0, 0, 0), QRectF(0, 0, -4, 9), QRectF(0, 0, kNaN, kNaN), QRectF(0, 0, kInfinity, 1e308)})
    PaintQuantitation(painter, surface, Line(), DisplayFormats(), {});
}

struct ValueRow {
  const char* Name;
  double Value;
};

class DegenerateNumbers : public testing::TestWithParam<ValueRow> {};

TEST_P(DegenerateNumbers, AreHarmlessInEveryPlace) {
  const double value = GetParam().Value;
  for (std::int32_t method = -1; method <= 4; ++method) {
    for (int place = 0; place < 5; ++place) {
      for (const std::int32_t item : {1, 2}) {
        QuaOption qua = Line();
        qua.FittingMethod = method;
        qua.CurveItem = item;
        qua.CurveValid = true;
        if (place == 0) qua.StandardAbs[1][0] = value;
        if (place == 1) qua.StandardConc[2] = value;
        if (place == 2) qua.CurveK = qua.InputK = {value, 1, 1, 1};
        if (place == 3) qua.CurveK = qua.InputK = {1, value, -value, value};
        if (place == 4) qua.CurveR = value;
        EXPECT_EQ(CountOf(PictureOf(qua, {320, 240}), Qt::magenta), 0) << method << " " << place;
        EXPECT_NO_THROW(HintOf(qua));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Values, DegenerateNumbers,
                         testing::Values(ValueRow{"NaN", kNaN}, ValueRow{"Infinity", kInfinity},
                                         ValueRow{"MinusInfinity", -kInfinity}, ValueRow{"Huge", 1e308},
                                         ValueRow{"MinusHuge", -1e308}, ValueRow{"Tiny", 5e-324},
                                         ValueRow{"Zero", 0}, ValueRow{"MinusZero", -0.0},
                                         ValueRow{"IntegerOverflow", 2147483648.0}),
                         NameOfRow<ValueRow>);

}  // namespace
}  // namespace spectrane
