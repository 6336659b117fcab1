#pragma once

#include <limits>

namespace spectrane {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace spectrane
