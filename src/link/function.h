#pragma once

#include <cstdint>
#include <string>

namespace spectrane {

/// Transmittance [%T] of energy `E` [counts] against the reference `R` (100 %T) and the dark energy `D` (0
/// %T), held inside -1 to 200. A reference that is not above the dark energy gives -1.
double TransFromEnergy(std::int32_t E, std::int32_t R, std::int32_t D);

/// Absorbance -log10(T / 100) of a transmittance [%T], held inside -0.5 to 3. No light (T at or below 0)
/// gives 3.
double AbsFromTrans(double T);

/// Transmittance [%T] of an absorbance: 100 * 10^-A, without limits.
double TransFromAbs(double A);

/// Absorbance of energy `E` against reference `R` and dark energy `D`; 3 when the reference is not above the
/// dark.
double AbsFromEnergy(std::int32_t E, std::int32_t R, std::int32_t D);

/// Text of a result of any size: fewer decimals the larger it is, a leading blank on values above 9.9995.
std::string FormatValue(double V);

}  // namespace spectrane
