#pragma once

#include <QColor>

#include <cstdint>

namespace spectrane {

/// Colours as config.ini has them: red + 256 green + 65536 blue.
inline QColor ColourOf(std::int32_t number) {
  return QColor(number & 0xFF, (number >> 8) & 0xFF, (number >> 16) & 0xFF);
}
inline std::int32_t NumberOf(const QColor& colour) {
  return colour.red() + 256 * colour.green() + 65536 * colour.blue();
}

}  // namespace spectrane
