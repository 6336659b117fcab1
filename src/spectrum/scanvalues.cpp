#include "spectrum/scanvalues.h"

#include <cstddef>

#include "link/function.h"

namespace spectrane {
namespace {

/// The weighted means of `raw`, and how many leading points have one.
std::size_t Smoothed(const std::vector<double>& raw, std::vector<double>& means) {
  const std::size_t n = raw.size();
  means.assign(n, 0.0);
  const auto T = [&raw](std::size_t i) { return raw[i]; };
  if (n < 3) return 0;
  means[0] = (6 * T(0) + 3 * T(1) + 2 * T(2)) / 11;
  if (n < 4) return 1;
  means[1] = (3 * T(0) + 6 * T(1) + 3 * T(2) + 2 * T(3)) / 14;
  for (std::size_t i = 4; i < n; ++i) {
    means[i - 2] = (2 * T(i - 4) + 3 * T(i - 3) + 6 * T(i - 2) + 3 * T(i - 1) + 2 * T(i)) / 16;
  }
  means[n - 2] = (2 * T(n - 4) + 3 * T(n - 3) + 6 * T(n - 2) + 3 * T(n - 1)) / 14;
  means[n - 1] = (2 * T(n - 3) + 3 * T(n - 2) + 6 * T(n - 1)) / 11;
  return n;
}

}  // namespace

ScanValues DeriveScanValues(std::span<const WLSRecord> points, bool smooth) {
  ScanValues values;
  values.Trans.reserve(points.size());
  for (const WLSRecord& point : points) {
    values.Trans.push_back(TransFromEnergy(point.SampleEnergy, point.ReferenceEnergy, point.DarkEnergy));
  }
  std::size_t count = points.size();
  if (smooth) {
    std::vector<double> means;
    count = Smoothed(values.Trans, means);
    values.Trans = std::move(means);
  }
  values.Abs.assign(points.size(), 0.0);
  for (std::size_t i = 0; i < count; ++i) values.Abs[i] = AbsFromTrans(values.Trans[i]);
  return values;
}

}  // namespace spectrane
