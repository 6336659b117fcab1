#pragma once

#include <QLine>
#include <QPolygon>
#include <QRect>

#include <vector>

#include "output/curveview.h"

namespace spectrane {

/// The dots of a device: values to whole dots from the surface's corner.
class CurveDots {
 public:
  CurveDots(const CurveGeometry& geometry, double dotsPerTwip);

  double DotsPerTwip() const { return dotsPerTwip_; }
  /// Only for values inside the scale.
  int X(double value) const {
    const auto twips = static_cast<int>((value - start_) * width_ / length_ + left_);
    return static_cast<int>(twips * dotsPerTwip_ + 0.5);
  }
  int Y(double value) const {
    if (value >= high_) return top_;
    if (value <= low_) return bottom_;
    return static_cast<int>(((high_ - value) * height_ + topTwips_) * dotsPerTwip_ + 0.5);
  }
  bool Holds(double x) const { return x >= start_ && x <= end_; }
  /// The nearest dot.
  int At(double twips) const;

 private:
  double dotsPerTwip_;
  double start_, end_, length_, width_, left_;
  double low_, high_, height_, topTwips_;
  int top_, bottom_;
};

/// A curve by columns of dots. The runs and the crossings together cover the dots of the segments drawn one
/// by one with a line of one dot.
struct CurveTrace {
  /// One dot wide, from the highest to the lowest of a stretch of the curve that stays in its column.
  std::vector<QRect> Runs;
  /// From column to column, where the runs do not cover it.
  std::vector<QLine> Crossings;
};

/// A segment is drawn when both of its points have a value and lie inside the scale, ends included. Begins
/// with the segment that ends in the point `first`.
CurveTrace TraceOf(const CurveLine& line, const CurveDots& dots, std::size_t first = 1);

/// The same as unbroken lines, for devices that draw better ones: of each column the first, the highest, the
/// lowest and the last point.
std::vector<QPolygon> ChainsOf(const CurveLine& line, const CurveDots& dots, std::size_t first = 1);

}  // namespace spectrane
