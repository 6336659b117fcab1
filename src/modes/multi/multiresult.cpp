#include "modes/multi/multiresult.h"

#include <algorithm>

namespace spectrane {

std::int32_t MultiWavelengths(const MultiOption& option) {
  return std::clamp(option.WorkWLNo, 0, kMostMultiWavelengths);
}

double MultiResult(const MultiOption& option, const MultiRecord& record) {
  double result = 0;
  for (std::size_t k = 0; k < static_cast<std::size_t>(MultiWavelengths(option)); ++k) {
    result += option.Parameter[k] * record.Abs[k];
  }
  return result;
}

}  // namespace spectrane
