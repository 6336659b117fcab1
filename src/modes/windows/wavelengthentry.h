#pragma once

#include <cmath>

namespace spectrane {

/// Text number of the words for a wavelength that is outside the range of the instrument.
inline constexpr int kWavelengthRefused = 1006;
/// Width of a field for a wavelength [characters].
inline constexpr int kFieldCharacters = 12;

/// The wavelength as an instrument takes it [nm].
inline double RoundToTenth(double wavelength) {
  return std::round(wavelength * 10.0) / 10.0;
}

}  // namespace spectrane
