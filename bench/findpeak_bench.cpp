// The peak search of a full spectrum: noise, where almost every second point is a candidate, and the spectra
// on which walking from each candidate to where it ends would take longest, a rising saw and one that falls.

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "spectrum/findpeak.h"

namespace spectrane {
namespace {

constexpr std::size_t kPoints = 10001;

std::vector<double> Noise(double width) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> values(0, width);
  std::vector<double> abs(kPoints);
  for (double& value : abs) value = values(random);
  return abs;
}

std::vector<double> Saw(double slope) {
  std::vector<double> abs(kPoints);
  for (std::size_t i = 0; i < kPoints; ++i) {
    abs[i] = 1.5 + slope * static_cast<double>(i) + (i % 2 == 0 ? 0.0 : 0.004);
  }
  return abs;
}

void Search(benchmark::State& state, const std::vector<double>& abs) {
  for (auto _ : state) benchmark::DoNotOptimize(FindPeak(abs, {}));
}

BENCHMARK_CAPTURE(Search, Noise, Noise(2.0))->Name("FindPeakOfNoise")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Search, FineNoise, Noise(0.009))
    ->Name("FindPeakOfFineNoise")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Search, Rising, Saw(1e-4))->Name("FindPeakOfRisingSaw")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Search, Falling, Saw(-1e-4))->Name("FindPeakOfFallingSaw")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace spectrane
