#pragma once

#include <array>
#include <cstdint>

namespace spectrane {

/// Most points of a test.
inline constexpr std::int32_t kMostTestPoints = 10000;

/// Number of intervals to choose from.
inline constexpr std::size_t kTimeScanIntervals = 10;
/// Their names, in the order of their index.
extern const std::array<const char*, kTimeScanIntervals> kIntervalNames;

/// Milliseconds of the interval with that index; 1000 for an index outside the table.
std::int32_t IntervalMs(std::int32_t index);

/// Points that a test from `startSecond` to `endSecond` asks for, both ends included: rounded half to even,
/// at most 10000, none when the end lies more than an interval before the start.
std::int32_t PointTotal(double startSecond, double endSecond, std::int32_t intervalMs);

/// A part of an axis, from its lower to its upper end.
struct AxisSpan {
  double Low = 0;
  double High = 0;
  bool operator==(const AxisSpan&) const = default;
};

/// The span of a value axis widened outward to round steps: the top to the next multiple above it, the bottom
/// a whole step beyond the next multiple below it. Held inside -0.5 to 3 (absorbance) or -1 to 200 (%T).
/// Throws NumericFault for values that cannot be counted in ten-thousandths or tenths.
AxisSpan WidenedAbs(const AxisSpan& view);
AxisSpan WidenedTrans(const AxisSpan& view);

/// The same for a time axis in whole seconds, held inside 0 and `endSecond`, the end of the home view. Throws
/// NumericFault for an axis of 30001 to 300000 s, whose step is more than 16 bits hold.
AxisSpan WidenedTime(const AxisSpan& view, double endSecond);

}  // namespace spectrane
