#include "modes/timescan/timescanaxes.h"

#include "base/basesupport.h"
#include "base/notfinite.h"
#include "base/numericfault.h"

namespace spectrane {
namespace {

TEST(TimeScanIntervals, AreThoseOfTheTable) {
  const std::vector<std::int32_t> expected = {100, 200, 500, 1000, 2000, 5000, 10000, 20000, 30000, 60000};
  for (std::int32_t i = 0; i < 10; ++i) {
    EXPECT_EQ(IntervalMs(i), expected[static_cast<std::size_t>(i)])
        << kIntervalNames[static_cast<std::size_t>(i)];
  }
  for (const std::int32_t outside : {-1, 10, 2147483647, -2147483647 - 1})
    EXPECT_EQ(IntervalMs(outside), 1000);
}

TEST(TimeScanPoints, CountBothEnds) {
  EXPECT_EQ(PointTotal(0, 1000, 200), 5001);
  EXPECT_EQ(PointTotal(0, 1, 1000), 2);
  EXPECT_EQ(PointTotal(100, 160, 10000), 7);
  EXPECT_EQ(PointTotal(0, 0, 100), 1);
}

TEST(TimeScanPoints, AreRoundedHalfToEven) {
  EXPECT_EQ(PointTotal(0, 3, 2000), 2);  // 2.5
  EXPECT_EQ(PointTotal(0, 5, 2000), 4);  // 3.5
  EXPECT_EQ(PointTotal(0, 7, 5000), 2);  // 2.4
}

TEST(TimeScanPoints, StayInsideWhatATestHolds) {
  EXPECT_EQ(PointTotal(0, 999.9, 100), 10000);
  EXPECT_EQ(PointTotal(0, 1000, 100), 10000);
  EXPECT_EQ(PointTotal(0, 1e300, 100), 10000);
  EXPECT_EQ(PointTotal(0, kInfinity, 100), 10000);
  EXPECT_EQ(PointTotal(1000, 0, 1000), 0);
  EXPECT_EQ(PointTotal(kNaN, 0, 1000), 0);
}

struct WidenRow {
  const char* Name;
  AxisSpan View, Wide;
};
std::string NameOf(const testing::TestParamInfo<WidenRow>& row) {
  return row.param.Name;
}

class WidenedAbsAxis : public testing::TestWithParam<WidenRow> {};
INSTANTIATE_TEST_SUITE_P(
    Steps, WidenedAbsAxis,
    testing::Values(WidenRow{"OnMultiples", {0, 1}, {-0.1, 1.1}},        // r 1: step 0.1
                    WidenRow{"AboveOne", {0.5, 1.6}, {0.2, 1.8}},        // step 0.2; 0.5 - 0.2 - 0.1
                    WidenRow{"Between", {0.13, 0.47}, {0.05, 0.5}},      // r 0.34: step 0.05
                    WidenRow{"BelowZero", {-0.13, 0.2}, {-0.15, 0.25}},  // remainder -0.03
                    WidenRow{"HeldInside", {-0.4, 2.9}, {-0.5, 3}},      // step 0.5
                    WidenRow{"Narrow", {0.5, 0.505}, {0.499, 0.506}},    // step 0.001
                    WidenRow{"TwoHundredths",
                             {0.5, 0.52},
                             {0.495, 0.525}},  // r a little above 0.02, as numbers are held: step 0.005
                    WidenRow{"UpsideDown", {1, 0.5}, {0.999, 0.501}}),  // r below 0: step 0.001
    NameOf);
TEST_P(WidenedAbsAxis, GoesOutwardToRoundSteps) {
  const AxisSpan wide = WidenedAbs(GetParam().View);
  EXPECT_NEAR(wide.Low, GetParam().Wide.Low, 1e-12);
  EXPECT_NEAR(wide.High, GetParam().Wide.High, 1e-12);
}

class WidenedTransAxis : public testing::TestWithParam<WidenRow> {};
INSTANTIATE_TEST_SUITE_P(Steps, WidenedTransAxis,
                         testing::Values(WidenRow{"Whole", {0, 100}, {-1, 110}},        // step 10
                                         WidenRow{"Above", {0, 101}, {-1, 120}},        // step 20
                                         WidenRow{"Between", {13, 47}, {5, 50}},        // r 34: step 5
                                         WidenRow{"HeldInside", {50, 199}, {20, 200}},  // r 149: step 20
                                         WidenRow{"Narrow", {50, 50.8}, {49.9, 50.9}}),
                         NameOf);
TEST_P(WidenedTransAxis, GoesOutwardToRoundSteps) {
  const AxisSpan wide = WidenedTrans(GetParam().View);
  EXPECT_NEAR(wide.Low, GetParam().Wide.Low, 1e-12);
  EXPECT_NEAR(wide.High, GetParam().Wide.High, 1e-12);
}

class WidenedTimeAxis : public testing::TestWithParam<WidenRow> {};
// Steps are in tenths of a second.
INSTANTIATE_TEST_SUITE_P(
    Steps, WidenedTimeAxis,
    testing::Values(WidenRow{"FromZero", {0, 1000}, {0, 1100}},           // d 1000: step 1000; 10000 -> 11000
                    WidenRow{"Inside", {100, 200}, {90, 210}},            // d 100: step 100
                    WidenRow{"BetweenMultiples", {103, 207}, {60, 210}},  // d 104: step 300
                    WidenRow{"Short", {10, 11}, {10, 11}},         // d 1: 9.9 and 11.1, in whole seconds
                    WidenRow{"Fraction", {10, 15}, {9, 16}},       // d 5: step 6: 9.0 and 15.6
                    WidenRow{"Long", {5000, 9999}, {4200, 10200}}  // d 4999: step 6000 -> 10200
                    ),
    NameOf);
TEST_P(WidenedTimeAxis, GoesOutwardToRoundSteps) {
  const AxisSpan wide = WidenedTime(GetParam().View, 20000);
  EXPECT_NEAR(wide.Low, GetParam().Wide.Low, 1e-9);
  EXPECT_NEAR(wide.High, GetParam().Wide.High, 1e-9);
}

TEST(WidenedTimeAxisEnds, AreHeldInsideTheHomeView) {
  EXPECT_EQ(WidenedTime({0, 1000}, 1000), (AxisSpan{0, 1000}));
  EXPECT_EQ(WidenedTime({2, 900}, 1000).Low, 0);
}

TEST(WidenedTimeAxisEnds, FailWhereTheStepIsTooLarge) {
  EXPECT_NO_THROW(WidenedTime({0, 30000}, 1e6));
  EXPECT_THROW(WidenedTime({0, 30001}, 1e6), NumericFault);
  EXPECT_THROW(WidenedTime({0, 300000}, 1e6), NumericFault);
  EXPECT_EQ(WidenedTime({0, 300001}, 1e6), (AxisSpan{0, 360000}));
}

TEST(WidenedAxes, FailOnValuesThatCannotBeCounted) {
  EXPECT_THROW(WidenedAbs({0, 1e300}), NumericFault);
  EXPECT_THROW(WidenedTrans({kNaN, 1}), NumericFault);
}

}  // namespace
}  // namespace spectrane
