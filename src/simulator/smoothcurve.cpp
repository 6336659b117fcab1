#include "simulator/smoothcurve.h"

#include <algorithm>

namespace spectrane {

SmoothCurve::SmoothCurve(std::vector<Point> points)
    : points_(std::move(points)), slopes_(points_.size(), 0.0) {
  for (std::size_t i = 1; i + 1 < points_.size(); ++i) {
    const double before = points_[i].first - points_[i - 1].first;
    const double after = points_[i + 1].first - points_[i].first;
    const double rise = (points_[i].second - points_[i - 1].second) / before;
    const double nextRise = (points_[i + 1].second - points_[i].second) / after;
    if (rise * nextRise <= 0.0) continue;
    // Weighted harmonic mean: never steeper than three times either neighbour.
    const double w1 = 2.0 * after + before;
    const double w2 = after + 2.0 * before;
    slopes_[i] = (w1 + w2) / (w1 / rise + w2 / nextRise);
  }
}

double SmoothCurve::At(double x) const {
  if (x <= points_.front().first) return points_.front().second;
  if (x >= points_.back().first) return points_.back().second;
  const auto above = std::upper_bound(points_.begin(), points_.end(), x,
                                      [](double value, const Point& point) { return value < point.first; });
  const auto i = static_cast<std::size_t>(above - points_.begin()) - 1;
  const double width = points_[i + 1].first - points_[i].first;
  const double t = (x - points_[i].first) / width;
  const double u = 1.0 - t;
  return (1.0 + 2.0 * t) * u * u * points_[i].second + t * u * u * width * slopes_[i] +
         t * t * (3.0 - 2.0 * t) * points_[i + 1].second - t * t * u * width * slopes_[i + 1];
}

}  // namespace spectrane
