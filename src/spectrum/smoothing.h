#pragma once

#include "spectrum/spectrum.h"

namespace spectrane {

/// Points that smoothing takes at least.
inline constexpr std::size_t kFewestSmoothedPoints = 4;

/// The absorbance smoothed by a quadratic least-squares filter over five neighbouring points (weights -3, 12,
/// 17, 12, -3 over 35; A. Savitzky and M. J. E. Golay, Anal. Chem. 36 (1964) 1627), taken as equally spaced.
/// At both ends the weights of the points that do not exist are left out of the divisor as well. The
/// transmittance follows from the smoothed absorbance. Time grows with the number of points.
ProcessedSpectrum SmoothSpectrum(const Spectrum& source);

}  // namespace spectrane
