#include "modes/timescan/timescanaxes.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "base/numbers.h"
#include "base/numericfault.h"

namespace spectrane {

const std::array<const char*, kTimeScanIntervals> kIntervalNames = {
    " 0.1 Second", " 0.2 Second", " 0.5 Second", " 1 Second",  " 2 Second",
    " 5 Second",   " 10 Second",  " 20 Second",  " 30 Second", " 1 Minute"};

namespace {

constexpr std::array<std::int32_t, kTimeScanIntervals> kIntervalsMs = {100,  200,   500,   1000,  2000,
                                                                       5000, 10000, 20000, 30000, 60000};

/// The step of an axis that is longer than `Above`, in counted units.
struct StepRow {
  double Above;
  std::int32_t Step;
};

constexpr StepRow kAbsSteps[] = {{2, 5000},  {1, 2000},   {0.5, 1000}, {0.2, 500},
                                 {0.1, 200}, {0.05, 100}, {0.02, 50},  {0.01, 20}};
constexpr std::int32_t kSmallestAbsStep = 10;
constexpr double kAbsUnits = 10000;

constexpr StepRow kTransSteps[] = {{100, 200}, {50, 100}, {20, 50}, {10, 20}, {5, 10}, {2, 5}, {1, 2}};
constexpr std::int32_t kSmallestTransStep = 1;
constexpr double kTransUnits = 10;

/// A step that the arithmetic of this axis cannot hold.
constexpr std::int32_t kTooLong = -1;
constexpr StepRow kTimeSteps[] = {
    {300000, 600000}, {30000, kTooLong}, {10000, 30000}, {6000, 10000}, {3000, 6000},
    {1000, 3000},     {600, 1000},       {300, 600},     {100, 300},    {60, 100},
    {30, 60},         {10, 30},          {6, 10},        {3, 6},        {1, 3}};
constexpr std::int32_t kSmallestTimeStep = 1;
constexpr double kTimeUnits = 10;

std::int32_t StepOf(double length, std::span<const StepRow> rows, std::int32_t smallest) {
  for (const StepRow& row : rows) {
    if (length > row.Above) return row.Step;
  }
  return smallest;
}

/// Both ends a step outward, to multiples of it; the remainder has the sign of the value.
AxisSpan Outward(const AxisSpan& view, std::int32_t step, double units) {
  const std::int64_t high = ToLong(view.High * units);
  const std::int64_t low = ToLong(view.Low * units);
  return {static_cast<double>(low - step - low % step) / units,
          static_cast<double>(high + step - high % step) / units};
}

}  // namespace

std::int32_t IntervalMs(std::int32_t index) {
  const bool known = index >= 0 && index < static_cast<std::int32_t>(kIntervalsMs.size());
  return known ? kIntervalsMs[static_cast<std::size_t>(index)] : 1000;
}

std::int32_t PointTotal(double startSecond, double endSecond, std::int32_t intervalMs) {
  const double points = (endSecond - startSecond) / (static_cast<double>(intervalMs) / 1000) + 1;
  if (!(points > 0)) return 0;
  return points > kMostTestPoints ? kMostTestPoints : ToLong(points);
}

AxisSpan WidenedAbs(const AxisSpan& view) {
  const AxisSpan wide = Outward(view, StepOf(view.High - view.Low, kAbsSteps, kSmallestAbsStep), kAbsUnits);
  return {std::max(wide.Low, -0.5), std::min(wide.High, 3.0)};
}

AxisSpan WidenedTrans(const AxisSpan& view) {
  const AxisSpan wide =
      Outward(view, StepOf(view.High - view.Low, kTransSteps, kSmallestTransStep), kTransUnits);
  return {std::max(wide.Low, -1.0), std::min(wide.High, 200.0)};
}

AxisSpan WidenedTime(const AxisSpan& view, double endSecond) {
  const std::int32_t step = StepOf(view.High - view.Low, kTimeSteps, kSmallestTimeStep);
  if (step == kTooLong) throw NumericFault("time axis too long for its step");
  const AxisSpan wide = Outward(view, step, kTimeUnits);
  // The view has whole seconds.
  return {RoundHalfEven(std::max(wide.Low, 0.0)), RoundHalfEven(std::min(wide.High, endSecond))};
}

}  // namespace spectrane
