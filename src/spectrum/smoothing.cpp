#include "spectrum/smoothing.h"

#include "link/function.h"

namespace spectrane {

ProcessedSpectrum SmoothSpectrum(const Spectrum& source) {
  if (source.Empty()) return {{}, NoResult::NoSource};
  const std::size_t n = source.Size();
  if (n < kFewestSmoothedPoints) return {{}, NoResult::TooFewPoints};

  const std::vector<double>& y = source.Abs;
  ProcessedSpectrum smoothed;
  Spectrum& result = smoothed.Result;
  result.Resize(n);
  result.WL = source.WL;
  result.Abs[0] = (17 * y[0] + 12 * y[1] - 3 * y[2]) / 26;
  result.Abs[1] = (12 * y[0] + 17 * y[1] + 12 * y[2] - 3 * y[3]) / 38;
  for (std::size_t i = 2; i + 2 < n; ++i) {
    result.Abs[i] = (-3 * y[i - 2] + 12 * y[i - 1] + 17 * y[i] + 12 * y[i + 1] - 3 * y[i + 2]) / 35;
  }
  result.Abs[n - 2] = (-3 * y[n - 4] + 12 * y[n - 3] + 17 * y[n - 2] + 12 * y[n - 1]) / 38;
  result.Abs[n - 1] = (-3 * y[n - 3] + 12 * y[n - 2] + 17 * y[n - 1]) / 26;
  for (std::size_t i = 0; i < n; ++i) result.Trans[i] = TransFromAbs(result.Abs[i]);
  return smoothed;
}

}  // namespace spectrane
