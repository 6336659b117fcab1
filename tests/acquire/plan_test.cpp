#include "acquire/plan.h"

#include <gtest/gtest.h>

namespace spectrane {
namespace {

TEST(Plan, APointTakesWhatItsCommandsTake) {
  const ScanGrid grid = ScanGrid::Between(4000, 5000, 10);
  // Settling 0.15 s, one nanometre of travel, the gain 0.06 s, twenty samples of 3 ms, and some 200 bytes.
  const PlannedPass sample = PlanSpectrum(grid, 20);
  EXPECT_EQ(sample.Points, 101);
  EXPECT_NEAR(sample.SecondsAPoint, 0.15 + 0.01 + 0.06 + 0.063 + 215 * 10.0 / 115200, 1e-6);
  EXPECT_NEAR(PlanReferences(grid).SecondsAPoint, 0.15 + 0.01 + 1.5 + 50 * 10.0 / 115200, 1e-6);
  EXPECT_DOUBLE_EQ(sample.Seconds(), 101 * sample.SecondsAPoint);
}

TEST(Plan, ATableGoesRoundItsWavelengths) {
  const PlannedPass rows = PlanTableSamples({260, 280, 320}, 4);
  EXPECT_EQ(rows.Points, 4);
  const double travel = (20.0 + 40.0 + 60.0) / 100.0;
  const double each = 0.15 + 0.06 + 0.033 + (75 + 70) * 10.0 / 115200;
  EXPECT_NEAR(rows.SecondsAPoint, travel + 3 * each, 1e-6);
}

TEST(Plan, ATimeScanWaitsItsIntervalBetweenReadings) {
  EXPECT_NEAR(PlanTimeScan(10, 2.0).SecondsAPoint, 2.0 + 0.063 + 165 * 10.0 / 115200, 1e-6);
}

TEST(Plan, SaysEachPassAndTheWhole) {
  EXPECT_EQ(PlanText({{"blank", 100, 1.7}, {"sample", 100, 0.3}}),
            "Plan: blank 100 x 1.7 s = 2 min 50 s, sample 100 x 0.30 s = 30 s; in all about 3 min 20 s.");
  EXPECT_EQ(PlanText({{"sample", 1, 0.25}}), "Plan: sample 1 x 0.25 s = 0.25 s.");
}

TEST(Plan, DurationsAsAPersonSaysThem) {
  EXPECT_EQ(DurationText(-1), "0 s");
  EXPECT_EQ(DurationText(0.2949), "0.29 s");
  EXPECT_EQ(DurationText(0.999), "1.0 s");
  EXPECT_EQ(DurationText(9.96), "10 s");
  EXPECT_EQ(DurationText(59.6), "1 min 00 s");
  EXPECT_EQ(DurationText(252), "4 min 12 s");
  EXPECT_EQ(DurationText(3599.4), "59 min 59 s");
  EXPECT_EQ(DurationText(7500), "2 h 05 min");
  EXPECT_EQ(DurationText(7529), "2 h 05 min");
  EXPECT_EQ(DurationText(7530), "2 h 06 min");
}

}  // namespace
}  // namespace spectrane
