#include "output/foundmarks.h"

#include "base/numbers.h"

namespace spectrane {

std::vector<PointMark> FoundMarks(const FoundPeaks& found, std::span<const double> x,
                                  std::span<const double> y, const MarkDetail& detail) {
  std::vector<PointMark> marks;
  marks.reserve(found.PeakIndex.size() + found.ValleyIndex.size());
  const auto add = [&](const std::vector<std::int32_t>& points, bool valley, bool inFull) {
    for (const std::int32_t point : points) {
      const auto i = static_cast<std::size_t>(point);
      const QString text = inFull ? detail.Text(point) : QString::number(marks.size() + 1);
      marks.push_back({x[i], y[i], valley, text});
    }
  };
  add(found.PeakIndex, false, detail.Peaks);
  add(found.ValleyIndex, true, detail.Valleys);
  return marks;
}

std::vector<std::int32_t> FoundPoints(const FoundPeaks& found) {
  std::vector<std::int32_t> points = found.PeakIndex;
  points.insert(points.end(), found.ValleyIndex.begin(), found.ValleyIndex.end());
  return points;
}

std::string FoundWords(const FoundPeaks& found, double peakHeight) {
  if (FoundPoints(found).empty())
    return "Nothing stands out by more than the peak value of " + ShortestText(peakHeight) + " Abs.";
  const auto count = [](std::size_t number, const char* what) {
    return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s");
  };
  return "Found: " + count(found.PeakIndex.size(), "peak") + ", " +
         count(found.ValleyIndex.size(), "valley") + '.';
}

}  // namespace spectrane
