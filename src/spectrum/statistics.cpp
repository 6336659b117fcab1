#include "spectrum/statistics.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace spectrane {
namespace {

/// First and last point of a range, both included, the smaller index first.
struct PointRange {
  std::size_t First;
  std::size_t Last;
};

PointRange RangeOf(const SpectrumPoints& points, double startWavelength, double endWavelength) {
  const auto start = static_cast<std::size_t>(FindRecordIndexByWavelength(points, startWavelength));
  const auto end = static_cast<std::size_t>(FindRecordIndexByWavelength(points, endWavelength));
  return {std::min(start, end), std::max(start, end)};
}

template <typename Better>
bool FindInRecord(const SpectrumPoints& points, double startWavelength, double endWavelength,
                  std::int32_t& index, Better better) {
  index = 0;
  if (points.Wavelength.empty()) return false;
  const PointRange range = RangeOf(points, startWavelength, endWavelength);
  std::size_t best = range.First;
  for (std::size_t i = range.First + 1; i <= range.Last; ++i) {
    // What is no number never is the best.
    if (better(points.Trans[i], points.Trans[best]) || std::isnan(points.Trans[best])) best = i;
  }
  index = static_cast<std::int32_t>(best);
  return true;
}

SpectrumValues ValuesAt(const SpectrumPoints& points, std::int32_t index) {
  const auto i = static_cast<std::size_t>(index);
  return {points.Wavelength[i], points.Abs[i], points.Trans[i]};
}

}  // namespace

std::int32_t FindRecordIndexByWavelength(const SpectrumPoints& points, double wavelength) {
  const std::span<const double> list = points.Wavelength;
  if (list.empty() || wavelength < list[0]) return 0;
  const auto equal = std::ranges::find(list, wavelength);
  if (equal != list.end()) return static_cast<std::int32_t>(equal - list.begin());
  for (std::size_t i = 0; i + 1 < list.size(); ++i) {
    if (list[i] <= wavelength && list[i + 1] >= wavelength) return static_cast<std::int32_t>(i);
  }
  return static_cast<std::int32_t>(list.size()) - 1;
}

bool FindMaxInRecord(const SpectrumPoints& points, double startWavelength, double endWavelength,
                     std::int32_t& index) {
  return FindInRecord(points, startWavelength, endWavelength, index, std::greater<>());
}

bool FindMinInRecord(const SpectrumPoints& points, double startWavelength, double endWavelength,
                     std::int32_t& index) {
  return FindInRecord(points, startWavelength, endWavelength, index, std::less<>());
}

SpectrumValues CaculateAverageData(const SpectrumPoints& points, double startWavelength,
                                   double endWavelength) {
  SpectrumValues sum;
  if (points.Wavelength.empty()) return sum;
  const PointRange range = RangeOf(points, startWavelength, endWavelength);
  for (std::size_t i = range.First; i <= range.Last; ++i) {
    sum.Trans += points.Trans[i];
    sum.Abs += points.Abs[i];
  }
  const auto count = static_cast<double>(range.Last - range.First + 1);
  return {0, sum.Abs / count, sum.Trans / count};
}

MaxMinAverage CaculateMaxMinAverage(const SpectrumPoints& points, double startWavelength,
                                    double endWavelength) {
  MaxMinAverage result;
  std::int32_t index = 0;
  if (FindMaxInRecord(points, startWavelength, endWavelength, index)) result.Max = ValuesAt(points, index);
  if (FindMinInRecord(points, startWavelength, endWavelength, index)) result.Min = ValuesAt(points, index);
  result.Average = CaculateAverageData(points, startWavelength, endWavelength);
  return result;
}

}  // namespace spectrane
