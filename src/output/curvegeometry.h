#pragma once

#include <QPointF>
#include <QRectF>

#include <vector>

#include "output/curvescale.h"

namespace spectrane {

/// Twips between the edges of a surface and its plot.
struct CurveMargins {
  double Left = 1200;
  double Right = 500;
  double Top = 300;
  double Bottom = 700;
};

/// Where things stand on the surface of a curve: values to places and back, in twips from the surface's
/// corner. Margins keep their size however large the surface is.
class CurveGeometry {
 public:
  /// `size` is that of the surface [twips].
  CurveGeometry(const QSizeF& size, const CurveMargins& margins, const CurveScale& scale);

  /// The margins alone take up the surface: there is no plot.
  bool TooSmall() const { return tooSmall_; }
  /// There is a plot with a length on each side, and a scale.
  bool Drawable() const;
  const QSizeF& Size() const { return size_; }
  const CurveScale& Scale() const { return scale_; }
  /// The plot. Its size is never negative.
  const QRectF& Area() const { return area_; }
  bool Contains(const QPointF& place) const;

  /// A whole number of twips; for values inside the scale only.
  double XAt(double value) const;
  /// Values at or beyond an end of the scale stand on that edge.
  double YAt(double value) const;
  /// The inverse of the two; outside the plot the scale goes on. Only when Drawable().
  double ValueAtX(double x) const;
  double ValueAtY(double y) const;

 private:
  QSizeF size_;
  CurveScale scale_;
  QRectF area_;
  bool tooSmall_;
};

/// Finds room for labels, first come first served.
class LabelPlaces {
 public:
  /// Labels stand inside `bounds` only.
  explicit LabelPlaces(const QRectF& bounds) : bounds_(bounds) {}
  /// Takes the place unless it reaches beyond the bounds or touches one that is taken.
  bool Take(const QRectF& place);
  bool IsFree(const QRectF& place) const;

 private:
  QRectF bounds_;
  std::vector<QRectF> taken_;
};

}  // namespace spectrane
