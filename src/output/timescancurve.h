#pragma once

#include "base/displayformats.h"
#include "modes/timescan/timescanpoints.h"
#include "modes/timescan/timescansettings.h"
#include "modes/timescan/timescanview.h"
#include "output/curveview.h"
#include "spectrum/findpeak.h"

namespace spectrane {

/// A time scan as pictures, exports and reports see it. Everything must outlive what is made of it.
struct TimeScanSource {
  const TimeScanDocument& Document;
  const TimeScanPoints& Points;
  /// Of the last search.
  const FoundPeaks& Found;
  const TimeScanSettings& Settings;
  const DisplayFormats& Formats;
};

/// Peaks and valleys of the absorbance, whatever is shown, as the settings say.
FoundPeaks FindPeaks(const TimeScanDocument& document, const TimeScanSettings& settings);

/// What its curve shows: the part `seen`, the mode, the marks. `name` is the curve's, for those who hear it.
CurveView TimeScanCurve(const TimeScanSource& scan, const TimeScanView& seen, const QString& name);
/// Of the view: the part of times and values that is seen.
CurveScale TimeScanScale(const TimeScanDocument& document, const TimeScanView& seen);

}  // namespace spectrane
