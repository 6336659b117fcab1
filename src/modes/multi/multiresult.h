#pragma once

#include <cstdint>

#include "files/multifile.h"

namespace spectrane {

/// Most wavelengths of a multi wavelength test; the arrays of its files have one entry more.
inline constexpr std::int32_t kMostMultiWavelengths = 15;

/// The number of wavelengths that a test of these options has, from 0 to 15 whatever a file states.
std::int32_t MultiWavelengths(const MultiOption& option);

/// Result of a sample: the sum over the wavelengths in use of parameter times absorbance.
double MultiResult(const MultiOption& option, const MultiRecord& record);

}  // namespace spectrane
