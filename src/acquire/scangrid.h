#pragma once

#include <cstdint>
#include <optional>

namespace spectrane {

/// The wavelengths of a scan, rising, in whole tenths of a nanometre, which is the step of the drive.
struct ScanGrid {
  std::int32_t FirstTenths = 0;
  std::int32_t LastTenths = 0;
  std::int32_t StepTenths = 10;

  /// The ends in either order. The last point is the last one that does not lie beyond the upper end.
  static ScanGrid Between(std::int32_t oneTenths, std::int32_t otherTenths, std::int32_t stepTenths);

  std::int64_t Count() const { return (std::int64_t{LastTenths} - FirstTenths) / StepTenths + 1; }
  /// [nm]
  double At(std::int32_t index) const {
    return static_cast<double>(FirstTenths + std::int64_t{index} * StepTenths) / 10.0;
  }
  double First() const { return FirstTenths / 10.0; }
  /// The end that was asked for, which need not be a point.
  double Last() const { return LastTenths / 10.0; }
  double Step() const { return StepTenths / 10.0; }
  /// Every point is a whole nanometre.
  bool IsWhole() const { return FirstTenths % 10 == 0 && StepTenths % 10 == 0; }
};

/// A wavelength or step [nm] in tenths; nothing when it is none, or no wavelength at all.
std::optional<std::int32_t> WholeTenths(double nm);

/// Index by which files know a distance of points [tenths of a nanometre]; nothing for one that none of them
/// has.
std::optional<std::int32_t> IntervalIndex(std::int32_t stepTenths);

}  // namespace spectrane
