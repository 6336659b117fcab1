#pragma once

#include <string>

namespace spectrane {

/// The order of the machine's devices: digits at the end compare as a number, "ttyS2" before "ttyS10".
bool PortNameBefore(const std::string& a, const std::string& b);

}  // namespace spectrane
