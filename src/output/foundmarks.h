#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "output/curveview.h"
#include "spectrum/findpeak.h"

namespace spectrane {

/// Which marks carry values, and how these are written; the others carry a number.
struct MarkDetail {
  bool Peaks = false;
  bool Valleys = false;
  std::function<QString(std::int32_t point)> Text;
};

/// The marks of a search on the curve through `x` and `y`, numbered as in the list, where the valleys come
/// behind the peaks.
std::vector<PointMark> FoundMarks(const FoundPeaks& found, std::span<const double> x,
                                  std::span<const double> y, const MarkDetail& detail);

/// The points of a search in the order of that list.
std::vector<std::int32_t> FoundPoints(const FoundPeaks& found);

/// What a search with that peak value [Abs] has come to, for the status bar.
std::string FoundWords(const FoundPeaks& found, double peakHeight);

}  // namespace spectrane
