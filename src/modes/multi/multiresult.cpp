#include "modes/multi/multiresult.h"

#include <algorithm>
#include <cmath>

namespace spectrane {

std::int32_t MultiWavelengths(const MultiOption& option) {
  return std::clamp(option.WorkWLNo, 0, kMostMultiWavelengths);
}

bool IsMultiTableGood(const MultiOption& option) {
  if (option.WorkWLNo < 1 || option.WorkWLNo > kMostMultiWavelengths) return false;
  for (std::size_t k = 0; k < static_cast<std::size_t>(option.WorkWLNo); ++k) {
    const double wavelength = option.WorkWaveLength[k];
    if (!std::isfinite(wavelength) || wavelength <= 0 || !std::isfinite(option.Parameter[k])) return false;
  }
  return true;
}

double MultiResult(const MultiOption& option, const MultiRecord& record) {
  double result = 0;
  for (std::size_t k = 0; k < static_cast<std::size_t>(MultiWavelengths(option)); ++k) {
    result += option.Parameter[k] * record.Abs[k];
  }
  return result;
}

std::string MultiPattern(double value, const DisplayFormats& formats) {
  if (value > 999.95) return "0.0";
  if (value > 99.995) return "0.00";
  if (value > 9.9995) return "0.000";
  return formats.AbsFormat;
}

}  // namespace spectrane
