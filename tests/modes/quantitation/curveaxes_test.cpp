#include "modes/quantitation/curveaxes.h"

#include <limits>

#include "base/basesupport.h"
#include "base/notfinite.h"
#include "modes/quantitation/quantitationsupport.h"

namespace spectrane {
namespace {

using Points = std::vector<CurvePoint>;

struct ScaleRow {
  const char* Name;
  double Value;
  double End;
};

class AxisEnd : public testing::TestWithParam<ScaleRow> {};

TEST_P(AxisEnd, IsAWholeNumberOfSteps) {
  EXPECT_NEAR(ScaleUp(GetParam().Value), GetParam().End, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Values, AxisEnd,
                         testing::Values(ScaleRow{"Negative", -5, 0.1}, ScaleRow{"Zero", 0, 0.1},
                                         ScaleRow{"OneStep", 0.1, 0.1}, ScaleRow{"Tenths", 0.71, 0.8},
                                         ScaleRow{"BelowOne", 0.95, 1}, ScaleRow{"One", 1, 1},
                                         ScaleRow{"AboveOne", 1.001, 2}, ScaleRow{"BelowTen", 9.5, 10},
                                         ScaleRow{"Tens", 11, 20}, ScaleRow{"Hundred", 100, 100},
                                         ScaleRow{"Hundreds", 101, 200}, ScaleRow{"Thousands", 1000.5, 2000},
                                         ScaleRow{"TenThousand", 10000, 10000},
                                         ScaleRow{"NoEndAbove", 10000.1, 0}, ScaleRow{"Largest", 1e308, 0},
                                         ScaleRow{"NoNumber", kNaN, 0}),
                         NameOfRow<ScaleRow>);

QuaOption Fitted(const Standards& standards, std::int32_t method, std::int32_t wavelengths = 1) {
  QuaOption qua = WithStandards(standards, method, wavelengths);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  return qua;
}

TEST(Axes, ReachToTheLargestStandard) {
  for (const int wavelengths : {1, 2}) {
    const CurveAxes axes = AxesOf(Fitted({{0.25, 5}, {0.5, 10}}, 1, wavelengths));
    EXPECT_NEAR(axes.AbsTop, 0.5, 1e-12);
    EXPECT_EQ(axes.ConcTop, 10);
    // The line gives 12 at the axis end of 0.6; the largest standard has 11.
    const CurveAxes higher = AxesOf(Fitted({{0.55, 11}, {0.25, 5}}, 1, wavelengths));
    EXPECT_NEAR(higher.AbsTop, 0.6, 1e-12);
    EXPECT_EQ(higher.ConcTop, 20);
    EXPECT_TRUE(higher.Drawable());
  }
}

TEST(Axes, TheCurveAtTheEndOfTheAbsorbancesCounts) {
  QuaOption qua = Fitted({{0.5, 10}, {1.1, 22}}, 0);
  qua.CurveK[1] = 100;
  EXPECT_EQ(AxesOf(qua).AbsTop, 2);
  EXPECT_EQ(AxesOf(qua).ConcTop, 200);
  qua.CurveK[1] = -100;
  EXPECT_EQ(AxesOf(qua).ConcTop, 30) << "a curve that falls does not pull the end down";
}

TEST(Axes, TypedCoefficientsGoToTwoAbs) {
  QuaOption qua = Fitted({{0.5, 10}, {1.1, 22}}, 0);
  qua.CurveItem = 2;
  qua.InputK = {0, 150, 0, 0};
  EXPECT_EQ(AxesOf(qua).AbsTop, 2);
  EXPECT_EQ(AxesOf(qua).ConcTop, 300);
  qua.InputK = {};
  EXPECT_NEAR(AxesOf(qua).ConcTop, 0.1, 1e-12);
}

TEST(Axes, ThereAreNoneForConcentrationsBeyondTheLastStep) {
  EXPECT_FALSE(AxesOf(Fitted({{0.5, 9000}, {1, 20000}}, 1)).Drawable());
  QuaOption typed;
  typed.CurveItem = 2;
  typed.InputK = {0, 1e308, 0, 0};
  EXPECT_FALSE(AxesOf(typed).Drawable());
}

TEST(Axes, ThereAreNoneForAbsorbancesBeyondTheLastStep) {
  const CurveAxes axes = AxesOf(Fitted({{20000, 10}, {30000, 20}}, 1));
  EXPECT_EQ(axes.AbsTop, 0);
  EXPECT_FALSE(axes.Drawable());
}

TEST(Axes, CountsAndNumbersOfADamagedFileAreHarmless) {
  QuaOption qua = WithStandards({{0.5, 10}, {1, 20}}, 1);
  for (const std::int32_t count : {-7, 21, 1000000}) {
    qua.SampleNumber = count;
    EXPECT_GE(AxesOf(qua).AbsTop, 0.1);
    EXPECT_LE(CurveMarks(qua, AxesOf(qua)).size(), 20u);
  }
  qua.SampleNumber = 2;
  qua.StandardAbs[1][0] = kNaN;
  qua.CurveK = {kNaN, 1, 0, 0};
  const CurveAxes axes = AxesOf(qua);
  EXPECT_EQ(CurveMarks(qua, axes).size(), 1u);
  EXPECT_TRUE(CurvePoints(qua, axes, 10).empty());
  qua.StandardConc[0] = kNaN;
  EXPECT_TRUE(CurveMarks(qua, axes).empty());
}

TEST(Marks, AreTheStandardsHeldInsideTheAxes) {
  QuaOption qua = Fitted({{-0.5, -10}, {0.25, 5}, {0.5, 10}}, 1);
  qua.SampleNumber = 5;
  qua.StandardAbsSet[3] = true;
  const CurveAxes axes = AxesOf(qua);
  EXPECT_EQ(CurveMarks(qua, axes),
            (std::vector<CurveMark>{
                {0, {-0.5, -10}, {0, 0}}, {1, {0.25, 5}, {0.25, 5}}, {2, {0.5, 10}, {0.5, 10}}}))
      << "an empty row is no mark";
  qua.StandardConcSet[1] = false;
  EXPECT_EQ(CurveMarks(qua, axes).back().Row, 2) << "the row stays that of the table";
  qua.CurveItem = 2;
  EXPECT_TRUE(CurveMarks(qua, axes).empty()) << "typed coefficients come from no standards";
}

TEST(Curve, RunsFromZeroToTheEndAndIsHeldInsideTheAxes) {
  QuaOption qua;
  qua.FittingMethod = 1;
  qua.CurveItem = 1;
  qua.CurveK = {-1, 4, 0, 0};
  EXPECT_EQ(CurvePoints(qua, {1, 2}, 5), (Points{{0, 0}, {0.25, 0}, {0.5, 1}, {0.75, 2}, {1, 2}}));
  EXPECT_EQ(CurvePoints(qua, {1, 2}, 0).size(), 2u);
}

}  // namespace
}  // namespace spectrane
