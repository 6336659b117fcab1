#include "spectrum/findpeak.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace spectrane {
namespace {

/// A rise of one step that ends a walk [Abs]; a smaller one is noise. It does not follow the peak value.
constexpr double kSlopeTolerance = 0.01;

/// What a walk over the points that came before meets, nearest first, once every point that is hidden behind
/// a higher one is left out. Each point is put in and taken out once, so all walks together take linear time.
class Walk {
 public:
  explicit Walk(std::size_t points) { open_.reserve(points); }

  /// No later walk comes further than the next point.
  void Bar() { open_.clear(); }

  /// The lowest point that a walk from a point of this height reaches; infinite when it reaches only points
  /// that are not lower. What is passed can stop no later walk that this point does not stop: it goes.
  double Reach(double height) {
    double lowest = std::numeric_limits<double>::infinity();
    while (!open_.empty() && height > open_.back().Height) {
      lowest = std::min(lowest, open_.back().Lowest);
      open_.pop_back();
    }
    return lowest;
  }

  /// Adds the next point; `reached` is what Reach() gave for its height.
  void Add(double height, double reached) { open_.push_back({height, std::min(height, reached)}); }

 private:
  struct Point {
    double Height;
    /// Lowest from the point before in this list (not included) to this one.
    double Lowest;
  };
  std::vector<Point> open_;
};

/// A step from `from` up to `to` that no walk takes.
bool IsRise(double from, double to) {
  return to - kSlopeTolerance > from;
}

/// For each point, the lowest one that a walk to the left reaches.
void WalkLeft(std::span<const double> abs, std::vector<double>& lowest) {
  Walk walk(abs.size());
  // The first point is met only by a walk from the second, which ends there.
  if (abs.size() > 1) lowest[1] = abs[0];
  for (std::size_t i = 1; i < abs.size(); ++i) {
    const double reached = walk.Reach(abs[i]);
    if (i > 1) lowest[i] = reached;
    if (IsRise(abs[i], abs[i - 1])) walk.Bar();
    walk.Add(abs[i], reached);
  }
}

/// For each point, the lowest one that a walk to the right reaches.
void WalkRight(std::span<const double> abs, std::vector<double>& lowest) {
  Walk walk(abs.size() + 1);
  double next = 0.0;
  walk.Add(next, next);
  for (std::size_t i = abs.size(); i-- > 0;) {
    const double reached = walk.Reach(abs[i]);
    lowest[i] = reached;
    if (IsRise(abs[i], next)) walk.Bar();
    walk.Add(abs[i], reached);
    next = abs[i];
  }
}

std::vector<std::int32_t> Peaks(std::span<const double> abs, double peakHeight) {
  std::vector<std::int32_t> found;
  if (abs.size() < 3) return found;
  std::vector<double> left(abs.size());
  std::vector<double> right(abs.size());
  WalkLeft(abs, left);
  WalkRight(abs, right);
  for (std::size_t i = 1; i + 1 < abs.size(); ++i) {
    if (abs[i] > abs[i - 1] && abs[i] > abs[i + 1] && abs[i] - left[i] > peakHeight &&
        abs[i] - right[i] > peakHeight) {
      found.push_back(static_cast<std::int32_t>(i));
    }
  }
  return found;
}

}  // namespace

FoundPeaks FindPeak(std::span<const double> abs, const PeakSearch& search) {
  FoundPeaks found;
  if (search.Peaks) found.PeakIndex = Peaks(abs, search.PeakHeight);
  if (search.Valleys) {
    // Upside down a valley is a peak, and the signs change no rounding.
    std::vector<double> turned(abs.size());
    std::transform(abs.begin(), abs.end(), turned.begin(), [](double value) { return -value; });
    found.ValleyIndex = Peaks(turned, search.PeakHeight);
  }
  return found;
}

FoundPeaks FindPeak(std::span<const double> x, std::span<const double> abs, const PeakSearch& search) {
  FoundPeaks found = FindPeak(abs, search);
  if (!x.empty() && x.front() > x.back()) {
    std::ranges::reverse(found.PeakIndex);
    std::ranges::reverse(found.ValleyIndex);
  }
  return found;
}

}  // namespace spectrane
