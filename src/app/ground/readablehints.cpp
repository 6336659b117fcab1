#include "app/ground/readablehints.h"

#include <algorithm>
#include <cmath>

namespace spectrane {
namespace {

/// Between a text of usual size and its ground, by the guidelines for readable texts.
constexpr double kEnough = 4.5;
constexpr float kStep = 0.05F;

/// Relative luminance, 0 to 1.
double LuminanceOf(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

QColor Laid(const QColor& text, const QColor& ground) {
  const float share = text.alphaF();
  const auto mix = [share](float over, float under) { return over * share + under * (1 - share); };
  return QColor::fromRgbF(mix(text.redF(), ground.redF()), mix(text.greenF(), ground.greenF()),
                          mix(text.blueF(), ground.blueF()));
}

double ContrastOf(const QColor& text, const QColor& ground) {
  const auto [dark, light] = std::minmax({LuminanceOf(Laid(text, ground)), LuminanceOf(ground)});
  return (light + 0.05) / (dark + 0.05);
}

}  // namespace

QPalette WithReadableHints(QPalette palette) {
  for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
    const auto isReadable = [&](const QColor& colour) {
      return ContrastOf(colour, palette.color(group, QPalette::Window)) >= kEnough &&
             ContrastOf(colour, palette.color(group, QPalette::Base)) >= kEnough;
    };
    if (isReadable(palette.color(group, QPalette::PlaceholderText))) continue;
    QColor hint = palette.color(group, QPalette::WindowText);
    for (float share = 0.5F; share < 1.0F; share += kStep) {
      hint.setAlphaF(share);
      if (isReadable(hint)) break;
    }
    palette.setColor(group, QPalette::PlaceholderText, hint);
  }
  return palette;
}

}  // namespace spectrane
