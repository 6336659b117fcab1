#pragma once

#include <span>
#include <vector>

#include "files/wlsfile.h"

namespace spectrane {

/// Transmittance [%T] and absorbance of the points of a measured spectrum.
struct ScanValues {
  std::vector<double> Trans;
  std::vector<double> Abs;
};

/// The values that follow from the energies of each point. With `smooth` the transmittance is the mean of
/// five neighbours, weighted 2, 3, 6, 3, 2, and the absorbance follows from it; at both ends the neighbours
/// that exist share the weights. A point needs two that follow it (and the second one two as well), or, from
/// four points on, is one of the last two: of three points only the first gets a value, of fewer none. Points
/// without a value have 0 in both.
ScanValues DeriveScanValues(std::span<const WLSRecord> points, bool smooth);

}  // namespace spectrane
