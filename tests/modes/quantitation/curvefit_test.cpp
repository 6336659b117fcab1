#include "modes/quantitation/curvefit.h"

#include <cmath>
#include <limits>

#include "base/basesupport.h"
#include "base/notfinite.h"
#include "modes/quantitation/quantitationsupport.h"

namespace spectrane {
namespace {

using K = std::array<double, 4>;

/// Marks that no fit of these tests gives: what still has them was not written.
QuaOption Marked(QuaOption qua) {
  qua.CurveK = {9, 8, 7, 6};
  qua.CurveR = 0.125;
  return qua;
}

// ---- Published regression problems, and constructions from them whose solution was computed in fractions.

Standards Line(double firstX, int count, double shift) {
  Standards points;
  for (int i = 0; i < count; ++i) points.emplace_back(firstX + i, firstX + i + shift);
  return points;
}
const Standards kNorris20 = {{0.2, 0.1},     {337.4, 338.8}, {118.2, 118.1}, {884.6, 888.0}, {10.1, 9.2},
                             {226.5, 228.1}, {666.3, 668.5}, {996.3, 998.5}, {448.6, 449.1}, {777.0, 778.9},
                             {558.2, 559.2}, {0.4, 0.3},     {0.6, 0.1},     {775.5, 778.1}, {666.9, 668.8},
                             {338.0, 339.3}, {447.5, 448.9}, {11.6, 10.8},   {556.0, 557.7}, {228.1, 228.3}};
const Standards kAnscombe1 = {{10, 8.04}, {8, 6.95}, {13, 7.58},  {9, 8.81}, {11, 8.33}, {14, 9.96},
                              {6, 7.24},  {4, 4.26}, {12, 10.84}, {7, 4.82}, {5, 5.68}};
const Standards kAnscombe2 = {{10, 9.14}, {8, 8.14}, {13, 8.74}, {9, 8.77}, {11, 9.26}, {14, 8.10},
                              {6, 6.13},  {4, 3.10}, {12, 9.13}, {7, 7.26}, {5, 4.74}};
constexpr double kPontius[] = {0.110355, 0.21987, 0.32944, 0.438925, 0.548005, 0.657165, 0.76579,
                               0.874805, 0.98296, 1.09148, 1.200025, 1.3082,   1.41606,  1.524035,
                               1.631765, 1.73956, 1.84671, 1.954185, 2.061525, 2.168365};
Standards Pontius(bool turned) {
  Standards points;
  for (int k = 1; k <= 20; ++k) {
    const double load = 150000.0 * k;
    const double reading = kPontius[k - 1];
    points.push_back(turned ? std::pair(reading, load) : std::pair(load, reading));
  }
  return points;
}
/// Potassium dichromate at 257 nm [Abs], 20 to 100 mg/L.
const Standards kDichromate = {{0.286, 20}, {0.574, 40}, {0.865, 60}, {1.157, 80}, {1.452, 100}};

struct PublishedRow {
  const char* Name;
  Standards Points;
  std::int32_t Method;
  K Coefficients;
  double R;
  /// Of the coefficients and of r.
  int Digits;
  int DigitsOfR = 12;
};

class PublishedFit : public testing::TestWithParam<PublishedRow> {};

TEST_P(PublishedFit, HasTheCertifiedDigits) {
  const PublishedRow& row = GetParam();
  for (const std::int32_t wavelengths : {1, 2}) {
    QuaOption qua = WithStandards(row.Points, row.Method, wavelengths);
    EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
    EXPECT_TRUE(qua.CurveValid);
    ExpectDigits(qua.CurveK[0], row.Coefficients[0], row.Digits, "K0");
    ExpectDigits(qua.CurveK[1], row.Coefficients[1], row.Digits, "K1");
    ExpectDigits(qua.CurveK[2], row.Coefficients[2], row.Digits, "K2");
    EXPECT_EQ(qua.CurveK[3], 0);
    ExpectDigits(qua.CurveR, row.R, row.DigitsOfR, "r");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Sets, PublishedFit,
    testing::Values(
        PublishedRow{"NoInt1", Line(60, 11, 70), 0, {0, 2.07438016528926}, 0.996603536803690, 13},
        PublishedRow{"NoInt2", {{4, 3}, {5, 4}, {6, 4}}, 0, {0, 0.727272727272727}, 0.990476671185216, 13},
        PublishedRow{"DichromateThroughZero", kDichromate, 0, {0, 69.1074471664731}, 0.999985164519, 12, 11},
        PublishedRow{"Norris20", kNorris20, 1, {-0.308900429717122, 1.00335213824482}, 0.999998704237418, 11},
        PublishedRow{
            "AnscombeI", kAnscombe1, 1, {3.00009090909091, 0.500090909090909}, 0.816420516344840, 12},
        PublishedRow{
            "DichromateLine", kDichromate, 1, {0.529442694625690, 68.6093185341190}, 0.999990408771, 11, 11},
        PublishedRow{"Pontius",
                     Pontius(false),
                     2,
                     {0.673565789473684E-03, 0.732059160401003E-06, -0.316081871345029E-14},
                     1,
                     11},
        PublishedRow{"PontiusTurnedRound",
                     Pontius(true),
                     2,
                     {-851.272543752769, 1365678.85989107, 8394.42654544547},
                     1,
                     11},
        PublishedRow{
            "AnscombeII", kAnscombe2, 2, {-5.99573426573427, 2.78083916083916, -0.126713286713287}, 1, 11},
        PublishedRow{"DichromateParabola",
                     kDichromate,
                     2,
                     {0.0231091986923100, 70.1129332709734, -0.865091076612195},
                     1,
                     10}),
    NameOfRow<PublishedRow>);

// ---- Line through zero

TEST(ZeroCrossing, OneStandardGivesItsRatio) {
  QuaOption qua = WithStandards({{0.5, 3}}, 0);
  qua.StandardAbs[1][0] = 4;
  qua.StandardConc[1] = 5;
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  EXPECT_EQ(qua.CurveK, (K{0, 6, 0, 0}));
  EXPECT_EQ(qua.CurveR, 1);
  EXPECT_EQ(qua.StandardAbs[1][0], 4) << "one standard alone leaves the row behind it";
  EXPECT_EQ(qua.StandardConc[1], 5);
}

TEST(ZeroCrossing, OneStandardAtTwoWavelengthsIsRejected) {
  QuaOption qua = WithStandards({{0.5, 3}}, 0, 2);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
  EXPECT_EQ(qua.CurveK, K{});
  EXPECT_EQ(qua.CurveR, 1);
}

TEST(ZeroCrossing, TheRowBehindTheLastStandardBecomesTheOrigin) {
  for (const int count : {2, 7, 20}) {
    for (const int wavelengths : {1, 2, 3, 0}) {
      const std::size_t column = wavelengths == 1 ? 0 : 2;
      QuaOption qua = WithStandards(Line(1, count, 0), 0, wavelengths);
      const auto n = static_cast<std::size_t>(count);
      qua.StandardAbs[n] = {1.5, 2.5, 3.5, 4.5, 5.5, 6.5};
      qua.StandardConc[n] = 77;
      qua.StandardAbsSet[n] = qua.StandardConcSet[n] = true;
      const QuaOption before = qua;
      EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
      QuaOption expected = before;
      expected.StandardAbs[n][column] = 0;
      expected.StandardConc[n] = 0;
      expected.CurveK = {0, 1, 0, 0};
      expected.CurveR = qua.CurveR;
      expected.CurveValid = true;
      EXPECT_EQ(qua, expected) << "nothing else is touched; " << count << " standards";
    }
  }
}

TEST(ZeroCrossing, RTakesInTheOriginAboutTheMeansOfTheStandards) {
  // Means 2 and 19/3; with the origin Sxy = 38/3, Sxx = 6, Syy = 385/9: r = 38 / sqrt(2310).
  QuaOption qua = WithStandards({{1, 7}, {2, 5}, {3, 7}}, 0);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
  EXPECT_FALSE(qua.CurveValid);
  ExpectDigits(qua.CurveR, 38 / std::sqrt(2310), 14, "r of 0.79");
  ExpectDigits(qua.CurveK[1], 19.0 / 7, 15, "a rejected fit shows its slope");
  EXPECT_EQ(qua.CurveK[0], 0);
}

TEST(ZeroCrossing, RKeepsItsSign) {
  QuaOption qua = WithStandards({{1, -2}, {2, -4}, {3, -6}}, 0);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  EXPECT_EQ(qua.CurveK, (K{0, -2, 0, 0}));
  ExpectDigits(qua.CurveR, -1, 15, "r");
  EXPECT_GE(qua.CurveR, -1);
}

TEST(ZeroCrossing, StandardsAtZeroAbsorbanceAreRejectedWithNothingStored) {
  QuaOption qua = WithStandards({{0, 1}, {0, 2}, {0, 3}}, 0);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
  EXPECT_EQ(qua.CurveK, K{});
  EXPECT_EQ(qua.CurveR, 1);
}

TEST(ZeroCrossing, EqualAbsorbancesHaveALineBecauseOfTheOrigin) {
  // Means 0.5 and 3; with the origin Sxy = 1.5, Sxx = 0.25, Syy = 1 + 1 + 9: r = 1.5 / sqrt(2.75).
  QuaOption qua = WithStandards({{0.5, 2}, {0.5, 4}}, 0);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  EXPECT_EQ(qua.CurveK, (K{0, 6, 0, 0}));
  ExpectDigits(qua.CurveR, 1.5 / std::sqrt(2.75), 14, "r");
}

TEST(ZeroCrossing, AnOverflowEndsItWhereItHappens) {
  // The sum of the absorbances overflows before the row behind is cleared.
  QuaOption sum = WithStandards({{1e308, 1}, {1e308, 2}}, 0);
  sum.StandardConc[2] = 5;
  EXPECT_EQ(CreateCurve(sum), FitOutcome::Rejected);
  EXPECT_EQ(sum.StandardConc[2], 5);
  // So does that of the concentrations.
  QuaOption concentrations = WithStandards({{1, 1e308}, {2, 1e308}}, 0);
  concentrations.StandardConc[2] = 5;
  EXPECT_EQ(CreateCurve(concentrations), FitOutcome::Rejected);
  EXPECT_EQ(concentrations.StandardConc[2], 5);
  // Only the squares overflow: by then it is cleared.
  QuaOption square = WithStandards({{1e200, 1}, {2e200, 2}}, 0);
  square.StandardConc[2] = 5;
  EXPECT_EQ(CreateCurve(square), FitOutcome::Rejected);
  EXPECT_EQ(square.StandardConc[2], 0);
  EXPECT_EQ(square.CurveK, K{});
  EXPECT_EQ(square.CurveR, 1);
}

TEST(ZeroCrossing, SquaresThatVanishAreADivisionByZero) {
  QuaOption qua = WithStandards({{1e-200, 1}}, 0);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
  EXPECT_EQ(qua.CurveK, K{});
}

// ---- Straight line

TEST(FirstOrder, OneStandardIsRejected) {
  for (const int wavelengths : {1, 2}) {
    QuaOption qua = WithStandards({{0.5, 3}}, 1, wavelengths);
    EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
    EXPECT_EQ(qua.CurveK, K{});
  }
}

TEST(FirstOrder, TwoStandardsHaveTheirLineAndAnROfOne) {
  QuaOption qua = WithStandards({{0.5, 4}, {1.5, 1}}, 1);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  EXPECT_EQ(qua.CurveK, (K{5.5, -3, 0, 0}));
  EXPECT_EQ(qua.CurveR, 1);
  // A level line has no r that could be computed, and none is.
  QuaOption level = WithStandards({{0.5, 4}, {1.5, 4}}, 1);
  EXPECT_EQ(CreateCurve(level), FitOutcome::Accepted);
  EXPECT_EQ(level.CurveK, (K{4, 0, 0, 0}));
}

TEST(FirstOrder, AFallingLineHasAPositiveR) {
  QuaOption qua = WithStandards({{1, 3}, {2, 2}, {3, 1}}, 1);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  EXPECT_EQ(qua.CurveK, (K{4, -1, 0, 0}));
  ExpectDigits(qua.CurveR, 1, 15, "r");
  EXPECT_LE(qua.CurveR, 1) << "rounding alone does not carry r beyond 1";
}

TEST(FirstOrder, AWeakCorrelationLeavesAllCoefficientsZero) {
  // Sxy = 9, Sxx = 5, Syy = 26: r = 9 / sqrt(130), 0.7894.
  const Standards weak = {{1, 0}, {2, 4}, {3, 7}, {4, 5}};
  QuaOption qua = WithStandards(weak, 1);
  qua.CurveValid = true;
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
  EXPECT_FALSE(qua.CurveValid);
  EXPECT_EQ(qua.CurveK, K{});
  EXPECT_EQ(qua.CurveR, 1);
  QuaOption marked = Marked(WithStandards(weak, 1));
  EXPECT_FALSE(FitFirstOrder(marked));
  EXPECT_EQ(marked, Marked(WithStandards(weak, 1))) << "a rejected fit writes nothing";
  QuaOption falling = WithStandards({{1, 5}, {2, 7}, {3, 4}, {4, 0}}, 1);
  EXPECT_EQ(CreateCurve(falling), FitOutcome::Rejected);
  // Sxy = 9.5, Sxx = 5, Syy = 22.75: r = 9.5 / sqrt(113.75), 0.8907.
  QuaOption stronger = WithStandards({{1, 1}, {2, 3}, {3, 7}, {4, 6}}, 1);
  EXPECT_EQ(CreateCurve(stronger), FitOutcome::Accepted);
  ExpectDigits(stronger.CurveR, 9.5 / std::sqrt(113.75), 14, "r");
}

// The product of the two roots of 6 is a little less than 6, which carries r beyond 1.
TEST(Correlation, ThatExceedsOneByRoundingIsOne) {
  for (const double sign : {1.0, -1.0}) {
    QuaOption line = WithStandards({{1, sign * 1}, {1, sign * 1}, {4, sign * 4}}, 1);
    EXPECT_EQ(CreateCurve(line), FitOutcome::Accepted);
    EXPECT_EQ(line.CurveR, 1);
    QuaOption zero = WithStandards({{1, sign * 1}, {2, sign * 2}, {3, sign * 3}}, 0);
    EXPECT_EQ(CreateCurve(zero), FitOutcome::Accepted);
    EXPECT_EQ(zero.CurveR, sign);
  }
}

// Squares of 2.7e-162 are 1.48 of the smallest number there is, and round to 1: r comes out as 1.48 to the
// power of 1/2.
TEST(Correlation, ThatIsFarBeyondOneIsNone) {
  QuaOption qua = WithStandards({{0, 0}, {0, 0}, {5.4e-162, 1}, {5.4e-162, 1}}, 1);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
  EXPECT_EQ(qua.CurveK, K{});
}

TEST(FirstOrder, TheRowBehindTheLastStandardStays) {
  QuaOption qua = WithStandards({{1, 1}, {2, 2}, {3, 3.5}}, 1);
  qua.StandardAbs[3][0] = 4;
  qua.StandardConc[3] = 5;
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  EXPECT_EQ(qua.StandardAbs[3][0], 4);
  EXPECT_EQ(qua.StandardConc[3], 5);
}

TEST(FirstOrder, EqualAbsorbancesAreRejectedHoweverTheyRound) {
  for (const double x : {0.5, 0.1, 0.3, 1e-3, -0.7}) {
    for (const int count : {2, 3, 7, 20}) {
      Standards points;
      for (int i = 0; i < count; ++i) points.emplace_back(x, 1 + i);
      QuaOption rising = WithStandards(points, 1);
      EXPECT_EQ(CreateCurve(rising), FitOutcome::Rejected) << x << " times " << count;
      EXPECT_EQ(rising.CurveK, K{});
      for (auto& point : points) point.second = x;
      QuaOption same = WithStandards(points, 1);
      EXPECT_EQ(CreateCurve(same), FitOutcome::Rejected) << "one point " << count << " times at " << x;
    }
  }
}

TEST(FirstOrder, ALevelLineOfThreeHasNoCorrelation) {
  QuaOption qua = WithStandards({{1, 4}, {2, 4}, {3, 4}}, 1);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
  EXPECT_EQ(qua.CurveK, K{});
}

TEST(FirstOrder, AnOverflowIsRejected) {
  QuaOption qua = WithStandards({{1e308, 1}, {-1e308, 2}}, 1);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
  EXPECT_EQ(qua.CurveK, K{});
}

// ---- Parabola

TEST(SecondOrder, ExactPointsGiveTheirParabola) {
  // y = 1 + 2x + 3x^2
  QuaOption qua = WithStandards({{0, 1}, {1, 6}, {2, 17}, {3, 34}}, 2);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  EXPECT_EQ(qua.CurveK, (K{1, 2, 3, 0}));
  EXPECT_EQ(qua.CurveR, 1) << "a parabola has no r";
}

TEST(SecondOrder, AFitThatIsFarFromItsPointsIsAcceptedAllTheSame) {
  QuaOption qua = WithStandards({{-1, 5}, {0, -5}, {1, 5}, {-1, -5}, {0, 5}, {1, -5}}, 2);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  EXPECT_EQ(qua.CurveK, K{});
}

TEST(SecondOrder, TwoLevelsLeaveTheSquareOutAndGiveTheLine) {
  // Doubles of 0.1 leave a denominator next to zero; the line through the means stays the answer.
  QuaOption qua = WithStandards({{0.1, 1}, {0.1, 3}, {0.3, 5}, {0.3, 7}}, 2);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  EXPECT_NEAR(qua.CurveK[0], 0, 1e-13);
  ExpectDigits(qua.CurveK[1], 20, 13, "K1");
  EXPECT_EQ(qua.CurveK[2], 0);
}

TEST(SecondOrder, EqualAbsorbancesGiveTheMean) {
  for (const double x : {0.5, 0.1, 0.3}) {
    QuaOption qua = WithStandards({{x, 1}, {x, 2}, {x, 6}}, 2);
    EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
    EXPECT_EQ(qua.CurveK, (K{3, 0, 0, 0})) << x;
  }
}

TEST(SecondOrder, ACoefficientThatDividesByZeroKeepsWhatItHad) {
  // K1 and K2 stay 8 and 7; K0 = (9 - 1.5 * 8 - 0.75 * 7) / 3.
  QuaOption qua = Marked(WithStandards({{0.5, 1}, {0.5, 2}, {0.5, 6}}, 2));
  EXPECT_TRUE(QUA_Linear2(qua));
  EXPECT_EQ(qua.CurveK, (K{-2.75, 8, 7, 6}));
  EXPECT_EQ(qua.CurveR, 0.125);
}

TEST(SecondOrder, NoStandardsChangeNothingAndCountAsDone) {
  for (const auto fit : {QUA_Linear2, QUA_Linear2TwoWavelength, QUA_Linear3, QUA_Linear3TwoWavelength}) {
    QuaOption qua = Marked(WithStandards({}, 2));
    EXPECT_TRUE(fit(qua));
    EXPECT_EQ(qua, Marked(WithStandards({}, 2)));
  }
}

TEST(SecondOrder, AStatementThatOverflowsIsLeftOutAndTheNextOneRuns) {
  // The powers of 1e200 overflow and are not added: Sx2 5, Sx3 9, Sx4 17, Sx2y 5. C overflows and stays 0,
  // B * B overflows (0 / infinity would be 0): K2 and K1 stay. K0 = (3 - 8e200 - 5 * 7) / 3.
  QuaOption qua = Marked(WithStandards({{1, 1}, {2, 1}, {1e200, 1}}, 2));
  EXPECT_TRUE(QUA_Linear2(qua));
  ExpectDigits(qua.CurveK[0], -8e200 / 3, 14, "K0");
  EXPECT_EQ(qua.CurveK[1], 8);
  EXPECT_EQ(qua.CurveK[2], 7);
  EXPECT_EQ(qua.CurveK[3], 6);
}

TEST(SecondOrder, TheLargestNumbersEndInNumbers) {
  for (const std::int32_t method : {2, 3}) {
    QuaOption qua = WithStandards({{1e308, 1e308}, {-1e308, 1e308}, {1e308, -1e308}, {5e-324, 1}}, method);
    EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
    for (const double k : qua.CurveK) EXPECT_TRUE(std::isfinite(k));
  }
}

TEST(ThirdOrder, IsAParabolaOverTheRowsFromTheSecondToTheOneBehindTheLast) {
  Standards parabola;
  for (int x = 0; x < 5; ++x) parabola.emplace_back(x, 1 + 2 * x + 3 * x * x);
  for (const int wavelengths : {1, 2}) {
    QuaOption qua = WithStandards(parabola, 3, wavelengths);
    qua.SampleNumber = 4;
    qua.StandardConc[0] = 1000;
    EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
    EXPECT_EQ(qua.CurveK, (K{1, 2, 3, 0})) << "the first row counts for nothing";
    EXPECT_EQ(qua.CurveR, 1);
  }
}

TEST(ThirdOrder, AnEmptyRowBehindTheLastEntersAsTheOrigin) {
  // Rows (1,6) (2,17) (3,34) (0,0), solved as fractions: 1/20, 61/20, 11/4.
  QuaOption qua = WithStandards({{0, 1}, {1, 6}, {2, 17}, {3, 34}}, 3);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  ExpectDigits(qua.CurveK[0], 0.05, 12, "K0");
  ExpectDigits(qua.CurveK[1], 3.05, 13, "K1");
  ExpectDigits(qua.CurveK[2], 2.75, 13, "K2");
  EXPECT_EQ(qua.CurveK[3], 0);
}

TEST(ThirdOrder, TwentyStandardsTakeInTheLastRow) {
  Standards parabola;
  for (int x = 0; x <= 20; ++x) parabola.emplace_back(x / 8.0, 1 + x / 4.0);
  QuaOption qua;
  qua = WithStandards({parabola.begin(), parabola.end() - 1}, 3);
  qua.StandardAbs[20][0] = parabola[20].first;
  qua.StandardConc[20] = parabola[20].second;
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  ExpectDigits(qua.CurveK[0], 1, 12, "K0");
  ExpectDigits(qua.CurveK[1], 2, 12, "K1");
  EXPECT_NEAR(qua.CurveK[2], 0, 1e-12);
}

// ---- All fits

TEST(TwoWavelengths, EveryFitTakesTheCombinedColumn) {
  for (const std::int32_t method : {0, 1, 2, 3}) {
    QuaOption qua = WithStandards({{1, 2}, {2, 4}, {3, 6}, {4, 8}}, method, 3);
    for (auto& row : qua.StandardAbs) row[0] = row[1] = row[3] = 5;
    EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
    ExpectDigits(CalcConc(qua, 2.5), 5, 12, "on the line");
    EXPECT_EQ(FitColumn(qua), 2u);
    qua.WaveLengthNumber = 1;
    EXPECT_EQ(FitColumn(qua), 0u);
  }
}

class AnyMethod : public testing::TestWithParam<std::int32_t> {};

TEST_P(AnyMethod, IncompleteStandardsClearTheCoefficientsAndNothingElse) {
  for (const bool absMissing : {true, false}) {
    for (const bool valid : {true, false}) {
      QuaOption qua = Marked(WithStandards({{1, 2}, {2, 4}, {3, 6}}, GetParam()));
      (absMissing ? qua.StandardAbsSet : qua.StandardConcSet)[2] = false;
      qua.StandardConc[3] = 5;
      qua.CurveValid = valid;
      QuaOption expected = qua;
      expected.CurveK = {};
      expected.CurveR = 1;
      EXPECT_EQ(CreateCurve(qua), FitOutcome::Incomplete);
      EXPECT_EQ(qua, expected);
    }
  }
}

TEST_P(AnyMethod, ARowBehindTheStandardsNeedNotBeGiven) {
  QuaOption qua = WithStandards({{1, 2}, {2, 4}, {3, 6}}, GetParam());
  EXPECT_FALSE(qua.StandardAbsSet[3]);
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
}

TEST_P(AnyMethod, ACountBeyondTheTableIsRejected) {
  for (const std::int32_t count : {-1, 21, 22, 1000000, std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min()}) {
    QuaOption qua = Marked(WithStandards(Line(1, 20, 0), GetParam()));
    qua.SampleNumber = count;
    qua.CurveValid = true;
    EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected) << count;
    EXPECT_FALSE(qua.CurveValid);
    EXPECT_EQ(qua.CurveK, K{});
    EXPECT_EQ(qua.CurveR, 1);
  }
}

TEST_P(AnyMethod, AStandardThatIsNoNumberIsRejected) {
  for (const double bad : {kNaN, kInfinity, -kInfinity}) {
    for (const bool abs : {true, false}) {
      QuaOption qua = WithStandards({{1, 2}, {2, 4}, {3, 6}}, GetParam());
      (abs ? qua.StandardAbs[1][0] : qua.StandardConc[1]) = bad;
      EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
      EXPECT_EQ(qua.CurveK, K{});
    }
  }
}

TEST_P(AnyMethod, ZeroAndNegativeValuesAreValues) {
  QuaOption qua = WithStandards({{-0.5, -1}, {0, 0}, {0.5, 1}, {1, 2}}, GetParam());
  EXPECT_EQ(CreateCurve(qua), FitOutcome::Accepted);
  ExpectDigits(CalcConc(qua, 3), 6, 12, "conc");
}

INSTANTIATE_TEST_SUITE_P(Methods, AnyMethod, testing::Values(0, 1, 2, 3));

TEST(CreateCurve, AnUnknownMethodIsRejected) {
  for (const std::int32_t method : {-1, 4, 9}) {
    QuaOption qua = Marked(WithStandards({{1, 2}, {2, 4}}, method));
    EXPECT_EQ(CreateCurve(qua), FitOutcome::Rejected);
    EXPECT_FALSE(qua.CurveValid);
    EXPECT_EQ(qua.CurveK, K{});
    EXPECT_EQ(qua.CurveR, 1);
  }
}

// ---- The equation in force

struct ConcRow {
  const char* Name;
  std::int32_t Method;
  std::int32_t Item;
  double Abs;
  double Conc;
};

class Concentration : public testing::TestWithParam<ConcRow> {};

TEST_P(Concentration, FollowsTheEquationInForce) {
  QuaOption qua;
  qua.FittingMethod = GetParam().Method;
  qua.CurveItem = GetParam().Item;
  qua.CurveK = {1, 2, 3, 4};
  qua.InputK = {10, 20, 30, 40};
  EXPECT_EQ(CalcConc(qua, GetParam().Abs), GetParam().Conc);
}

INSTANTIATE_TEST_SUITE_P(
    Equations, Concentration,
    testing::Values(ConcRow{"ThroughZero", 0, 1, 0.5, 1}, ConcRow{"Line", 1, 1, 0.5, 2},
                    ConcRow{"Parabola", 2, 1, 0.5, 2.75}, ConcRow{"Cubic", 3, 1, 0.5, 3.25},
                    ConcRow{"CubicOfANegative", 3, 1, -1, -2}, ConcRow{"TypedThroughZero", 0, 2, 0.5, 10},
                    ConcRow{"TypedLine", 1, 2, 0.5, 20}, ConcRow{"TypedParabola", 2, 2, 0.5, 27.5},
                    ConcRow{"TypedCubic", 3, 2, 0.5, 32.5},
                    ConcRow{"UnknownMethodTakesTheTypedK0", 9, 1, 0.5, 5},
                    ConcRow{"UnknownMethodTyped", -1, 2, 0.5, 5},
                    ConcRow{"UnknownSourceIsFitted", 1, 7, 0.5, 2}),
    NameOfRow<ConcRow>);

TEST(Concentration, TheCubicAddsSquareAndCubeFirst) {
  QuaOption qua;
  qua.FittingMethod = 3;
  qua.CurveK = {1, 1, 1e16, -1e16};
  EXPECT_EQ(CalcConc(qua, 1), 2);
  qua.CurveK = {0, -1e16, 1, 1e16};
  EXPECT_EQ(CalcConc(qua, 1), 0) << "the 1 is lost beside the cube";
}

TEST(Concentration, AnOverflowIsNoFiniteNumber) {
  QuaOption qua;
  qua.FittingMethod = 2;
  qua.CurveK = {1, 1, 1, 0};
  EXPECT_FALSE(std::isfinite(CalcConc(qua, 1e308)));
  EXPECT_TRUE(std::isnan(CalcConc(qua, kNaN)));
}

}  // namespace
}  // namespace spectrane
