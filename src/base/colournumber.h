#pragma once

#include <cstdint>

namespace spectrane {

/// Red + 256 green + 65536 blue, as config.ini has colours.
constexpr std::int32_t ColourNumber(int red, int green, int blue) {
  return red + 256 * green + 65536 * blue;
}
inline constexpr double kHighestColour = 0xFFFFFF;

}  // namespace spectrane
