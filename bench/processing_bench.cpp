// What is calculated from spectra of 10001 points: smoothing, derivative, and two spectra combined on the
// same and on different grids.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>

#include "link/function.h"
#include "spectrum/calculation.h"
#include "spectrum/derivative.h"
#include "spectrum/smoothing.h"

namespace spectrane {
namespace {

/// Bands on a slope, from 1100 nm downward.
Spectrum Bands(double step) {
  Spectrum spectrum;
  for (int i = 0; i < 10001; ++i) {
    const double wavelength = 1100 - step * i;
    const double abs = 0.7 + 0.3 * std::sin(wavelength / 7) + 0.0001 * wavelength;
    spectrum.Add(wavelength, TransFromAbs(abs), abs);
  }
  return spectrum;
}

const Spectrum& Whole() {
  static const Spectrum spectrum = Bands(0.09);
  return spectrum;
}

void SmoothingOf10001(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(SmoothSpectrum(Whole()));
}
BENCHMARK(SmoothingOf10001)->Unit(benchmark::kMicrosecond);

void DerivativeOf10001(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(DeriveSpectrum(Whole()));
}
BENCHMARK(DerivativeOf10001)->Unit(benchmark::kMicrosecond);

void Combine(benchmark::State& state, double otherStep, bool onTrans) {
  const Spectrum other = Bands(otherStep);
  for (auto _ : state) {
    benchmark::DoNotOptimize(CombineSpectra(Whole(), other, SpectrumOperation::Divide, onTrans));
  }
}
BENCHMARK_CAPTURE(Combine, Abs, 0.09, false)->Name("QuotientOfAbs")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Combine, Trans, 0.09, true)->Name("QuotientOfTrans")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Combine, Between, 0.0901, false)
    ->Name("QuotientBetweenPoints")
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace spectrane
