#include "spectrum/calculation.h"

#include <cmath>

#include "base/basesupport.h"
#include "base/notfinite.h"

namespace spectrane {
namespace {

using Values = std::vector<double>;

/// A point at each wavelength; the square of its place is its transmittance (1, 4, 9, ...) and, over 100, its
/// absorbance.
Spectrum At(const Values& wavelengths) {
  Spectrum spectrum;
  for (const double wavelength : wavelengths) {
    const auto place = static_cast<double>(spectrum.Size() + 1);
    spectrum.Add(wavelength, place * place, place * place / 100);
  }
  return spectrum;
}

/// One point, whose values a product does not change.
Spectrum OneAt(double wavelength) {
  Spectrum spectrum;
  spectrum.Add(wavelength, 1, 1);
  return spectrum;
}

/// The absorbance that is found in `other` at a wavelength; NaN when the point is left out.
double FoundAt(const Spectrum& other, double wavelength) {
  const ProcessedSpectrum found =
      CombineSpectra(OneAt(wavelength), other, SpectrumOperation::Multiply, false);
  return found.Result.Empty() ? kNaN : found.Result.Abs[0];
}

struct AlignmentRow {
  const char* Name;
  Values Wavelengths;
  double X;
  /// Hundredths of absorbance; NaN: left out and counted.
  double Found;
};

class Alignment : public testing::TestWithParam<AlignmentRow> {};

// Each place is reckoned by hand: round(n - n (10x - 10 last) / (10 first - 10 last + 1)).
INSTANTIATE_TEST_SUITE_P(
    Steps, Alignment,
    testing::Values(
        AlignmentRow{"EqualAtThePlace", {500, 499, 498, 497, 496, 495}, 500, 1},             // 0.12 -> 0
        AlignmentRow{"EqualBeforeThePlace", {500, 499, 498, 497, 496, 495}, 495, 36},        // 6
        AlignmentRow{"EqualBehindThePlace", {500, 499, 490}, 499, 4},                        // 0.33 -> 0
        AlignmentRow{"BetweenThePlaceAndTheNext", {500, 499, 498, 497}, 499.75, 1.75},       // 0.45 -> 0
        AlignmentRow{"BetweenThePlaceAndTheOneBefore", {500, 499, 498, 497}, 498.25, 7.75},  // 2.45 -> 2
        AlignmentRow{"TheNextAsItStands", {500, 499, 498, 490}, 497, 9},                     // 1.23 -> 1
        AlignmentRow{"PlaceBehindTheEnd", {500, 491, 490}, 491, kNaN},                       // 2.70 -> 3
        AlignmentRow{"NextBehindTheEnd", {500, 492, 490}, 490.5, kNaN},                      // 2.85 -> 3
        AlignmentRow{"TheLastWhenThePlaceIsBehindIt", {500, 492, 490}, 490, 9},              // 3
        AlignmentRow{"NoPointBeforeTheFirst", {500, 499, 490}, 499.5, 2.5},                  // 0.18 -> 0
        AlignmentRow{"AloneAtItsWavelength", {500}, 500, 1}),                                // 1
    NameOfRow<AlignmentRow>);

TEST_P(Alignment, FindsTheValue) {
  const AlignmentRow& row = GetParam();
  const Spectrum other = At(row.Wavelengths);
  const double found = FoundAt(other, row.X);
  if (std::isnan(row.Found)) {
    EXPECT_TRUE(std::isnan(found)) << found;
    EXPECT_EQ(CombineSpectra(OneAt(row.X), other, SpectrumOperation::Add, false).Skipped, 1);
  } else {
    EXPECT_NEAR(found, row.Found / 100, 1e-14);
    EXPECT_EQ(CombineSpectra(OneAt(row.X), other, SpectrumOperation::Add, false).Skipped, 0);
  }
}

TEST(AlignmentSteps, TakeTransmittanceAndAbsorbanceApart) {
  const Spectrum other = At({500, 499, 498, 497});
  const ProcessedSpectrum onTrans = CombineSpectra(OneAt(498.25), other, SpectrumOperation::Multiply, true);
  EXPECT_NEAR(onTrans.Result.Trans.at(0), 7.75, 1e-12);
}

Spectrum Uniform(double from, double to, double step, double abs, double trans) {
  Spectrum spectrum;
  const auto points = static_cast<int>(std::lround((from - to) / step)) + 1;
  for (int i = 0; i < points; ++i) spectrum.Add(from - i * step, trans, abs);
  return spectrum;
}

struct OperationRow {
  const char* Name;
  SpectrumOperation Operation;
  bool OnTrans;
  double Abs, Trans;
};

class Operation : public testing::TestWithParam<OperationRow> {};

// Of 0.5 Abs, 40 %T and 0.2 Abs, 60 %T (which do not belong to each other, to tell the two modes apart).
INSTANTIATE_TEST_SUITE_P(
    All, Operation,
    testing::Values(OperationRow{"AddAbs", SpectrumOperation::Add, false, 0.7, 19.952623149689},
                    OperationRow{"SubtractAbs", SpectrumOperation::Subtract, false, 0.3, 50.118723362727},
                    OperationRow{"MultiplyAbs", SpectrumOperation::Multiply, false, 0.1, 79.432823472428},
                    OperationRow{"DivideAbs", SpectrumOperation::Divide, false, 2.5, 0.316227766017},
                    OperationRow{"AddTrans", SpectrumOperation::Add, true, 0.0, 100},
                    OperationRow{"SubtractTrans", SpectrumOperation::Subtract, true, 3, -20},
                    OperationRow{"MultiplyTrans", SpectrumOperation::Multiply, true, -0.5, 2400},
                    OperationRow{"DivideTrans", SpectrumOperation::Divide, true, 2.176091259056, 2.0 / 3}),
    NameOfRow<OperationRow>);

TEST_P(Operation, RunsOnOneUnitAndGivesTheOther) {
  const OperationRow& row = GetParam();
  const ProcessedSpectrum combined = CombineSpectra(
      Uniform(500, 490, 1, 0.5, 40), Uniform(500, 490, 1, 0.2, 60), row.Operation, row.OnTrans);
  ASSERT_EQ(combined.Result.Size(), 11u);
  for (std::size_t i = 0; i < 11; ++i) {
    EXPECT_EQ(combined.Result.WL[i], 500.0 - static_cast<double>(i));
    EXPECT_NEAR(combined.Result.Abs[i], row.Abs, 1e-11);
    EXPECT_NEAR(combined.Result.Trans[i], row.Trans, 1e-9);
  }
}

TEST(Combination, StandsWhereBothAreOnThePointsOfTheFirst) {
  const ProcessedSpectrum combined = CombineSpectra(Uniform(800, 200, 2, 1, 10), Uniform(1000, 400, 1, 1, 10),
                                                    SpectrumOperation::Add, false);
  ASSERT_EQ(combined.Result.Size(), 201u);
  EXPECT_EQ(combined.Result.WL.front(), 800);
  EXPECT_EQ(combined.Result.WL.back(), 400);
  EXPECT_EQ(combined.Result.Abs, Values(201, 2.0));
  EXPECT_EQ(combined.Skipped, 0);
}

TEST(Combination, OfAPointByZeroIsZero) {
  const Spectrum base = Uniform(500, 490, 1, 0.5, 40);
  EXPECT_EQ(CombineSpectra(base, Uniform(500, 490, 1, 0, 60), SpectrumOperation::Divide, false).Result.Abs,
            Values(11, 0.0));
  EXPECT_EQ(CombineSpectra(base, Uniform(500, 490, 1, -0.0, 60), SpectrumOperation::Divide, false).Result.Abs,
            Values(11, 0.0));
  EXPECT_NEAR(
      CombineSpectra(base, Uniform(500, 490, 1, 1e-9, 60), SpectrumOperation::Divide, false).Result.Abs.at(3),
      5e8, 1);
}

TEST(Combination, WithoutASourceOrAnOverlapIsEmpty) {
  const Spectrum high = Uniform(800, 600, 1, 1, 10);
  EXPECT_EQ(CombineSpectra({}, high, SpectrumOperation::Add, false).Reason, NoResult::NoSource);
  EXPECT_EQ(CombineSpectra(high, {}, SpectrumOperation::Add, false).Reason, NoResult::NoSource);
  const ProcessedSpectrum apart =
      CombineSpectra(high, Uniform(500, 400, 1, 1, 10), SpectrumOperation::Add, false);
  EXPECT_EQ(apart.Reason, NoResult::NoOverlap);
  EXPECT_TRUE(apart.Result.Empty());
}

TEST(Combination, OfARisingRecordFailsTheRangeUntilItIsTurnedRound) {
  Spectrum rising;
  for (int i = 0; i <= 10; ++i) rising.Add(490 + i, 50, 0.1 * i);
  const Spectrum base = Uniform(500, 490, 1, 1, 10);
  EXPECT_EQ(CombineSpectra(base, rising, SpectrumOperation::Add, false).Reason, NoResult::NoOverlap);

  const Spectrum turned = FromHighestWavelength(rising);
  EXPECT_EQ(turned.WL.front(), 500);
  EXPECT_EQ(turned.Abs.front(), 1.0);
  EXPECT_EQ(FromHighestWavelength(turned), turned);
  EXPECT_EQ(CombineSpectra(base, turned, SpectrumOperation::Add, false).Result.Size(), 11u);
}

TEST(Combination, SurvivesWavelengthsThatNoInstrumentHas) {
  const Spectrum base = Uniform(500, 490, 1, 1, 10);
  Spectrum other = Uniform(500, 490, 1, 1, 10);
  other.WL.front() = kInfinity;
  EXPECT_EQ(CombineSpectra(base, other, SpectrumOperation::Add, false).Skipped, 11);
  EXPECT_EQ(CombineSpectra(base, other, SpectrumOperation::Add, false).Reason, NoResult::NoPartner);
  other.WL.front() = 1e300;
  EXPECT_EQ(CombineSpectra(base, other, SpectrumOperation::Add, false).Skipped, 11);
  other.WL.front() = kNaN;
  EXPECT_EQ(CombineSpectra(base, other, SpectrumOperation::Add, false).Reason, NoResult::NoOverlap);
}

}  // namespace
}  // namespace spectrane
