// Fits of twenty standards by each method, and the concentration of one reading. A refit runs after every
// cell of the standards that was edited: a few microseconds are nothing an operator could feel.

#include <benchmark/benchmark.h>

#include "modes/quantitation/curvefit.h"
#include "modes/quantitation/quantitationdocument.h"

namespace spectrane {
namespace {

QuaOption TwentyStandards(std::int64_t method) {
  QuaOption qua;
  qua.FittingMethod = static_cast<std::int32_t>(method);
  qua.SampleNumber = kMostStandards;
  qua.WaveLengthNumber = 1;
  qua.CurveItem = 1;
  for (std::size_t i = 0; i < static_cast<std::size_t>(kMostStandards); ++i) {
    const double abs = 0.1 * static_cast<double>(i + 1);
    qua.StandardAbs[i][0] = abs;
    qua.StandardConc[i] = 69.1 * abs - 0.8 * abs * abs;
    qua.StandardAbsSet[i] = qua.StandardConcSet[i] = true;
  }
  return qua;
}

void CurveFitOfTwenty(benchmark::State& state) {
  QuaOption qua = TwentyStandards(state.range(0));
  for (auto _ : state) {
    if (CreateCurve(qua) != FitOutcome::Accepted) state.SkipWithError("rejected");
    benchmark::DoNotOptimize(qua.CurveK);
  }
}

void CurveRefitOfDocument(benchmark::State& state) {
  QuantitationDocument document;
  QuantitationSettings settings;
  settings.SampleNumber = kMostStandards;
  settings.FittingMethod = static_cast<std::int32_t>(state.range(0));
  document.Configure(settings);
  for (std::int32_t i = 0; i < kMostStandards; ++i) {
    document.SetStandardReadings(i, 0.1 * (i + 1));
    document.SetStandardConc(i, 6.9 * (i + 1));
  }
  for (auto _ : state) {
    if (document.Refit() != FitOutcome::Accepted) state.SkipWithError("rejected");
  }
}

void ConcentrationOfReading(benchmark::State& state) {
  QuaOption qua = TwentyStandards(state.range(0));
  CreateCurve(qua);
  double abs = 0.5;
  for (auto _ : state) {
    benchmark::DoNotOptimize(abs);
    benchmark::DoNotOptimize(CalcConc(qua, abs));
  }
}

BENCHMARK(CurveFitOfTwenty)->DenseRange(0, 3);
BENCHMARK(CurveRefitOfDocument)->DenseRange(0, 3);
BENCHMARK(ConcentrationOfReading)->DenseRange(0, 3);

}  // namespace
}  // namespace spectrane
