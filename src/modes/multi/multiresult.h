#pragma once

#include <cstdint>
#include <string>

#include "base/displayformats.h"
#include "files/multifile.h"

namespace spectrane {

/// Most wavelengths of a multi wavelength test; the arrays of its files have one entry more.
inline constexpr std::int32_t kMostMultiWavelengths = 15;

/// The number of wavelengths that a test of these options has, from 0 to 15 whatever a file states.
std::int32_t MultiWavelengths(const MultiOption& option);

/// The table of these options can be used: 1 to 15 wavelengths, each above 0, with finite coefficients.
bool IsMultiTableGood(const MultiOption& option);

/// Result of a sample: the sum over the wavelengths in use of parameter times absorbance.
double MultiResult(const MultiOption& option, const MultiRecord& record);

/// Number pattern of an absorbance or a result: fewer decimals the larger it is, those of the absorbance
/// below.
std::string MultiPattern(double value, const DisplayFormats& formats);

}  // namespace spectrane
