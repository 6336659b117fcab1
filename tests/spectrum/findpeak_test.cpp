#include "spectrum/findpeak.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "base/basesupport.h"
#include "base/notfinite.h"

namespace spectrane {
namespace {

using Indices = std::vector<std::int32_t>;

/// One search written down step by step, without anything that makes it fast: sign 1 looks for peaks, -1 for
/// valleys. `cells` has a 0 behind the last point.
Indices WalkedPeaks(const std::vector<double>& cells, int points, double height, int sign) {
  const auto at = [&cells](int i) { return cells.at(static_cast<std::size_t>(i)); };
  const auto beyond = [sign](double a, double b) { return sign > 0 ? a > b : a < b; };
  const auto climbs = [&](int from, int to) { return beyond(at(to) - sign * 0.01, at(from)); };
  Indices found;
  for (int i = 1; i <= points - 2; ++i) {
    if (!beyond(at(i), at(i - 1)) || !beyond(at(i), at(i + 1))) continue;
    double left = at(i - 1);
    for (int j = i - 1; j > 1 && beyond(at(i), at(j)) && !climbs(j, j - 1);) {
      --j;
      if (beyond(left, at(j))) left = at(j);
    }
    double right = at(i + 1);
    for (int j = i + 1; j < points && beyond(at(i), at(j)) && !climbs(j, j + 1);) {
      ++j;
      if (beyond(right, at(j))) right = at(j);
    }
    if (sign * (at(i) - left) > height && sign * (at(i) - right) > height) found.push_back(i);
  }
  return found;
}

FoundPeaks WalkedSearch(std::vector<double> abs, double height) {
  const int points = static_cast<int>(abs.size());
  abs.push_back(0.0);
  return {WalkedPeaks(abs, points, height, 1), WalkedPeaks(abs, points, height, -1)};
}

/// Spectra in which every rule of the search has something to decide.
class SpectrumMaker {
 public:
  explicit SpectrumMaker(unsigned seed) : random_(seed) {}

  std::vector<double> Make() {
    std::vector<double> abs;
    const int points = Number(0, 60);
    double value = Number(-50, 300) / 100.0;
    const int manner = Number(0, 5);
    for (int i = 0; i < points; ++i) {
      switch (manner) {
        case 0:  // steps around the tolerance, and equal values
          value += Number(-3, 3) * 0.005;
          break;
        case 1:  // the tolerance itself, with what rounding makes of it
          value += Number(-1, 1) * 0.01 + Number(-1, 1) * 1e-16;
          break;
        case 2:  // plateaus
          if (Number(0, 2) == 0) value += Number(-2, 2) * 0.004;
          break;
        case 3:  // few levels: many equal heights far apart
          value = Number(0, 4) * 0.003;
          break;
        case 4:  // slow bands with noise on them
          value = 1 + std::sin(i * 0.2) * 0.3 + Number(-100, 100) * 1e-4;
          break;
        default:
          value = Number(-1000, 1000) * 1e-3;
          break;
      }
      abs.push_back(value);
    }
    return abs;
  }

  double Height() {
    constexpr double kHeights[] = {0, 0.001, 0.003, 0.005, 0.01, 0.012, 0.1, -0.001};
    return kHeights[Number(0, std::size(kHeights) - 1)];
  }

