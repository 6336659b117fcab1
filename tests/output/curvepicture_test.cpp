#include "output/curvepicture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>

#include "base/notfinite.h"
#include "output/curvesupport.h"
#include "output/pixels.h"

namespace spectrane {
namespace {

const QColor kCurveRed(255, 0, 0);
const QColor kScaleBlue(0, 0, 255);

/// The curve alone, drawn segment by segment, by the mapping written out.
QImage SegmentBySegment(const CurveView& view, const QSize& size, int dots) {
  QImage image(size * dots, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setPen(QPen(kCurveRed, dots));
  const double width = size.width() * 15.0;
  const double height = size.height() * 15.0;
  const CurveScale& scale = view.Scale;
  const auto place = [&](double x, double y) {
    const double twipsX =
        std::floor((width - 1700) * (x - scale.X.Low) / (scale.X.High - scale.X.Low) + 1200);
    double twipsY = (scale.Y.High - y) * (height - 1000) / (scale.Y.High - scale.Y.Low) + 300;
    if (y >= scale.Y.High) twipsY = 300;
    if (y <= scale.Y.Low) twipsY = height - 700;
    return QPoint(static_cast<int>(std::floor(twipsX / 15 * dots + 0.5)),
                  static_cast<int>(std::floor(twipsY / 15 * dots + 0.5)));
  };
  const auto inside = [&](double x) { return x >= scale.X.Low && x <= scale.X.High; };
  for (const CurveLine& line : view.Lines) {
    for (std::size_t i = 1; i < line.Count(); ++i) {
      const bool drawn =
          inside(line.X[i - 1]) && inside(line.X[i]) && !std::isnan(line.Y[i - 1]) && !std::isnan(line.Y[i]);
      if (drawn) painter.drawLine(place(line.X[i - 1], line.Y[i - 1]), place(line.X[i], line.Y[i]));
    }
  }
  return image;
}

/// The columns whose spans differ, as "column: is / should be".
std::string DifferencesOf(const std::vector<std::pair<int, int>>& spans,
                          const std::vector<std::pair<int, int>>& expected) {
  std::string words = spans.size() == expected.size() ? "" : "another number of columns";
  for (std::size_t x = 0; x < std::min(spans.size(), expected.size()); ++x) {
    if (spans[x] == expected[x]) continue;
    const auto [top, bottom] = spans[x];
    words += std::to_string(x) + ": " + std::to_string(top) + " to " + std::to_string(bottom) + " / " +
             std::to_string(expected[x].first) + " to " + std::to_string(expected[x].second) + "\n";
  }
  return words;
}

struct CurveCase {
  const char* Name;
  std::function<OwnedCurve()> Make;
};

OwnedCurve Changed(OwnedCurve curve, const std::function<void(OwnedCurve&)>& change) {
  change(curve);
  curve.Show();
  return curve;
}

const CurveCase kCurveCases[] = {
    {"no points", [] { return HolmiumCurve(0); }},
    {"one point", [] { return HolmiumCurve(1); }},
    {"two points", [] { return HolmiumCurve(2); }},
    {"three points", [] { return HolmiumCurve(3); }},
    {"sixty points", [] { return HolmiumCurve(60); }},
    {"as many points as columns", [] { return HolmiumCurve(1087); }},
    {"calm", [] { return HolmiumCurve(10001, 0.003); }},
    {"noisy", [] { return HolmiumCurve(10001, 0.6); }},
    {"more points than a file holds", [] { return HolmiumCurve(50000, 0.1); }},
    {"descending",
     [] {
       return Changed(HolmiumCurve(10001, 0.1), [](OwnedCurve& curve) {
         std::reverse(curve.X.begin(), curve.X.end());
         std::reverse(curve.Y.begin(), curve.Y.end());
       });
     }},
    {"in no order",
     [] {
       return Changed(HolmiumCurve(400, 0.1), [](OwnedCurve& curve) {
         std::shuffle(curve.X.begin(), curve.X.end(), std::mt19937(3));
       });
     }},
    {"all at one wavelength",
     [] {
       return Changed(HolmiumCurve(500, 0.5),
                      [](OwnedCurve& curve) { std::fill(curve.X.begin(), curve.X.end(), 600.0); });
     }},
    {"gaps",
     [] {
       return Changed(HolmiumCurve(10001, 0.3), [](OwnedCurve& curve) {
         for (std::size_t i = 0; i < curve.X.size(); i += 7) (i % 2 == 0 ? curve.X : curve.Y)[i] = kNaN;
       });
     }},
    {"infinite values",
     [] {
       return Changed(HolmiumCurve(3000, 0.3), [](OwnedCurve& curve) {
         for (std::size_t i = 0; i < curve.X.size(); i += 50)
           curve.Y[i] = i % 100 == 0 ? kInfinity : -kInfinity;
         curve.X[333] = kInfinity;
         curve.X[444] = -kInfinity;
         curve.Y[555] = 1e308;
       });
     }},
    {"beyond the scale on all sides",
     [] {
       return Changed(HolmiumCurve(10001, 2), [](OwnedCurve& curve) {
         for (double& x : curve.X) x = 725 + (x - 725) * 3;
       });
     }},
};

TEST(CurvePicture, ShowsThePixelsOfTheSegmentsDrawnOneByOne) {
  for (const CurveCase& row : kCurveCases) {
    for (const QSize& size : {QSize(1200, 700), QSize(403, 211)}) {
      OwnedCurve curve = row.Make();
      curve.View.Grid = false;
      const QImage picture = CurveImage(curve.View, size, {});
      const QImage reference = SegmentBySegment(curve.View, size, 1);
      EXPECT_EQ(DifferencesOf(SpansOf(picture, kCurveRed), SpansOf(reference, kCurveRed)), "")
          << row.Name << " " << size.width();
      EXPECT_EQ(CountOf(picture, kCurveRed), CountOf(reference, kCurveRed)) << row.Name;
    }
  }
}

TEST(CurvePicture, AtTwoDotsAPixelTheColumnsReachAsFar) {
  for (const CurveCase& row : kCurveCases) {
    OwnedCurve curve = row.Make();
    curve.View.Grid = false;
    const QImage picture = CurveImage(curve.View, {700, 400}, {}, 2);
    EXPECT_EQ(picture.size(), QSize(1400, 800));
    const QImage reference = SegmentBySegment(curve.View, {700, 400}, 2);
    EXPECT_EQ(DifferencesOf(SpansOf(picture, kCurveRed), SpansOf(reference, kCurveRed)), "") << row.Name;
  }
}

TEST(CurvePicture, ASpikeOfOnePointIsSeen) {
  OwnedCurve curve = Changed(HolmiumCurve(10001), [](OwnedCurve& flat) {
    std::fill(flat.Y.begin(), flat.Y.end(), 0.3);
    flat.Y[6000] = 2.7;
  });
  curve.View.Grid = false;
  const auto spans = SpansOf(CurveImage(curve.View, {1200, 700}, {}), kCurveRed);
  // 350 + 0.6 x 750 = 800 nm: 16300 x 0.6 + 1200 = 10980 twips, 732 pixels; 2.7 Abs: 0.1 x 9500 + 300 = 1250
  // twips, 83 pixels; 0.3 Abs: 8850 twips, 590 pixels.
  EXPECT_EQ(spans[732], std::make_pair(83, 590));
  EXPECT_EQ(spans[700], std::make_pair(590, 590));
}

TEST(CurvePicture, ValuesBeyondTheScaleStandOnItsEdges) {
  OwnedCurve curve({350, 725, 725, 1100}, {9, 9, -9, -9});
  const auto spans = SpansOf(CurveImage(curve.View, {1200, 700}, {}), kCurveRed);
  EXPECT_EQ(spans[300], std::make_pair(20, 20));
  EXPECT_EQ(spans[900], std::make_pair(653, 653)) << "9800 twips";
}

TEST(CurvePicture, EverySurfaceIsPaintedWholeAndNothingElse) {
  OwnedCurve curve = HolmiumCurve(500, 0.1);
  curve.View.Caption = QStringLiteral("WaveLength = 546.0 nm");
  curve.View.Marks = {{450, 1.2, false, QStringLiteral("1")}, {500, 0.1, true, QStringLiteral("2")}};
  for (const int width : {1, 2, 3, 7, 20, 60, 100, 113, 114, 120, 179, 180, 300, 900}) {
    for (const int height : {1, 2, 3, 9, 40, 66, 67, 90, 133, 134, 500}) {
      QImage canvas(width + 20, height + 20, QImage::Format_RGB32);
      canvas.fill(Qt::magenta);
      {
        QPainter painter(&canvas);
        PaintCurve(painter, QRectF(10, 10, width, height), curve.View, {});
      }
      EXPECT_EQ(CountOf(canvas.copy(10, 10, width, height), Qt::magenta), 0) << width << " by " << height;
      const int around = (width + 20) * (height + 20) - width * height;
      EXPECT_EQ(CountOf(canvas, Qt::magenta), around) << width << " by " << height;
      const bool tooSmall = width * 15 < 1700 || height * 15 < 1000;
      EXPECT_EQ(CountOf(canvas, kScaleBlue) == 0, tooSmall) << width << " by " << height;
      const bool noRoom = width * 15 < 2700 || height * 15 < 2000;
      if (!tooSmall) {
        EXPECT_EQ(CountOf(canvas, kCurveRed) == 0, noRoom) << width << " by " << height;
      }
      if (tooSmall && width > 50 && height > 20) {
        EXPECT_GT(CountOf(canvas, Qt::red), 10) << "the words";
      }
    }
  }
}

TEST(CurvePicture, ASmallSurfaceSaysErrorAtItsLeft) {
  const OwnedCurve curve = HolmiumCurve(10);
  const auto spans = SpansOf(CurveImage(curve.View, {110, 60}, {}), Qt::red);
  const auto first =
      std::find_if(spans.begin(), spans.end(), [](const auto& span) { return span.second >= 0; });
  // 100 twips are 6.7 pixels; the letter begins a little inside.
  EXPECT_NEAR(static_cast<double>(first - spans.begin()), 8, 2);
  EXPECT_NEAR((first->first + first->second) / 2.0, 30, 2) << "half the height";
}

TEST(CurvePicture, EmptyAndEndlessSurfacesAreLeftAlone) {
  const OwnedCurve curve = HolmiumCurve(10);
  QImage canvas(50, 50, QImage::Format_RGB32);
  canvas.fill(Qt::magenta);
  QPainter painter(&canvas);
  for (const QRectF& surface : {QRectF(), QRectF(0, 0, 0, 50), QRectF(0, 0, 50, 0), QRectF(0, 0, -50, -50),
                                QRectF(0, 0, kNaN, 50), QRectF(0, 0, kInfinity, kInfinity)})
    PaintCurve(painter, surface, curve.View, {});
  EXPECT_EQ(CountOf(canvas, Qt::magenta), 2500);
  EXPECT_TRUE(CurveImage(curve.View, {0, 0}, {}).isNull());
}

TEST(CurvePicture, AScaleThatIsNoneShowsTheFrameAndSaysWhy) {
  for (const CurveScale& scale :
       {CurveScale{{500, 500}, {0, 3}}, CurveScale{{600, 400}, {0, 3}}, CurveScale{{350, 1100}, {3, 0}},
        CurveScale{{350, 1100}, {1, 1}}, CurveScale{{kNaN, 1100}, {0, 3}},
        CurveScale{{350, kInfinity}, {0, 3}}, CurveScale{{350, 1100}, {-1.7e308, 1.7e308}},
        CurveScale{{-1e308, 0}, {0, 3}}}) {
    OwnedCurve curve = HolmiumCurve(1000, 0.1);
    curve.View.Scale = scale;
    curve.View.Marks = {{450, 1.2, false, QStringLiteral("1")}};
    const QImage picture = CurveImage(curve.View, {600, 400}, {});
    EXPECT_EQ(CountOf(picture, kCurveRed), 0);
    EXPECT_EQ(picture.pixelColor(80, 200), kScaleBlue) << "the left side of the frame";
    EXPECT_LT(CountOf(picture.copy(150, 150, 350, 60), Qt::white), 350 * 60 - 300) << "the words";
  }
}

TEST(CurvePicture, ScalesOfAnySizeAreDrawn) {
  for (const CurveScale& scale :
       {CurveScale{{-9e299, 9e299}, {-9e299, 9e299}}, CurveScale{{0, 5e-324}, {0, 5e-324}},
        CurveScale{{1e17, 1e17 + 32}, {-2147483648.0, 2147483647.0}}}) {
    OwnedCurve curve = HolmiumCurve(100, 0.1);
    for (const double value : {-8e299, 0.0, 5e-324, 1e17, 8e299}) {
      curve.X.push_back(value);
      curve.Y.push_back(value);
    }
    curve.Show();
    curve.View.Scale = scale;
    EXPECT_EQ(CurveImage(curve.View, {600, 400}, {}).pixelColor(80, 200), kScaleBlue);
  }
}

TEST(CurvePicture, TheFrameIsTwoPixelsThickAndTheGridHasTheScalesColour) {
  OwnedCurve curve;
  curve.View.Scale = {{350, 1100}, {0, 3}};
  const QImage with = CurveImage(curve.View, {1200, 700}, {});
  for (const int x : {79, 80}) EXPECT_EQ(with.pixelColor(x, 300), kScaleBlue);
  for (const int x : {78, 81}) EXPECT_NE(with.pixelColor(x, 300), kScaleBlue);
  // 1.5 Abs lies at 5050 twips, row 337.
  const auto rowCount = [](const QImage& image, int y) {
    return CountOf(image.copy(120, y, 1000, 1), QColor(0, 0, 255));
  };
  EXPECT_GT(rowCount(with, 337), 300);
  EXPECT_LT(rowCount(with, 336), 100);
  curve.View.Grid = false;
  EXPECT_EQ(rowCount(CurveImage(curve.View, {1200, 700}, {}), 337), 0);
}

TEST(CurvePicture, EveryColourIsTheOneGiven) {
  OwnedCurve curve = HolmiumCurve(1000);
  CurveView& view = curve.View;
  view.Colours = {QColor(20, 20, 20), QColor(1, 200, 3), QColor(4, 5, 200), QColor(200, 7, 80),
                  QColor(9, 90, 110)};
  view.Lines[0].Colour = QColor(250, 251, 10);
  view.Marks = {{450.8, 1.2, false, QStringLiteral("1")}, {500, 0.1, true, QStringLiteral("2")}};
  const QImage picture = CurveImage(view, {800, 500}, {});
  for (const QColor& colour :
       {view.Colours.Paper, view.Colours.Scale, view.Lines[0].Colour, view.Colours.Peak, view.Colours.Valley})
    EXPECT_GT(CountOf(picture, colour), 3) << colour.name().toStdString();
  view.Lines[0].Visible = false;
  EXPECT_EQ(CountOf(CurveImage(view, {800, 500}, {}), view.Lines[0].Colour), 0);
}

TEST(CurvePicture, MarksStandAbovePeaksAndBelowValleysAndOnlyInsideTheRange) {
  OwnedCurve curve;
  // 725 nm is column 623, 1.5 Abs row 337.
  curve.View.Marks = {{725, 1.5, false, {}}};
  const auto rows = [](const QImage& image, const QColor& colour) {
    const auto spans = SpansOf(image, colour);
    return spans[623];
  };
  const auto peak = rows(CurveImage(curve.View, {1200, 700}, {}), curve.View.Colours.Peak);
  EXPECT_LT(peak.second, 337);
  EXPECT_GT(peak.first, 320);
  curve.View.Marks = {{725, 1.5, true, {}}};
  const auto valley = rows(CurveImage(curve.View, {1200, 700}, {}), curve.View.Colours.Valley);
  EXPECT_GT(valley.first, 337);
  EXPECT_LT(valley.second, 354);
  curve.View.Marks = {{349.9, 1.5, false, QStringLiteral("1")},
                      {1100.1, 1, true, QStringLiteral("2")},
                      {kNaN, 1, false, {}},
                      {500, kNaN, false, {}}};
  const QImage none = CurveImage(curve.View, {1200, 700}, {});
  EXPECT_EQ(CountOf(none, curve.View.Colours.Peak), 0);
  EXPECT_EQ(CountOf(none, curve.View.Colours.Valley), 0);
}

TEST(CurvePicture, ThousandsOfMarksAreDrawnWithTheTextsThatFindRoom) {
  OwnedCurve curve = HolmiumCurve(10001, 0.05);
  for (std::size_t i = 0; i < 5000; ++i)
    curve.View.Marks.push_back({curve.X[2 * i], curve.Y[2 * i], i % 2 == 0, QStringLiteral("%1").arg(i)});
  curve.View.Marks.push_back({500, kInfinity, false, QStringLiteral("high")});
  EXPECT_GT(CountOf(CurveImage(curve.View, {1200, 700}, {}), curve.View.Colours.Peak), 1000);
}

TEST(CurvePicture, ThePainterComesBackAsItWas) {
  const OwnedCurve curve = HolmiumCurve(100);
  QImage canvas(600, 400, QImage::Format_RGB32);
  QPainter painter(&canvas);
  painter.translate(3, 4);
  painter.setPen(Qt::green);
  painter.setBrush(Qt::cyan);
  painter.setRenderHint(QPainter::Antialiasing);
  const QTransform transform = painter.transform();
  const QFont font = painter.font();
  PaintCurve(painter, QRectF(0, 0, 500, 300), curve.View, {});
  EXPECT_EQ(painter.transform(), transform);
  EXPECT_EQ(painter.pen().color(), QColor(Qt::green));
  EXPECT_EQ(painter.brush().color(), QColor(Qt::cyan));
  EXPECT_EQ(painter.font(), font);
  EXPECT_TRUE(painter.testRenderHint(QPainter::Antialiasing));
  EXPECT_FALSE(painter.hasClipping());
}

TEST(CurvePicture, SegmentsDrawnOneByOneLaterGiveTheSamePicture) {
  OwnedCurve curve = HolmiumCurve(3000, 0.2);
  curve.Y[1500] = kNaN;
  curve.View.Grid = false;
  const QImage whole = CurveImage(curve.View, {900, 500}, {});
  const std::span<const double> x = curve.X;
  const std::span<const double> y = curve.Y;
  CurveView growing = curve.View;
  growing.Lines[0].X = x.first(0);
  QImage grown = CurveImage(growing, {900, 500}, {});
  for (std::size_t count = 1; count <= x.size(); ++count) {
    growing.Lines[0].X = x.first(count);
    growing.Lines[0].Y = y.first(count);
    const QImage before = count % 500 == 0 ? grown.copy() : QImage();
    QPainter painter(&grown);
    const QRectF touched = PaintSegments(painter, QRectF(0, 0, 900, 500), growing, 0, count - 1, {});
    painter.end();
    if (before.isNull()) continue;
    // What it says it touched is all that has changed.
    for (int row = 0; row < grown.height(); ++row) {
      for (int column = 0; column < grown.width(); ++column) {
        if (grown.pixel(column, row) != before.pixel(column, row)) {
          ASSERT_TRUE(touched.contains(QPointF(column + 0.5, row + 0.5))) << column << ", " << row;
        }
      }
    }
  }
  EXPECT_EQ(grown, whole);
}

}  // namespace
}  // namespace spectrane
