#include "acquire/scangrid.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace spectrane {
namespace {

/// Distances of points in the order of their index [tenths of a nanometre].
constexpr std::array<std::int32_t, 6> kSteps = {1, 2, 5, 10, 20, 50};
/// Beyond every instrument [nm].
constexpr double kFarthest = 1e6;

}  // namespace

ScanGrid ScanGrid::Between(std::int32_t oneTenths, std::int32_t otherTenths, std::int32_t stepTenths) {
  return {std::min(oneTenths, otherTenths), std::max(oneTenths, otherTenths), std::max(stepTenths, 1)};
}

std::optional<std::int32_t> WholeTenths(double nm) {
  if (!(std::abs(nm) <= kFarthest)) return std::nullopt;
  const auto tenths = static_cast<std::int32_t>(std::lround(nm * 10.0));
  if (tenths / 10.0 != nm) return std::nullopt;
  return tenths;
}

std::optional<std::int32_t> IntervalIndex(std::int32_t stepTenths) {
  const auto* const found = std::find(kSteps.begin(), kSteps.end(), stepTenths);
  if (found == kSteps.end()) return std::nullopt;
  return static_cast<std::int32_t>(found - kSteps.begin());
}

}  // namespace spectrane
