#include "output/curvetrace.h"

#include <gmock/gmock.h>

#include <set>

#include "base/notfinite.h"
#include "output/curvesupport.h"

namespace spectrane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// 1000 by 1000 dots between the margins, 0 to 1000 each way: a value is its column, from the margin on.
class CurveTracing : public testing::Test {
 protected:
  CurveTracing()
      : geometry_(QSizeF(1700 + 15000, 1000 + 15000), CurveMargins(), {{0, 1000}, {0, 1000}}),
        dots_(geometry_, 1 / 15.0) {}

  CurveTrace Trace(std::size_t first = 1) {
    Line.X = X;
    Line.Y = Y;
    return TraceOf(Line, dots_, first);
  }
  int Column(double x) const { return dots_.X(x); }
  int Row(double y) const { return dots_.Y(y); }
  QRect Run(double x, double from, double to) const {
    return QRect(QPoint(Column(x), Row(to)), QPoint(Column(x), Row(from)));
  }
  QLine Line2(double x1, double y1, double x2, double y2) const {
    return {Column(x1), Row(y1), Column(x2), Row(y2)};
  }

  CurveGeometry geometry_;
  CurveDots dots_;
  std::vector<double> X;
  std::vector<double> Y;
  CurveLine Line;
};

TEST_F(CurveTracing, ADotIsTheNearestToItsPlace) {
  EXPECT_EQ(Column(0), 80);
  EXPECT_EQ(Column(1000), 1080);
  EXPECT_EQ(Column(7), 87);
  EXPECT_EQ(Row(1000), 20);
  EXPECT_EQ(Row(0), 1020);
  EXPECT_EQ(Row(2000), 20);
  EXPECT_EQ(Row(-5), 1020);
}

TEST_F(CurveTracing, NoPointsAndOnePointDrawNothing) {
  EXPECT_THAT(Trace().Runs, IsEmpty());
  X = {5};
  Y = {5};
  EXPECT_THAT(Trace().Runs, IsEmpty());
  EXPECT_THAT(Trace().Crossings, IsEmpty());
}

TEST_F(CurveTracing, PointsOfAColumnBecomeOneRunWithTheSpikeInIt) {
  X = {5, 5.1, 5.2, 5.3, 5.4};
  Y = {10, 11, 900, 12, 9};
  EXPECT_THAT(Trace().Runs, ElementsAre(Run(5, 9, 900)));
  EXPECT_THAT(Trace().Crossings, IsEmpty());
}

TEST_F(CurveTracing, ACrossingIsDrawnUnlessBothColumnsCoverIt) {
  // The second column reaches up to 180 only.
  X = {5, 5.1, 6, 6.1};
  Y = {100, 200, 180, 120};
  EXPECT_THAT(Trace().Crossings, ElementsAre(Line2(5.1, 200, 6, 180)));
  X = {5, 5.1, 5.2, 6, 6.1, 6.2};
  Y = {100, 300, 200, 190, 100, 300};
  EXPECT_THAT(Trace().Crossings, IsEmpty());
}

TEST_F(CurveTracing, ColumnsThatAreFarApartAreJoinedByLines) {
  X = {10, 20, 40};
  Y = {10, 500, 20};
  const CurveTrace trace = Trace();
  EXPECT_THAT(trace.Crossings, ElementsAre(Line2(10, 10, 20, 500), Line2(20, 500, 40, 20)));
}

TEST_F(CurveTracing, SegmentsOfPointsOutsideAreLeftOutEndsIncluded) {
  X = {-1, 0, 10, 1000, 1001};
  Y = {1, 2, 3, 4, 5};
  EXPECT_THAT(Trace().Crossings, ElementsAre(Line2(0, 2, 10, 3), Line2(10, 3, 1000, 4)));
}

