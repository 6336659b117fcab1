#pragma once

#include "spectrum/spectrum.h"

namespace spectrane {

/// Points that a derivative takes at least.
inline constexpr std::size_t kFewestDerivedPoints = 2;

/// The first derivative of the absorbance by the wavelength [Abs/nm]: the difference to the following point
/// over the difference of their wavelengths, at the first point of the pair; the last point repeats the last
/// difference. The transmittance is converted from the result as from an absorbance. Time grows with the
/// number of points.
ProcessedSpectrum DeriveSpectrum(const Spectrum& source);

}  // namespace spectrane
