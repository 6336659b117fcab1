#include "output/quantitationplot.h"

#include <algorithm>
#include <cmath>

#include "base/numbers.h"

namespace spectrane {
namespace {

// Margins around the area [twips].
constexpr double kLeft = 1200;
constexpr double kRight = 300;
constexpr double kTop = 300;
constexpr double kBottom = 1000;
// Below this an area shows nothing that could be read [twips].
constexpr double kSmallestWidth = 900;
constexpr double kSmallestHeight = 600;

// No axis is longer; its ten steps of 1000 are the last.
constexpr double kLongestAxis = 10000;

double PositiveOr(double value, double otherwise) {
  return std::isfinite(value) && value > 0 ? value : otherwise;
}

/// How far along the axis, 0 to 1.
double PartOf(double value, double end) {
  const double part = value / end;
  return std::isnan(part) ? 0 : std::clamp(part, 0.0, 1.0);
}

}  // namespace

QuantitationPlot::QuantitationPlot(const QRectF& surface, double twipsPerUnit, const CurveAxes& axes)
    : origin_(surface.topLeft()),
      twipsPerUnit_(PositiveOr(twipsPerUnit, kScreenTwips)),
      size_(std::max(surface.width(), 0.0) * twipsPerUnit_, std::max(surface.height(), 0.0) * twipsPerUnit_),
      area_(kLeft, kTop, std::max(size_.width() - kLeft - kRight, 0.0),
            std::max(size_.height() - kTop - kBottom, 0.0)),
      axes_(axes) {}

bool QuantitationPlot::Drawable() const {
  return axes_.Drawable() && area_.width() >= kSmallestWidth && area_.height() >= kSmallestHeight;
}

QPointF QuantitationPlot::TwipsAt(const CurvePoint& value) const {
  return {area_.left() + PartOf(value.Abs, axes_.AbsTop) * area_.width(),
          area_.bottom() - PartOf(value.Conc, axes_.ConcTop) * area_.height()};
}

QPointF QuantitationPlot::At(const CurvePoint& value) const {
  return origin_ + TwipsAt(value) / twipsPerUnit_;
}

QRectF QuantitationPlot::AreaOnSurface() const {
  return {origin_ + area_.topLeft() / twipsPerUnit_, area_.size() / twipsPerUnit_};
}

CurvePoint QuantitationPlot::ValueAt(const QPointF& place) const {
  const QPointF twips = (place - origin_) * twipsPerUnit_;
  return {(twips.x() - area_.left()) / area_.width() * axes_.AbsTop,
          (area_.bottom() - twips.y()) / area_.height() * axes_.ConcTop};
}

std::vector<AxisTick> AxisTicks(double end) {
  std::vector<AxisTick> ticks;
  if (!(end > 0 && end <= kLongestAxis)) return ticks;
  double step = 0.01;
  for (const double longer : {0.1, 1.0, 10.0, 100.0, 1000.0}) {
    // An axis of one step is divided by the next smaller one.
    if (end < 1.5 * longer) break;
    step = longer;
  }
  // Three numbers are few: an axis of two steps has the halves too.
  if (end < 2.5 * step) step /= 2;
  const char* const pattern = step < 0.1 ? "0.00" : step < 1 ? "0.0" : "0";
  const int steps = static_cast<int>(std::lround(end / step));
  const int parts = steps <= 5 ? 5 : 2;
  for (int i = 0; i <= steps * parts; ++i) {
    const int wholeSteps = i / parts;
    const bool numbered = i == wholeSteps * parts;
    const double value = numbered ? wholeSteps * step : i * step / parts;
    ticks.push_back({value, numbered ? Format(value, i == 0 ? "0" : pattern) : std::string()});
  }
  return ticks;
}

}  // namespace spectrane
