#pragma once

#include "spectrum/spectrum.h"

namespace spectrane {

/// What is done with the values of two spectra; the numbers of the commands.
enum class SpectrumOperation : std::int32_t { Add = 1, Subtract = 2, Multiply = 3, Divide = 4 };

/// The spectrum with its points from the highest wavelength to the lowest, as a calculation takes it: one
/// that rises from its first point to its last is turned round.
Spectrum FromHighestWavelength(Spectrum spectrum);

/// `base` and `other` combined point by point on the points of `base`, where the ranges of both overlap: on
/// the transmittance when `onTrans`, else on the absorbance; the other unit follows from the result (an
/// absorbance inside -0.5 to 3, a transmittance without limits). A quotient by exactly 0 is 0.
///
/// Both run from the highest wavelength to the lowest. The value of `other` at a wavelength is that of an
/// equal wavelength, or lies on the straight line between two neighbours, next to the place where a uniform
/// step would put it; on a grid too far from uniform it is that of the point after that place. No search is
/// made. A point of `base` whose partner would lie outside the record is left out and counted in `Skipped`.
ProcessedSpectrum CombineSpectra(const Spectrum& base, const Spectrum& other, SpectrumOperation operation,
                                 bool onTrans);

}  // namespace spectrane
