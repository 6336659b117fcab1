#pragma once

#include "output/documenthead.h"
#include "output/exportsheet.h"
#include "output/timescancurve.h"

namespace spectrane {

ExportSheet TimeScanSheet(const TimeScanSource& scan, const DocumentHead& head);

/// The settings of `scan` choose its parts; `seen` is the part of the curve that its picture has.
Report TimeScanReport(const TimeScanSource& scan, const DocumentHead& head, const TimeScanView& seen);

}  // namespace spectrane