 private:
  int Number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  std::mt19937 random_;
};

TEST(FindPeak, AgreesWithThePlainWalkOnTenThousandSpectra) {
  SpectrumMaker maker(20240611);
  std::size_t peaks = 0;
  for (int round = 0; round < 10000; ++round) {
    const std::vector<double> abs = maker.Make();
    const double height = maker.Height();
    const FoundPeaks expected = WalkedSearch(abs, height);
    const FoundPeaks found = FindPeak(abs, {height, true, true});
    ASSERT_EQ(found.PeakIndex, expected.PeakIndex) << "spectrum " << round << ", height " << height;
    ASSERT_EQ(found.ValleyIndex, expected.ValleyIndex) << "spectrum " << round << ", height " << height;
    peaks += found.PeakIndex.size() + found.ValleyIndex.size();
  }
  EXPECT_GT(peaks, 30000U) << "the spectra have something to find";
}

TEST(FindPeak, AgreesWithThePlainWalkOnValuesThatAreNoNumbers) {
  std::mt19937 random(7);
  constexpr double kValues[] = {0, 0.5, 0.508, 0.52, -0.5, kNaN, kInfinity, -kInfinity};
  for (int round = 0; round < 3000; ++round) {
    std::vector<double> abs(round % 14U);
    for (double& value : abs) value = kValues[random() % std::size(kValues)];
    const FoundPeaks expected = WalkedSearch(abs, 0.001);
    const FoundPeaks found = FindPeak(abs, {});
    ASSERT_EQ(found.PeakIndex, expected.PeakIndex) << "spectrum " << round;
    ASSERT_EQ(found.ValleyIndex, expected.ValleyIndex) << "spectrum " << round;
  }
}

struct PeakRow {
  const char* Name;
  std::vector<double> Abs;
  PeakSearch Search;
  Indices Peaks;
  Indices Valleys;
};

class FindPeakCase : public testing::TestWithParam<PeakRow> {};

TEST_P(FindPeakCase, GivesTheseIndices) {
  const FoundPeaks found = FindPeak(GetParam().Abs, GetParam().Search);
  EXPECT_EQ(found.PeakIndex, GetParam().Peaks);
  EXPECT_EQ(found.ValleyIndex, GetParam().Valleys);
}

const PeakSearch kQuarter{0.25, true, true};
const PeakSearch kHundredth{0.01, true, true};

INSTANTIATE_TEST_SUITE_P(
    Spectra, FindPeakCase,
    testing::Values(
        PeakRow{"NoPoints", {}, {}, {}, {}}, PeakRow{"OnePoint", {1}, {}, {}, {}},
        PeakRow{"TwoPoints", {1, 2}, {}, {}, {}}, PeakRow{"ThreePointsWithAPeak", {0, 1, 0}, {}, {1}, {}},
        PeakRow{"ThreePointsWithAValley", {1, 0, 1}, {}, {}, {1}},
        PeakRow{"RisesOnly", {0, 1, 2, 3, 4}, {}, {}, {}}, PeakRow{"FallsOnly", {4, 3, 2, 1, 0}, {}, {}, {}},
        PeakRow{"TwoEqualMaxima", {0, 1, 1, 0}, {}, {}, {}},
        PeakRow{"FlatThroughout", {1, 1, 1, 1}, {}, {}, {}},
        PeakRow{"HeightEqualToThePeakValue", {1, 1.25, 1}, kQuarter, {}, {}},
        PeakRow{"HeightJustAboveThePeakValue", {1, 1.2578125, 1}, kQuarter, {1}, {}},
        PeakRow{"LowOnTheLeftOnly", {1, 2, 1.9375, 1.9375, 2.5}, kQuarter, {}, {}},
        PeakRow{"DepthEqualToThePeakValue", {1, 0.75, 1}, kQuarter, {}, {}},
        // A dip of 0.009 before the fall goes on: the walk comes through to what lies behind.
        PeakRow{"ShallowDipIsWalkedThrough", {1, 1, 2, 1.995, 1.986, 1.995, 1, 1}, kHundredth, {2}, {}},
        // A rise of 0.011 in one step ends it, and what was reached so far is too little.
        PeakRow{
            "DeepDipEndsTheWalk", {1, 1, 2, 1.995, 1.994, 1.998, 2.009, 1, 1}, {0.1, true, true}, {6}, {}},
        // To the left the walk stops at the second point and never looks at the first.
        PeakRow{"TheFirstPointIsNotReached", {0, 1.96, 1.97, 1.98, 2, 1}, {0.5, true, true}, {}, {}},
        PeakRow{"TheSecondPointIsReached", {1.96, 0, 1.97, 1.98, 2, 1}, {0.5, true, true}, {4}, {1}},
        // To the right the cell behind the record counts as 0.
        PeakRow{"TheCellBehindIsReached", {0, 0, 1, 0.999}, {0.5, true, true}, {2}, {}},
        PeakRow{"TheCellBehindIsARise", {-3, -3, -1, -1.001}, {0.5, true, true}, {}, {}},
        PeakRow{"PeaksOff", {1, 2, 1, 2, 1}, {0.001, false, true}, {}, {2}},
        PeakRow{"ValleysOff", {1, 2, 1, 2, 1}, {0.001, true, false}, {1, 3}, {}},
        PeakRow{"BothOff", {1, 2, 1, 2, 1}, {0.001, false, false}, {}, {}}),
    NameOfRow<PeakRow>);

TEST(FindPeak, OfAFallingAbscissaTheListBeginsAtItsLowerEnd) {
  const std::vector<double> abs = {0, 1, 0, 2, 0, 3, 0};
  const std::vector<double> rising = {1, 2, 3, 4, 5, 6, 7};
  const std::vector<double> falling(rising.rbegin(), rising.rend());
  const FoundPeaks up = FindPeak(rising, abs, kQuarter);
  const FoundPeaks down = FindPeak(falling, abs, kQuarter);
  EXPECT_EQ(up.PeakIndex, (Indices{1, 3, 5}));
  EXPECT_EQ(down.PeakIndex, (Indices{5, 3, 1}));
  ASSERT_GE(up.ValleyIndex.size(), 2u);
  EXPECT_EQ(down.ValleyIndex, Indices(up.ValleyIndex.rbegin(), up.ValleyIndex.rend()));
}

TEST(FindPeak, AFullSpectrumHasItsLastCellBehindItToo) {
  // Falls slowly to 0.5 at the last point: only the cell behind lies more than the peak value below the peak.
  std::vector<double> abs(10001, 0.5);
  for (std::size_t i = 0; i < abs.size(); ++i) abs[i] += 1e-6 * static_cast<double>(abs.size() - i);
  abs[1] = abs[0] = 0.0;
  EXPECT_EQ(FindPeak(abs, {0.4, true, false}).PeakIndex, Indices{2});
}

}  // namespace
}  // namespace spectrane
