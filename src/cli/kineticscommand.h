#pragma once

#include <cstdint>

#include "cli/acquisitiondesk.h"

namespace spectrane {

struct KineticsOrder : AcquisitionOrder {
  /// [nm]
  double Wavelength = 546.0;
  /// Index of the interval in the table of the time scan.
  std::int32_t Interval = 0;
  std::int32_t Points = 1;
};

/// A time scan into a .tis file, or one of each cell.
void MeasureKinetics(const KineticsOrder& order, BatchContext& run);

}  // namespace spectrane
