#include "output/curvegeometry.h"

#include <gtest/gtest.h>

#include "base/notfinite.h"

namespace spectrane {
namespace {

// 1200 by 700 pixels.
constexpr QSizeF kSurfaceTwips(18000, 10500);

CurveGeometry Wide(const CurveScale& scale = {}) {
  return {kSurfaceTwips, CurveMargins(), scale};
}

TEST(CurveGeometry, ThePlotLiesBetweenTheMargins) {
  EXPECT_EQ(Wide().Area(), QRectF(1200, 300, 16300, 9500));
  CurveMargins timeScan;
  timeScan.Top = 500;
  EXPECT_EQ(CurveGeometry(kSurfaceTwips, timeScan, {}).Area(), QRectF(1200, 500, 16300, 9300));
}

TEST(CurveGeometry, ValuesAcrossStandOnWholeTwips) {
  const CurveGeometry geometry = Wide({{350, 1100}, {0, 3}});
  EXPECT_EQ(geometry.XAt(350), 1200);
  EXPECT_EQ(geometry.XAt(1100), 17500);
  EXPECT_EQ(geometry.XAt(725), 9350);
  // 16300 / 750 + 1200 = 1221.73
  EXPECT_EQ(geometry.XAt(351), 1221);
}

TEST(CurveGeometry, ValuesUpwardAreHeldAtTheEdges) {
  const CurveGeometry geometry = Wide({{350, 1100}, {-0.5, 3}});
  EXPECT_EQ(geometry.YAt(3), 300);
  EXPECT_EQ(geometry.YAt(-0.5), 9800);
  EXPECT_EQ(geometry.YAt(1.25), 5050);
  EXPECT_EQ(geometry.YAt(17), 300);
  EXPECT_EQ(geometry.YAt(kInfinity), 300);
  EXPECT_EQ(geometry.YAt(-17), 9800);
  EXPECT_EQ(geometry.YAt(-kInfinity), 9800);
}

TEST(CurveGeometry, PlacesGoBackToTheirValues) {
  const CurveGeometry geometry = Wide({{350, 1100}, {0, 3}});
  EXPECT_DOUBLE_EQ(geometry.ValueAtX(9350), 725);
  EXPECT_DOUBLE_EQ(geometry.ValueAtX(1200), 350);
  EXPECT_DOUBLE_EQ(geometry.ValueAtY(300), 3);
  EXPECT_DOUBLE_EQ(geometry.ValueAtY(9800), 0);
  EXPECT_DOUBLE_EQ(geometry.ValueAtY(5050), 1.5);
  for (double value = 350; value <= 1100; value += 0.7)
    EXPECT_NEAR(geometry.ValueAtX(geometry.XAt(value)), value, 750.0 / 16300);
}

TEST(CurveGeometry, TheEdgesBelongToThePlot) {
  const CurveGeometry geometry = Wide();
  EXPECT_TRUE(geometry.Contains({1200, 300}));
  EXPECT_TRUE(geometry.Contains({17500, 9800}));
  EXPECT_FALSE(geometry.Contains({1199, 400}));
  EXPECT_FALSE(geometry.Contains({17501, 400}));
  EXPECT_FALSE(geometry.Contains({1300, 299}));
  EXPECT_FALSE(geometry.Contains({1300, 9801}));
}

struct SizeCase {
  QSizeF Size;
  bool TooSmall;
  bool Drawable;
};

TEST(CurveGeometry, SurfacesBelowTheirMarginsAreTooSmall) {
  const SizeCase kCases[] = {
      {{1699, 5000}, true, false},  {{5000, 999}, true, false},
      {{1700, 1000}, false, false}, {{1701, 1001}, false, true},
      {{0, 0}, true, false},        {{-10, -10}, true, false},
      {{kNaN, 5000}, true, false},  {{5000, kInfinity}, true, false},
  };
  for (const SizeCase& row : kCases) {
    const CurveGeometry geometry(row.Size, CurveMargins(), {});
    EXPECT_EQ(geometry.TooSmall(), row.TooSmall) << row.Size.width() << " by " << row.Size.height();
    EXPECT_EQ(geometry.Drawable(), row.Drawable) << row.Size.width() << " by " << row.Size.height();
    EXPECT_GE(geometry.Area().width(), 0);
    EXPECT_GE(geometry.Area().height(), 0);
  }
}

TEST(CurveGeometry, AScaleThatIsNoneIsNotDrawable) {
  EXPECT_FALSE(Wide({{500, 500}, {0, 3}}).Drawable());
  EXPECT_FALSE(Wide({{600, 500}, {0, 3}}).Drawable());
  EXPECT_FALSE(Wide({{350, 1100}, {3, 0}}).Drawable());
  EXPECT_FALSE(Wide({{350, 1100}, {0, kNaN}}).Drawable());
  EXPECT_FALSE(Wide({{kNaN, kNaN}, {0, 3}}).Drawable());
}

TEST(LabelPlaces, EachPlaceIsGivenOnceAndInsideOnly) {
  LabelPlaces places(QRectF(0, 0, 100, 50));
  EXPECT_TRUE(places.Take({10, 10, 20, 10}));
  EXPECT_FALSE(places.Take({25, 15, 20, 10})) << "overlaps";
  EXPECT_TRUE(places.Take({30, 10, 20, 10})) << "side by side";
  EXPECT_FALSE(places.Take({90, 10, 20, 10})) << "beyond the right edge";
  EXPECT_FALSE(places.Take({10, -1, 5, 5}));
  EXPECT_TRUE(places.IsFree({60, 10, 20, 10}));
  EXPECT_TRUE(places.Take({60, 10, 20, 10})) << "looking takes nothing";
  places.Block({-10, 30, 30, 10});
  EXPECT_FALSE(places.Take({15, 35, 10, 10}));
}

}  // namespace
}  // namespace spectrane
