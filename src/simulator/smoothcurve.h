#pragma once

#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

namespace spectrane {

/// A smooth line through given points that overshoots none of them: a piecewise cubic whose slope is zero at
/// every local extreme (Fritsch and Carlson's monotone interpolation). Outside the points the end values
/// hold.
class SmoothCurve {
 public:
  using Point = std::pair<double, double>;

  /// `points` in ascending order of the first member, at least two.
  explicit SmoothCurve(std::vector<Point> points);
  SmoothCurve(std::initializer_list<Point> points) : SmoothCurve(std::vector<Point>(points)) {}

  double At(double x) const;
  std::span<const Point> Points() const { return points_; }

 private:
  std::vector<Point> points_;
  std::vector<double> slopes_;
};

}  // namespace spectrane