TEST_F(CurveTracing, AGapInAColumnStaysAGap) {
  X = {5, 5.1, 5.2, 5.3, 5.4};
  Y = {10, 20, kNaN, 500, 510};
  EXPECT_THAT(Trace().Runs, ElementsAre(Run(5, 10, 20), Run(5, 500, 510)));
  Y = {10, 20, 30, 500, 510};
  X[2] = kNaN;
  EXPECT_THAT(Trace().Runs, ElementsAre(Run(5, 10, 20), Run(5, 500, 510)));
  X[2] = kInfinity;
  EXPECT_THAT(Trace().Runs, ElementsAre(Run(5, 10, 20), Run(5, 500, 510)));
}

TEST_F(CurveTracing, InfiniteValuesStandOnTheEdges) {
  X = {5, 5.1, 5.2};
  Y = {10, kInfinity, -kInfinity};
  EXPECT_THAT(Trace().Runs, ElementsAre(Run(5, 0, 1000)));
}

TEST_F(CurveTracing, CanBeginInTheMiddle) {
  X = {1, 2, 3, 4};
  Y = {10, 20, 30, 40};
  EXPECT_THAT(Trace(3).Crossings, ElementsAre(Line2(3, 30, 4, 40)));
  EXPECT_THAT(Trace(4).Crossings, IsEmpty());
  EXPECT_THAT(Trace(40).Crossings, IsEmpty());
}

TEST_F(CurveTracing, AChainKeepsFirstHighestLowestAndLastOfAColumn) {
  X = {5, 5.1, 5.2, 5.3, 5.4, 9, 12, 13};
  Y = {10, 400, 30, 2, 20, 50, kNaN, 60};
  Line.X = X;
  Line.Y = Y;
  const std::vector<QPolygon> chains = ChainsOf(Line, dots_);
  ASSERT_EQ(chains.size(), 1U) << "the last point has no neighbour";
  EXPECT_EQ(chains[0],
            QPolygon({QPoint(Column(5), Row(10)), QPoint(Column(5), Row(400)), QPoint(Column(5), Row(2)),
                      QPoint(Column(5), Row(20)), QPoint(Column(9), Row(50))}));
}

using Dots = std::set<std::pair<int, int>>;

Dots Filled(const std::vector<QRect>& rects) {
  Dots dots;
  for (const QRect& rect : rects) {
    for (int x = rect.left(); x <= rect.right(); ++x) {
      for (int y = rect.top(); y <= rect.bottom(); ++y) dots.emplace(x, y);
    }
  }
  return dots;
}

TEST(MergedRuns, CoverTheSameDotsWithFewerRectangles) {
  SmallNoise random;
  std::vector<QRect> runs;
  for (int x = 0; x < 300; ++x) {
    if (x % 70 == 0) continue;
    const int top = static_cast<int>(100 + 40 * random.Next());
    runs.emplace_back(x, top, 1, static_cast<int>(60 + 59 * random.Next()));
  }
  runs.emplace_back(12, 3, 1, 200);
  const std::vector<QRect> merged = MergedRuns(runs, 1);
  EXPECT_EQ(Filled(merged), Filled(runs));
  EXPECT_THAT(MergedRuns({}, 1), IsEmpty());
  const std::vector<QRect> equal(8, QRect(0, 10, 1, 50));
  std::vector<QRect> sideBySide;
  for (int x = 0; x < 8; ++x) sideBySide.push_back(equal[0].translated(x, 0));
  EXPECT_THAT(MergedRuns(sideBySide, 1), ElementsAre(QRect(0, 10, 8, 50)));
}

TEST(MergedRuns, AreWiderWithTheLine) {
  EXPECT_THAT(MergedRuns({QRect(10, 20, 1, 5)}, 2), ElementsAre(QRect(9, 19, 2, 6)));
  EXPECT_THAT(MergedRuns({QRect(10, 20, 1, 5)}, 3), ElementsAre(QRect(9, 19, 3, 7)));
}

}  // namespace
}  // namespace spectrane
