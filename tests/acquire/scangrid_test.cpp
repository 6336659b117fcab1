#include "acquire/scangrid.h"

#include <gtest/gtest.h>

#include "base/notfinite.h"

namespace spectrane {
namespace {

TEST(ScanGrid, RisesWhicheverEndIsNamedFirst) {
  const ScanGrid grid = ScanGrid::Between(6600, 2300, 5);
  EXPECT_EQ(grid.Count(), 861);
  EXPECT_EQ(grid.At(0), 230.0);
  EXPECT_EQ(grid.At(1), 230.5);
  EXPECT_EQ(grid.At(860), 660.0);
}

TEST(ScanGrid, PointsAreTheDoublesThatAPersonWouldType) {
  const ScanGrid grid = ScanGrid::Between(1900, 11000, 1);
  EXPECT_EQ(grid.Count(), 9101);
  EXPECT_EQ(grid.At(3), 190.3);
  EXPECT_EQ(grid.At(4567), 646.7);
}

TEST(ScanGrid, AnEndBetweenTwoPointsIsNoPoint) {
  const ScanGrid grid = ScanGrid::Between(4000, 4019, 20);
  EXPECT_EQ(grid.Count(), 1);
  EXPECT_EQ(grid.Last(), 401.9);
  EXPECT_EQ(ScanGrid::Between(4000, 4000, 10).Count(), 1);
}

TEST(ScanGrid, CountsBeyondThirtyTwoBitsDoNotOverflow) {
  EXPECT_EQ(ScanGrid::Between(-10'000'000, 10'000'000, 1).Count(), 20'000'001);
}

TEST(ScanGrid, WholeNanometresTakeBothStartAndStep) {
  EXPECT_TRUE(ScanGrid::Between(4000, 5005, 10).IsWhole());
  EXPECT_FALSE(ScanGrid::Between(4005, 5005, 10).IsWhole());
  EXPECT_FALSE(ScanGrid::Between(4000, 5000, 5).IsWhole());
}

TEST(WholeTenths, TakesWhatTheDriveCanReach) {
  EXPECT_EQ(WholeTenths(546.1), 5461);
  EXPECT_EQ(WholeTenths(190.0), 1900);
  EXPECT_EQ(WholeTenths(546.15), std::nullopt);
  EXPECT_EQ(WholeTenths(kNaN), std::nullopt);
  EXPECT_EQ(WholeTenths(kInfinity), std::nullopt);
  EXPECT_EQ(WholeTenths(1e9), std::nullopt);
}

TEST(IntervalIndex, IsThatOfTheSpectrumFiles) {
  EXPECT_EQ(IntervalIndex(1), 0);
  EXPECT_EQ(IntervalIndex(2), 1);
  EXPECT_EQ(IntervalIndex(5), 2);
  EXPECT_EQ(IntervalIndex(10), 3);
  EXPECT_EQ(IntervalIndex(20), 4);
  EXPECT_EQ(IntervalIndex(50), 5);
  EXPECT_EQ(IntervalIndex(3), std::nullopt);
  EXPECT_EQ(IntervalIndex(0), std::nullopt);
}

}  // namespace
}  // namespace spectrane
