#include "output/curvescale.h"

#include <gmock/gmock.h>

#include "base/notfinite.h"

namespace spectrane {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;

struct StepCase {
  AxisKind Kind;
  double Range;
  double Step;
};

/// Each row of the steps at its edge and just above it.
TEST(CurveScale, TheStepFollowsFromTheRange) {
  const StepCase kCases[] = {
      {AxisKind::Abs, 3.5, 0.5},        {AxisKind::Abs, 2.001, 0.5},     {AxisKind::Abs, 2, 0.2},
      {AxisKind::Abs, 1.001, 0.2},      {AxisKind::Abs, 1, 0.1},         {AxisKind::Abs, 0.501, 0.1},
      {AxisKind::Abs, 0.5, 0.05},       {AxisKind::Abs, 0.2, 0.02},      {AxisKind::Abs, 0.1, 0.01},
      {AxisKind::Abs, 0.05, 0.005},     {AxisKind::Abs, 0.02, 0.002},    {AxisKind::Abs, 0.01, 0.001},
      {AxisKind::Abs, 0.0001, 0.001},   {AxisKind::Trans, 101, 20},      {AxisKind::Trans, 100, 10},
      {AxisKind::Trans, 50, 5},         {AxisKind::Trans, 20, 2},        {AxisKind::Trans, 10, 1},
      {AxisKind::Trans, 5, 0.5},        {AxisKind::Trans, 2, 0.2},       {AxisKind::Trans, 1, 0.1},
      {AxisKind::Energy, 50001, 10000}, {AxisKind::Energy, 50000, 5000}, {AxisKind::Energy, 20001, 5000},
      {AxisKind::Energy, 20000, 2000},  {AxisKind::Energy, 10000, 1000}, {AxisKind::Energy, 5000, 500},
      {AxisKind::Energy, 2000, 200},    {AxisKind::Energy, 1000, 100},   {AxisKind::Energy, 500, 50},
      {AxisKind::Energy, 200, 20},      {AxisKind::Energy, 101, 20},     {AxisKind::Energy, 100, 10},
      {AxisKind::Wavelength, 501, 100}, {AxisKind::Wavelength, 500, 50}, {AxisKind::Wavelength, 200, 20},
      {AxisKind::Wavelength, 100, 10},  {AxisKind::Wavelength, 50, 5},   {AxisKind::Wavelength, 20, 2},
      {AxisKind::Wavelength, 10, 1},    {AxisKind::Wavelength, 5, 0.5},  {AxisKind::Wavelength, 2, 0.2},
      {AxisKind::Wavelength, 1, 0.1},   {AxisKind::Time, 1000, 100},     {AxisKind::Time, 1001, 300},
      {AxisKind::Time, 60, 6},          {AxisKind::Time, 1, 0.1},        {AxisKind::Time, 300001, 60000},
  };
  for (const StepCase& row : kCases) {
    EXPECT_EQ(TickStep(row.Kind, row.Range), row.Step)
        << "kind " << static_cast<int>(row.Kind) << ", range " << row.Range;
  }
}

TEST(CurveScale, ARangeThatIsOffByRoundingAloneHasTheStepOfItsDecimals) {
  // 1.1 - 0.9 is a little more than 0.2 in doubles.
  ASSERT_GT(1.1 - 0.9, 0.2);
  EXPECT_EQ(TickStep(AxisKind::Abs, 1.1 - 0.9), 0.02);
}

TEST(CurveScale, TicksAreTheMultiplesInsideWithoutTheEnds) {
  EXPECT_THAT(TickValues(AxisKind::Abs, {0, 3}), ElementsAre(0.5, 1, 1.5, 2, 2.5));
  EXPECT_THAT(TickValues(AxisKind::Abs, {-0.5, 3}), ElementsAre(0, 0.5, 1, 1.5, 2, 2.5));
  EXPECT_THAT(TickValues(AxisKind::Trans, {0, 100}), ElementsAre(10, 20, 30, 40, 50, 60, 70, 80, 90));
  EXPECT_THAT(TickValues(AxisKind::Energy, {0, 65535}),
              ElementsAre(10000, 20000, 30000, 40000, 50000, 60000));
  EXPECT_THAT(TickValues(AxisKind::Wavelength, {350, 1100}), ElementsAre(400, 500, 600, 700, 800, 900, 1000));
  EXPECT_THAT(
      TickValues(AxisKind::Wavelength, {400.05, 402.05}),
      Pointwise(DoubleNear(1e-9), {400.2, 400.4, 400.6, 400.8, 401.0, 401.2, 401.4, 401.6, 401.8, 402.0}));
}

TEST(CurveScale, TheLastTickBelowTheTopIsNotLost) {
  EXPECT_THAT(TickValues(AxisKind::Abs, {0.19, 1.01}),
              Pointwise(DoubleNear(1e-9), {0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0}));
}

TEST(CurveScale, RangesThatAreNoneHaveNoTicks) {
  for (const AxisRange& range :
       {AxisRange{1, 1}, AxisRange{3, 0}, AxisRange{kNaN, 1}, AxisRange{0, kInfinity},
        AxisRange{-kInfinity, 0}, AxisRange{-1.7e308, 1.7e308}}) {
    EXPECT_FALSE(range.Drawable());
    EXPECT_THAT(TickValues(AxisKind::Abs, range), IsEmpty());
    EXPECT_EQ(RoundedOutward(AxisKind::Abs, range).High, range.High);
  }
}

TEST(CurveScale, EnormousRangesHaveFewTicksAndNarrowOnesAtLargeValuesEnd) {
  for (const AxisKind kind :
       {AxisKind::Abs, AxisKind::Trans, AxisKind::Energy, AxisKind::Wavelength, AxisKind::Time}) {
    for (const AxisRange& range :
         {AxisRange{0, 1e300}, AxisRange{-2147483648.0, 2147483647.0}, AxisRange{1e17, 1e17 + 64},
          AxisRange{1e300, 1.0000000001e300}, AxisRange{0, 5e-324}}) {
      const std::vector<double> values = TickValues(kind, range);
      EXPECT_LE(values.size(), 110U);
      EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
      for (const double value : values) EXPECT_TRUE(value > range.Low && value < range.High);
    }
  }
}

TEST(CurveScale, ZeroIsWrittenShort) {
  EXPECT_EQ(TickText(0, TickPattern(AxisKind::Abs)), "0");
  EXPECT_EQ(TickText(-0.0, TickPattern(AxisKind::Trans)), "0");
  EXPECT_EQ(TickText(0.5, TickPattern(AxisKind::Abs)), "0.500");
  EXPECT_EQ(TickText(40, TickPattern(AxisKind::Trans)), "40.0");
  EXPECT_EQ(TickText(20000, TickPattern(AxisKind::Energy)), "20000");
  EXPECT_EQ(TickText(546.1, TickPattern(AxisKind::Wavelength)), "546.1");
}

struct RoundCase {
  AxisKind Kind;
  AxisRange From;
  AxisRange To;
};

TEST(CurveScale, RoundsOutwardToTheStepWithinTheLimits) {
  const RoundCase kCases[] = {
      {AxisKind::Abs, {0.123, 0.987}, {0.1, 1.0}},
      {AxisKind::Abs, {0.2, 0.8}, {0.2, 0.8}},
      {AxisKind::Abs, {-0.13, 0.31}, {-0.15, 0.35}},
      {AxisKind::Abs, {-0.48, 2.9}, {-0.5, 3.0}},
      {AxisKind::Abs, {-1, 3.4}, {-0.5, 3.0}},
      {AxisKind::Abs, {1.2341, 1.2377}, {1.234, 1.238}},
      {AxisKind::Trans, {12.3, 57.7}, {10, 60}},
      {AxisKind::Trans, {-0.7, 180}, {-1, 180}},
      {AxisKind::Trans, {150, 250}, {150, 200}},
      {AxisKind::Energy, {-15, 59999}, {0, 60000}},
      {AxisKind::Energy, {123, 60001}, {0, 70000}},
      {AxisKind::Wavelength, {353.2, 1087}, {300, 1100}},
      {AxisKind::Wavelength, {400, 600}, {400, 600}},
      {AxisKind::Wavelength, {540.13, 541.04}, {540.1, 541.1}},
  };
  for (const RoundCase& row : kCases) {
    const AxisRange rounded = RoundedOutward(row.Kind, row.From);
    EXPECT_NEAR(rounded.Low, row.To.Low, 1e-9) << row.From.Low << " to " << row.From.High;
    EXPECT_NEAR(rounded.High, row.To.High, 1e-9) << row.From.Low << " to " << row.From.High;
  }
  // Nothing would be left of it inside the limits.
  EXPECT_EQ(RoundedOutward(AxisKind::Abs, {4, 5}), (AxisRange{4, 5}));
}

TEST(CurveScale, ZoomKeepsTheValueUnderThePointer) {
  const AxisRange open{-0.5, 3};
  EXPECT_EQ(Zoomed(AxisKind::Abs, {0, 3}, 1, 0.5, open), (AxisRange{0.5, 2}));
  EXPECT_EQ(Zoomed(AxisKind::Abs, {1, 2}, 1.5, 2, open), (AxisRange{0.5, 2.5}));
  EXPECT_EQ(Zoomed(AxisKind::Abs, {1, 2}, 1.5, 10, open), open) << "no farther than the limits";
  EXPECT_EQ(Zoomed(AxisKind::Abs, {-2, 5}, 1, 10, open), (AxisRange{-2, 5})) << "it was there before";
  EXPECT_NEAR(Zoomed(AxisKind::Abs, {0, 3}, 1, 1e-9, open).Length(), 0.001, 1e-12);
  EXPECT_EQ(Zoomed(AxisKind::Abs, {0, 3}, kNaN, 0.5, open), (AxisRange{0, 3}));
  EXPECT_EQ(Zoomed(AxisKind::Abs, {3, 0}, 1, 0.5, open), (AxisRange{3, 0}));
}

TEST(CurveScale, MovesUpToTheLimitsAndKeepsItsLength) {
  const AxisRange open{-0.5, 3};
  EXPECT_EQ(Moved({0, 1}, 0.25, open), (AxisRange{0.25, 1.25}));
  EXPECT_EQ(Moved({0, 1}, -2, open), (AxisRange{-0.5, 0.5}));
  EXPECT_EQ(Moved({0, 1}, 5, open), (AxisRange{2, 3}));
  EXPECT_EQ(Moved({-1, 4}, 1, open), (AxisRange{-1, 4})) << "it reaches beyond both";
  EXPECT_EQ(Moved({0, 1}, kNaN, open), (AxisRange{0, 1}));
}

}  // namespace
}  // namespace spectrane
