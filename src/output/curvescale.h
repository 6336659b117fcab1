#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace spectrane {

/// What an axis of a curve measures: absorbance, transmittance [%T], energy [counts], wavelength [nm], time
/// [s].
enum class AxisKind { Abs, Trans, Energy, Wavelength, Time };

struct AxisRange {
  double Low = 0;
  double High = 1;
  /// Low lies below High and both are numbers; only then is there anything to draw.
  bool Drawable() const;
  double Length() const { return High - Low; }
  bool operator==(const AxisRange&) const = default;
};

/// The values that the edges of a plot stand for.
struct CurveScale {
  AxisRange X{350, 1100};
  AxisRange Y{0, 3};
  bool Drawable() const { return X.Drawable() && Y.Drawable(); }
  bool operator==(const CurveScale&) const = default;
};

/// Distance of the divisions of an axis of that length.
double TickStep(AxisKind kind, double range);
/// The multiples of the step that lie inside the range, its ends left out. None for a range that is not
/// drawable. A range that would have hundreds of divisions gets wider steps.
std::vector<double> TickValues(AxisKind kind, const AxisRange& range);
/// The usual pattern of that kind's numbers: "0.000", "0.0" or "0".
std::string_view TickPattern(AxisKind kind);
/// A division's number; exactly 0 is "0" in every pattern.
std::string TickText(double value, std::string_view pattern);

/// Scales reach no farther by rounding or by hand: -0.5 to 3 Abs, -1 to 200 %T, energy from 0 up; wavelengths
/// and times are open.
AxisRange FarthestRange(AxisKind kind);
/// Both ends moved outward to multiples of the range's step, then held inside FarthestRange(); an end on a
/// multiple stays. A range that is not drawable, or would not be any more, comes back as it is.
AxisRange RoundedOutward(AxisKind kind, const AxisRange& range);

/// The range with its length multiplied by `factor` around the value `at`, which keeps its place. No shorter
/// than the smallest step of its kind, and nowhere beyond `farthest` unless it was there before.
AxisRange Zoomed(AxisKind kind, const AxisRange& range, double at, double factor, const AxisRange& farthest);
/// The range moved by `by`, its length kept; it stops at the ends of `farthest`.
AxisRange Moved(const AxisRange& range, double by, const AxisRange& farthest);

}  // namespace spectrane
