#pragma once

#include <QPointF>
#include <QRectF>

#include <string>
#include <vector>

#include "modes/quantitation/curveaxes.h"

namespace spectrane {

/// Twips in a pixel of a screen with 96 dots an inch; 1440 twips are an inch.
inline constexpr double kScreenTwips = 15.0;

/// Places on the surface of a quantitation's curve: values to places and back. The surface has the units of
/// its painter; margins and type keep their size in twips however large the surface is.
class QuantitationPlot {
 public:
  /// `twipsPerUnit` is the size of a unit of the surface; anything but a positive number counts as
  /// kScreenTwips.
  QuantitationPlot(const QRectF& surface, double twipsPerUnit, const CurveAxes& axes);

  /// There are axes, and room to draw between the margins.
  bool Drawable() const;
  const CurveAxes& Axes() const { return axes_; }
  double TwipsPerUnit() const { return twipsPerUnit_; }
  /// Width and height of the surface [twips].
  QSizeF Size() const { return size_; }
  /// Between the axes [twips from the surface's corner]. Its size is never negative.
  QRectF Area() const { return area_; }

  /// The place of a value [twips from the surface's corner], held inside the area.
  QPointF TwipsAt(const CurvePoint& value) const;
  /// The same in units of the surface.
  QPointF At(const CurvePoint& value) const;
  /// The area in units of the surface.
  QRectF AreaOnSurface() const;
  /// The value at a place of the surface; outside the area the scales go on. Only for a drawable plot.
  CurvePoint ValueAt(const QPointF& place) const;

 private:
  QPointF origin_;
  double twipsPerUnit_;
  QSizeF size_;
  QRectF area_;
  CurveAxes axes_;
};

/// A division of an axis. Those without a number are the small ones between.
struct AxisTick {
  double Value = 0;
  /// With the decimals that the steps need; 0 is "0".
  std::string Number;
  bool operator==(const AxisTick&) const = default;
};

/// The divisions of an axis from 0 to `end`, numbered at the steps that make it up, with the halves between
/// when they are only two; one step alone is divided into tenths. None for an end that no axis has.
std::vector<AxisTick> AxisTicks(double end);

}  // namespace spectrane
