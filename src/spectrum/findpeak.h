#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace spectrane {

/// Indices of the peaks and valleys of a spectrum.
struct FoundPeaks {
  std::vector<std::int32_t> PeakIndex;
  std::vector<std::int32_t> ValleyIndex;
};

/// What a search looks for.
struct PeakSearch {
  /// Peak value [Abs]: by how much, at least, a peak stands out on both sides; equal to it is not enough.
  double PeakHeight = 0.001;
  bool Peaks = true;
  bool Valleys = true;
};

/// Peaks and valleys of `abs`, the absorbance of the points in their order. A peak is higher than both its
/// neighbours, and on each side the curve falls by more than the peak value before it reaches the peak's
/// height again or climbs by more than 0.01 from one point to the next. Walking left ends at the second
/// point; walking right takes one more cell behind the last point, which counts as 0. A valley is the same
/// upside down. The time grows with the number of points alone. Both lists go by rising index.
FoundPeaks FindPeak(std::span<const double> abs, const PeakSearch& search);
/// The same, listed by rising `x`: the wavelength or time of the points, which rises or falls with the index.
FoundPeaks FindPeak(std::span<const double> x, std::span<const double> abs, const PeakSearch& search);

}  // namespace spectrane
