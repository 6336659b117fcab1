#include <cmath>

#include "base/basesupport.h"
#include "base/notfinite.h"
#include "spectrum/derivative.h"
#include "spectrum/smoothing.h"

namespace spectrane {
namespace {

using Column = std::vector<double>;

/// A spectrum from 600 nm downward by 0.5 nm; its transmittance is nobody's business.
Spectrum WithAbs(const Column& abs) {
  Spectrum spectrum;
  for (const double value : abs) {
    spectrum.Add(600.0 - 0.5 * static_cast<double>(spectrum.Size()), 7.0, value);
  }
  return spectrum;
}

void ExpectNear(const Column& values, const Column& expected, double within = 1e-12) {
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_NEAR(values[i], expected[i], within) << "at " << i;
}

TEST(Smoothing, HasTheWeightsOfTheQuadraticFilterInside) {
  // The answer to a single 1 are the weights, here turned round: the published table for five points.
  const ProcessedSpectrum smoothed = SmoothSpectrum(WithAbs({0, 0, 0, 0, 35, 0, 0, 0, 0}));
  ExpectNear({smoothed.Result.Abs.begin() + 2, smoothed.Result.Abs.begin() + 7}, {-3, 12, 17, 12, -3});
}

TEST(Smoothing, LeavesACubicAsItIsInside) {
  Column cubic;
  for (int i = 0; i < 12; ++i) cubic.push_back(0.5 + 0.25 * i - 0.125 * i * i + 0.0625 * i * i * i);
  const ProcessedSpectrum smoothed = SmoothSpectrum(WithAbs(cubic));
  ExpectNear({smoothed.Result.Abs.begin() + 2, smoothed.Result.Abs.end() - 2},
             {cubic.begin() + 2, cubic.end() - 2}, 1e-11);
}

TEST(Smoothing, DropsWhatLiesBeyondTheEnds) {
  const ProcessedSpectrum smoothed = SmoothSpectrum(WithAbs({1, 2, 4, 8, 16, 32}));
  ExpectNear(smoothed.Result.Abs,
             {(17.0 + 24 - 12) / 26, (12.0 + 34 + 48 - 24) / 38, (-3.0 + 24 + 68 + 96 - 48) / 35,
              (-6.0 + 48 + 136 + 192 - 96) / 35, (-12.0 + 96 + 272 + 384) / 38, (-24.0 + 192 + 544) / 26});
}

TEST(Smoothing, OfFourPointsHasEachPointOnce) {
  const ProcessedSpectrum smoothed = SmoothSpectrum(WithAbs({1, 0, 0, 1}));
  ExpectNear(smoothed.Result.Abs, {17.0 / 26, 9.0 / 38, 9.0 / 38, 17.0 / 26});
}

TEST(Smoothing, KeepsWavelengthsAndConvertsTheResult) {
  const Spectrum source = WithAbs({0.3, 0.3, 0.3, 0.3, 0.3});
  const ProcessedSpectrum smoothed = SmoothSpectrum(source);
  EXPECT_EQ(smoothed.Result.WL, source.WL);
  ExpectNear(smoothed.Result.Trans, Column(5, 50.118723362727), 1e-9);  // 100 * 10^-0.3
}

TEST(Smoothing, KeepsAConstantHoweverOften) {
  Spectrum spectrum = WithAbs(Column(50, 0.7));
  for (int i = 0; i < 20; ++i) spectrum = SmoothSpectrum(spectrum).Result;
  ExpectNear(spectrum.Abs, Column(50, 0.7));
}

TEST(Smoothing, NeedsFourPoints) {
  EXPECT_EQ(SmoothSpectrum({}).Reason, NoResult::NoSource);
  for (std::size_t points = 1; points <= 3; ++points) {
    const ProcessedSpectrum smoothed = SmoothSpectrum(WithAbs(Column(points, 1.0)));
    EXPECT_EQ(smoothed.Reason, NoResult::TooFewPoints);
    EXPECT_TRUE(smoothed.Result.Empty());
  }
}

TEST(Smoothing, TakesAWholeRecordAndNumbersThatAreNone) {
  Column abs(10001, 0.5);
  abs[5000] = kNaN;
  const ProcessedSpectrum smoothed = SmoothSpectrum(WithAbs(abs));
  ASSERT_EQ(smoothed.Result.Size(), 10001u);
  EXPECT_TRUE(std::isnan(smoothed.Result.Abs[4998]));
  EXPECT_TRUE(std::isnan(smoothed.Result.Abs[5002]));
  EXPECT_NEAR(smoothed.Result.Abs[4997], 0.5, 1e-15);
  EXPECT_NEAR(smoothed.Result.Abs[5003], 0.5, 1e-15);
}

TEST(Derivative, IsTheDifferenceOverTheStepAtTheFirstPoint) {
  Spectrum source;
  source.Add(500, 1, 0.1);
  source.Add(502, 1, 0.4);
  source.Add(502.5, 1, 0.3);
  const ProcessedSpectrum derived = DeriveSpectrum(source);
  EXPECT_EQ(derived.Result.WL, source.WL);
  ExpectNear(derived.Result.Abs, {0.15, -0.2, -0.2});
  ExpectNear(derived.Result.Trans, {70.794578438414, 158.489319246111, 158.489319246111}, 1e-9);
}

TEST(Derivative, OfAFallingRecordIsThatOfTheRisingOne) {
  const Column abs = {0.5, 0.75, 0.25, 0.5};
  const ProcessedSpectrum falling = DeriveSpectrum(WithAbs(abs));
  Spectrum rising;
  for (int i = 3; i >= 0; --i) rising.Add(600.0 - 0.5 * i, 7, abs[static_cast<std::size_t>(i)]);
  const ProcessedSpectrum risen = DeriveSpectrum(rising);
  ExpectNear(falling.Result.Abs, {-0.5, 1.0, -0.5, -0.5});
  ExpectNear(risen.Result.Abs, {-0.5, 1.0, -0.5, -0.5});
}

TEST(Derivative, OfASineIsItsCosineBetweenThePoints) {
  Spectrum source;
  for (int i = 0; i <= 1000; ++i) source.Add(i * 0.01, 1, std::sin(i * 0.01));
  const ProcessedSpectrum derived = DeriveSpectrum(source);
  for (std::size_t i = 0; i < 1000; ++i) {
    // The middle of the step; the error of the difference there is h^2 / 24.
    EXPECT_NEAR(derived.Result.Abs[i], std::cos(source.WL[i] + 0.005), 0.01 * 0.01 / 24 * 1.001);
  }
}

TEST(Derivative, OfTwoPointsIsOneSlopeTwice) {
  ExpectNear(DeriveSpectrum(WithAbs({1, 2})).Result.Abs, {-2, -2});
}

TEST(Derivative, NeedsTwoPointsAtDifferentWavelengths) {
  EXPECT_EQ(DeriveSpectrum({}).Reason, NoResult::NoSource);
  EXPECT_EQ(DeriveSpectrum(WithAbs({1})).Reason, NoResult::TooFewPoints);
  Spectrum equal = WithAbs({1, 2, 3, 4});
  equal.WL[2] = equal.WL[1];
  EXPECT_EQ(DeriveSpectrum(equal).Reason, NoResult::EqualWavelengths);
  EXPECT_TRUE(DeriveSpectrum(equal).Result.Empty());
}

}  // namespace
}  // namespace spectrane
