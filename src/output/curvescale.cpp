#include "output/curvescale.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

#include "base/numbers.h"

namespace spectrane {
namespace {

/// Ranges longer than `Above` have divisions of `Step`; the last row holds for all the rest.
struct StepRow {
  double Above;
  double Step;
};

constexpr StepRow kAbsSteps[] = {{2, 0.5},     {1, 0.2},      {0.5, 0.1},    {0.2, 0.05}, {0.1, 0.02},
                                 {0.05, 0.01}, {0.02, 0.005}, {0.01, 0.002}, {0, 0.001}};
constexpr StepRow kTransSteps[] = {{100, 20}, {50, 10}, {20, 5},  {10, 2},
                                   {5, 1},    {2, 0.5}, {1, 0.2}, {0, 0.1}};
// Energies are counted: the lengths here are the first that have the step.
constexpr StepRow kEnergySteps[] = {{50001, 10000}, {20001, 5000}, {10001, 2000}, {5001, 1000}, {2001, 500},
                                    {1001, 200},    {501, 100},    {201, 50},     {101, 20},    {0, 10}};
constexpr StepRow kWavelengthSteps[] = {{500, 100}, {200, 50}, {100, 20}, {50, 10}, {20, 5},
                                        {10, 2},    {5, 1},    {2, 0.5},  {1, 0.2}, {0, 0.1}};
constexpr StepRow kTimeSteps[] = {
    {300000, 60000}, {100000, 30000}, {60000, 10000}, {30000, 6000}, {10000, 3000}, {6000, 1000},
    {3000, 600},     {1000, 300},     {600, 100},     {300, 60},     {100, 30},     {60, 10},
    {30, 6},         {10, 3},         {6, 1},         {3, 0.6},      {1, 0.3},      {0, 0.1}};

/// Steps and values of a kind are whole numbers of one unit.
struct KindRow {
  std::span<const StepRow> Steps;
  double UnitsPerValue;
  const char* Pattern;
  AxisRange Farthest;
};

constexpr double kOpen = std::numeric_limits<double>::max() / 4;

const KindRow& RowOf(AxisKind kind) {
  static const KindRow kRows[] = {
      {kAbsSteps, 10000, "0.000", {-0.5, 3}},   {kTransSteps, 10, "0.0", {-1, 200}},
      {kEnergySteps, 1, "0", {0, kOpen}},       {kWavelengthSteps, 10, "0.0", {-kOpen, kOpen}},
      {kTimeSteps, 10, "0.0", {-kOpen, kOpen}},
  };
  return kRows[static_cast<std::size_t>(kind)];
}

/// Differences of decimals are off by so much, relatively.
constexpr double kRounding = 1e-9;
constexpr double kMostTicks = 100;

}  // namespace

bool AxisRange::Drawable() const {
  return std::isfinite(Low) && std::isfinite(High) && std::isfinite(High - Low) && Low < High;
}

double TickStep(AxisKind kind, double range) {
  const KindRow& row = RowOf(kind);
  for (const StepRow& step : row.Steps) {
    const bool holds = kind == AxisKind::Energy ? range >= step.Above : range > step.Above * (1 + kRounding);
    if (holds) return step.Step;
  }
  return row.Steps.back().Step;
}

std::vector<double> TickValues(AxisKind kind, const AxisRange& range) {
  std::vector<double> values;
  if (!range.Drawable()) return values;
  const KindRow& row = RowOf(kind);
  double step = TickStep(kind, range.Length());
  while (range.Length() / step > kMostTicks) step *= 10;
  step = std::round(step * row.UnitsPerValue);
  const double first = std::floor(RoundHalfEven(range.Low * row.UnitsPerValue) / step);
  for (double i = 0; i < kMostTicks + 3; ++i) {
    const double value = (first + i) * step / row.UnitsPerValue;
    if (value >= range.High) break;
    if (value > range.Low && (values.empty() || value > values.back())) values.push_back(value);
  }
  return values;
}

std::string_view TickPattern(AxisKind kind) {
  return RowOf(kind).Pattern;
}

std::string TickText(double value, std::string_view pattern) {
  return value == 0 ? "0" : Format(value, pattern);
}

AxisRange FarthestRange(AxisKind kind) {
  return RowOf(kind).Farthest;
}

AxisRange RoundedOutward(AxisKind kind, const AxisRange& range) {
  if (!range.Drawable()) return range;
  const KindRow& row = RowOf(kind);
  const double units = row.UnitsPerValue;
  const double step = std::round(TickStep(kind, range.Length()) * units);
  const AxisRange whole = {std::floor(RoundHalfEven(range.Low * units) / step) * step / units,
                           std::ceil(RoundHalfEven(range.High * units) / step) * step / units};
  const AxisRange held = {std::max(whole.Low, row.Farthest.Low), std::min(whole.High, row.Farthest.High)};
  return held.Drawable() ? held : range;
}

AxisRange Zoomed(AxisKind kind, const AxisRange& range, double at, double factor, const AxisRange& farthest) {
  if (!range.Drawable() || !std::isfinite(at) || !(factor > 0)) return range;
  const double shortest = std::min(RowOf(kind).Steps.back().Step, range.Length());
  const double by = std::max(factor, shortest / range.Length());
  AxisRange zoomed = {at - (at - range.Low) * by, at + (range.High - at) * by};
  zoomed.Low = std::max(zoomed.Low, std::min(farthest.Low, range.Low));
  zoomed.High = std::min(zoomed.High, std::max(farthest.High, range.High));
  return zoomed.Drawable() ? zoomed : range;
}

AxisRange Moved(const AxisRange& range, double by, const AxisRange& farthest) {
  if (!range.Drawable() || !std::isfinite(by)) return range;
  const double up = std::max(farthest.High - range.High, 0.0);
  const double down = std::min(farthest.Low - range.Low, 0.0);
  const double held = std::clamp(by, down, up);
  const AxisRange moved = {range.Low + held, range.High + held};
  return moved.Drawable() ? moved : range;
}

}  // namespace spectrane
