#pragma once

#include <QColor>

#include <cstdint>

#include "base/colournumber.h"
#include "output/curveview.h"

namespace spectrane {

/// Colours as config.ini has them: red + 256 green + 65536 blue.
inline QColor ColourOf(std::int32_t number) {
  return QColor(number & 0xFF, (number >> 8) & 0xFF, (number >> 16) & 0xFF);
}
inline std::int32_t NumberOf(const QColor& colour) {
  return ColourNumber(colour.red(), colour.green(), colour.blue());
}
/// The colours of a curve window, but for the curve's own, on white paper.
template <typename Settings>
CurveColours ColoursOf(const Settings& settings) {
  return {Qt::white, ColourOf(settings.ScaleColor), ColourOf(settings.MarkColor),
          ColourOf(settings.PeakColor), ColourOf(settings.ValleyColor)};
}

}  // namespace spectrane
