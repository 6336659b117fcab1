#include "output/curvegeometry.h"

#include <algorithm>
#include <cmath>

namespace spectrane {
namespace {

double LengthOrZero(double length) {
  return std::isfinite(length) ? std::max(length, 0.0) : 0.0;
}

}  // namespace

CurveGeometry::CurveGeometry(const QSizeF& size, const CurveMargins& margins, const CurveScale& scale)
    : size_(LengthOrZero(size.width()), LengthOrZero(size.height())),
      scale_(scale),
      area_(margins.Left, margins.Top, std::max(size_.width() - margins.Left - margins.Right, 0.0),
            std::max(size_.height() - margins.Top - margins.Bottom, 0.0)),
      tooSmall_(size_.width() < margins.Left + margins.Right ||
                size_.height() < margins.Top + margins.Bottom) {}

bool CurveGeometry::Drawable() const {
  return area_.width() > 0 && area_.height() > 0 && scale_.Drawable();
}

bool CurveGeometry::Contains(const QPointF& place) const {
  return !tooSmall_ && place.x() >= area_.left() && place.x() <= area_.right() && place.y() >= area_.top() &&
         place.y() <= area_.bottom();
}

double CurveGeometry::XAt(double value) const {
  return std::trunc(area_.width() * (value - scale_.X.Low) / scale_.X.Length() + area_.left());
}

double CurveGeometry::YAt(double value) const {
  if (value >= scale_.Y.High) return area_.top();
  if (value <= scale_.Y.Low) return area_.bottom();
  return (scale_.Y.High - value) * area_.height() / scale_.Y.Length() + area_.top();
}

double CurveGeometry::ValueAtX(double x) const {
  return (x - area_.left()) * scale_.X.Length() / area_.width() + scale_.X.Low;
}

double CurveGeometry::ValueAtY(double y) const {
  return scale_.Y.High - (y - area_.top()) * scale_.Y.Length() / area_.height();
}

bool LabelPlaces::IsFree(const QRectF& place) const {
  return bounds_.contains(place) && std::none_of(taken_.begin(), taken_.end(), [&place](const QRectF& taken) {
           return taken.intersects(place);
         });
}

bool LabelPlaces::Take(const QRectF& place) {
  if (!IsFree(place)) return false;
  taken_.push_back(place);
  return true;
}

}  // namespace spectrane
