#include "output/quantitationplot.h"

#include <limits>

#include "base/basesupport.h"
#include "base/notfinite.h"

namespace spectrane {
namespace {

// 500 by 300 pixels are 7500 by 4500 twips: an area of 6000 by 3200 twips, 400 by 213.3 pixels.
const QRectF kSurface(0, 0, 500, 300);

TEST(QuantitationPlotPlaces, AreThoseOfTheMargins) {
  const QuantitationPlot plot(kSurface, kScreenTwips, {2, 10});
  EXPECT_TRUE(plot.Drawable());
  EXPECT_EQ(plot.Area(), QRectF(1200, 300, 6000, 3200));
  EXPECT_EQ(plot.TwipsAt({0, 0}), QPointF(1200, 3500));
  EXPECT_EQ(plot.TwipsAt({2, 10}), QPointF(7200, 300));
  EXPECT_EQ(plot.TwipsAt({0.5, 2.5}), QPointF(2700, 2700));
  EXPECT_EQ(plot.At({0.5, 2.5}), QPointF(180, 180));
  EXPECT_EQ(plot.AreaOnSurface(), QRectF(80, 20, 400, 3200 / 15.0));
}

TEST(QuantitationPlotPlaces, FollowTheCornerAndTheUnitOfTheSurface) {
  // 600 dots an inch: 2.4 twips a dot.
  const QuantitationPlot plot(QRectF(100, 50, 3125, 1875), 2.4, {2, 10});
  EXPECT_EQ(plot.Area(), QRectF(1200, 300, 6000, 3200));
  EXPECT_EQ(plot.At({0.5, 2.5}), QPointF(100 + 1125, 50 + 1125));
}

TEST(QuantitationPlotPlaces, GoBackToTheirValues) {
  for (const double twips : {15.0, 2.4, 7.5}) {
    const QuantitationPlot plot(QRectF(-30, 12.5, 7500 / twips, 4500 / twips), twips, {0.3, 7000});
    for (const CurvePoint& value : {CurvePoint{0, 0}, {0.3, 7000}, {0.123, 4567.8}, {0.299, 1}}) {
      const CurvePoint back = plot.ValueAt(plot.At(value));
      EXPECT_NEAR(back.Abs, value.Abs, 1e-12);
      EXPECT_NEAR(back.Conc, value.Conc, 1e-8);
    }
  }
}

TEST(QuantitationPlotPlaces, GoOnOutsideTheArea) {
  const QuantitationPlot plot(kSurface, kScreenTwips, {2, 10});
  const CurvePoint corner = plot.ValueAt({0, 20});
  EXPECT_NEAR(corner.Abs, -0.4, 1e-12);
  EXPECT_NEAR(corner.Conc, 10, 1e-12);
}

TEST(QuantitationPlotPlaces, OfAnyValueLieInsideTheArea) {
  const QuantitationPlot plot(kSurface, kScreenTwips, {2, 10});
  EXPECT_EQ(plot.TwipsAt({1e308, -1e308}), QPointF(7200, 3500));
  EXPECT_EQ(plot.TwipsAt({-kInfinity, kInfinity}), QPointF(1200, 300));
  EXPECT_EQ(plot.TwipsAt({kNaN, kNaN}), QPointF(1200, 3500));
  const QuantitationPlot none(kSurface, kScreenTwips, {0, 0});
  EXPECT_EQ(none.TwipsAt({0, 0}), QPointF(1200, 3500));
}

TEST(QuantitationPlotPlaces, NeedAxesAndRoom) {
  EXPECT_FALSE(QuantitationPlot(kSurface, kScreenTwips, {0, 10}).Drawable());
  EXPECT_FALSE(QuantitationPlot(kSurface, kScreenTwips, {2, 0}).Drawable());
  EXPECT_FALSE(QuantitationPlot(QRectF(0, 0, 159, 300), kScreenTwips, {2, 10}).Drawable());
  EXPECT_TRUE(QuantitationPlot(QRectF(0, 0, 160, 127), kScreenTwips, {2, 10}).Drawable());
  EXPECT_FALSE(QuantitationPlot(QRectF(0, 0, 160, 126), kScreenTwips, {2, 10}).Drawable());
  EXPECT_FALSE(QuantitationPlot(QRectF(0, 0, -5, -5), kScreenTwips, {2, 10}).Drawable());
  EXPECT_EQ(QuantitationPlot(QRectF(0, 0, 1, 1), kScreenTwips, {2, 10}).Area().size(), QSizeF(0, 0));
  for (const double twips : {0.0, -1.0, kNaN, kInfinity})
    EXPECT_EQ(QuantitationPlot(kSurface, twips, {2, 10}).TwipsPerUnit(), kScreenTwips);
}

struct TicksRow {
  const char* Name;
  double End;
  std::vector<std::string> Numbers;
  std::size_t All;
};

class Ticks : public testing::TestWithParam<TicksRow> {};

TEST_P(Ticks, AreNumberedAtTheStepsOfTheAxis) {
  const std::vector<AxisTick> ticks = AxisTicks(GetParam().End);
  std::vector<std::string> numbers;
  for (const AxisTick& tick : ticks) {
    if (!tick.Number.empty()) numbers.push_back(tick.Number);
  }
  EXPECT_EQ(numbers, GetParam().Numbers);
  ASSERT_EQ(ticks.size(), GetParam().All);
  for (std::size_t i = 0; i < ticks.size(); ++i)
    EXPECT_NEAR(ticks[i].Value,
                GetParam().End * static_cast<double>(i) / static_cast<double>(ticks.size() - 1), 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Ends, Ticks,
    testing::Values(
        TicksRow{"Tenths", 0.3, {"0", "0.1", "0.2", "0.3"}, 16},
        TicksRow{"FiveTenths", 0.5, {"0", "0.1", "0.2", "0.3", "0.4", "0.5"}, 26},
        TicksRow{"TwoTenths", 0.2, {"0", "0.05", "0.10", "0.15", "0.20"}, 21},
        TicksRow{"SixTenths", 0.6, {"0", "0.1", "0.2", "0.3", "0.4", "0.5", "0.6"}, 13},
        TicksRow{"OneTenth",
                 0.1,
                 {"0", "0.01", "0.02", "0.03", "0.04", "0.05", "0.06", "0.07", "0.08", "0.09", "0.10"},
                 21},
        TicksRow{"One", 1, {"0", "0.1", "0.2", "0.3", "0.4", "0.5", "0.6", "0.7", "0.8", "0.9", "1.0"}, 21},
        TicksRow{"Two", 2, {"0", "0.5", "1.0", "1.5", "2.0"}, 21},
        TicksRow{"Twenty", 20, {"0", "5", "10", "15", "20"}, 21},
        TicksRow{"Tens", 40, {"0", "10", "20", "30", "40"}, 21},
        TicksRow{"Thousands", 3000, {"0", "1000", "2000", "3000"}, 16},
        TicksRow{"Longest",
                 10000,
                 {"0", "1000", "2000", "3000", "4000", "5000", "6000", "7000", "8000", "9000", "10000"},
                 21},
        TicksRow{"None", 0, {}, 0}, TicksRow{"Negative", -1, {}, 0}, TicksRow{"NoNumber", kNaN, {}, 0},
        TicksRow{"Endless", kInfinity, {}, 0}, TicksRow{"Huge", 1e308, {}, 0}),
    NameOfRow<TicksRow>);

}  // namespace
}  // namespace spectrane
