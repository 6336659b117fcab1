#include "spectrum/scanvalues.h"

#include <gtest/gtest.h>

#include <cmath>

namespace spectrane {
namespace {

/// Points with these transmittances in whole percent.
std::vector<WLSRecord> Points(const std::vector<int>& percents) {
  std::vector<WLSRecord> points;
  for (const int percent : percents) points.push_back({percent * 100 + 50, 10050, 50, 500, 3});
  return points;
}

TEST(ScanValues, FollowFromTheEnergiesOfEachPoint) {
  const ScanValues values = DeriveScanValues(Points({100, 10, 1}), false);
  EXPECT_DOUBLE_EQ(values.Trans[0], 100);
  EXPECT_DOUBLE_EQ(values.Trans[2], 1);
  EXPECT_DOUBLE_EQ(values.Abs[0], 0);
  EXPECT_DOUBLE_EQ(values.Abs[1], 1);
  EXPECT_DOUBLE_EQ(values.Abs[2], 2);
}

TEST(ScanValues, APointWithoutABlankIsDark) {
  const ScanValues values = DeriveScanValues(std::vector<WLSRecord>{{5000, 50, 50, 500, 3}}, false);
  EXPECT_EQ(values.Trans[0], -1);
  EXPECT_EQ(values.Abs[0], 3);
}

TEST(ScanValues, SixPointsAreWeightedByHand) {
  // 10 20 40 80 50 30, with 2 3 6 3 2 inside and what is left of the weights at the ends.
  const ScanValues values = DeriveScanValues(Points({10, 20, 40, 80, 50, 30}), true);
  const std::vector<double> expected = {(60.0 + 60 + 80) / 11,
                                        (30.0 + 120 + 120 + 160) / 14,
                                        (20.0 + 60 + 240 + 240 + 100) / 16,
                                        (40.0 + 120 + 480 + 150 + 60) / 16,
                                        (80.0 + 240 + 300 + 90) / 14,
                                        (160.0 + 150 + 180) / 11};
  ASSERT_EQ(values.Trans.size(), 6u);
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_NEAR(values.Trans[i], expected[i], 1e-12) << i;
    EXPECT_NEAR(values.Abs[i], -std::log10(expected[i] / 100), 1e-12) << i;
  }
}

TEST(ScanValues, FourPointsHaveBothEndsAndNothingBetween) {
  const ScanValues values = DeriveScanValues(Points({10, 20, 40, 80}), true);
  const std::vector<double> expected = {(60.0 + 60 + 80) / 11, (30.0 + 120 + 120 + 160) / 14,
                                        (20.0 + 60 + 240 + 240) / 14, (40.0 + 120 + 480) / 11};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(values.Trans[i], expected[i], 1e-12) << i;
}

TEST(ScanValues, OfThreePointsOnlyTheFirstGetsAValue) {
  const ScanValues values = DeriveScanValues(Points({10, 20, 40}), true);
  EXPECT_NEAR(values.Trans[0], 200.0 / 11, 1e-12);
  EXPECT_EQ(values.Trans[1], 0);
  EXPECT_EQ(values.Trans[2], 0);
  EXPECT_GT(values.Abs[0], 0);
  EXPECT_EQ(values.Abs[2], 0);
}

TEST(ScanValues, FewerPointsGetNone) {
  EXPECT_TRUE(DeriveScanValues({}, true).Trans.empty());
  EXPECT_EQ(DeriveScanValues(Points({50}), true).Trans, std::vector<double>{0});
  EXPECT_EQ(DeriveScanValues(Points({50, 60}), true).Abs, (std::vector<double>{0, 0}));
}

TEST(ScanValues, AFlatSpectrumStaysFlat) {
  const ScanValues values = DeriveScanValues(Points(std::vector<int>(50, 25)), true);
  for (const double trans : values.Trans) EXPECT_NEAR(trans, 25, 1e-12);
}

}  // namespace
}  // namespace spectrane
