#pragma once

#include <cstdint>
#include <vector>

#include "files/quafile.h"

namespace spectrane {

/// A point of the curve's surface: absorbance to the right, concentration upward.
struct CurvePoint {
  double Abs = 0;
  double Conc = 0;
  bool operator==(const CurvePoint&) const = default;
};

/// A standard on the curve's surface.
struct CurveMark {
  /// Row of the table of standards, from 0.
  std::int32_t Row = 0;
  /// As measured and given.
  CurvePoint Standard;
  /// Held inside the axes.
  CurvePoint At;
  bool operator==(const CurveMark&) const = default;
};

/// Upper ends of the axes; the lower ends are 0. An end of 0: there is nothing that could be drawn.
struct CurveAxes {
  double AbsTop = 0;
  double ConcTop = 0;

  bool Drawable() const { return AbsTop > 0 && ConcTop > 0; }
  /// The point, held inside the axes.
  CurvePoint Held(const CurvePoint& point) const;
};

/// The end of an axis that shows `value`: one to ten steps of 0.1, 1, 10, 100 or 1000. 0 above 10000 and for
/// NaN.
double ScaleUp(double value);

/// The axes for the standards in use and the curve; with typed coefficients for absorbances up to 2.
CurveAxes AxesOf(const QuaOption& qua);
/// The standards that have both values; none beside typed coefficients, which do not come from them.
std::vector<CurveMark> CurveMarks(const QuaOption& qua, const CurveAxes& axes);
/// `count` points (at least 2) of the curve from absorbance 0 to the axis end, held inside the axes.
/// Absorbances whose concentration is no number are left out.
std::vector<CurvePoint> CurvePoints(const QuaOption& qua, const CurveAxes& axes, int count);

}  // namespace spectrane
