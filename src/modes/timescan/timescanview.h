#pragma once

#include "modes/timescan/timescanaxes.h"
#include "modes/timescan/timescandocument.h"

namespace spectrane {

/// The part of the axes that is seen: time [s], and a span of values for each mode.
struct TimeScanView {
  AxisSpan Time;
  AxisSpan Abs;
  AxisSpan Trans;

  AxisSpan& Of(bool trans) { return trans ? Trans : Abs; }
  const AxisSpan& Of(bool trans) const { return trans ? Trans : Abs; }
  bool operator==(const TimeScanView&) const = default;
};

/// The home view of a document; its times are whole seconds.
TimeScanView HomeView(const TimeScanDocument& document);

/// Time axis and the values of the mode in sight, each widened outward by its rule. Throws NumericFault where
/// one of them cannot be.
TimeScanView Widened(const TimeScanView& view, const TimeScanDocument& document);

}  // namespace spectrane
