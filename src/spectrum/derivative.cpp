#include "spectrum/derivative.h"

#include "link/function.h"

namespace spectrane {

ProcessedSpectrum DeriveSpectrum(const Spectrum& source) {
  if (source.Empty()) return {{}, NoResult::NoSource};
  const std::size_t n = source.Size();
  if (n < kFewestDerivedPoints) return {{}, NoResult::TooFewPoints};

  ProcessedSpectrum derived;
  Spectrum& result = derived.Result;
  result.Resize(n);
  result.WL = source.WL;
  for (std::size_t i = 0; i + 1 < n; ++i) {
    if (source.WL[i] == source.WL[i + 1]) return {{}, NoResult::EqualWavelengths};
    result.Abs[i] = (source.Abs[i] - source.Abs[i + 1]) / (source.WL[i] - source.WL[i + 1]);
    result.Trans[i] = TransFromAbs(result.Abs[i]);
  }
  result.Abs[n - 1] = result.Abs[n - 2];
  result.Trans[n - 1] = result.Trans[n - 2];
  return derived;
}

}  // namespace spectrane
