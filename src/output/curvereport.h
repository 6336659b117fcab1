#pragma once

#include "output/curveview.h"
#include "output/report.h"

namespace spectrane {

/// A curve for a report, in the language's own font. The points of `view` must outlive it.
ReportPicture CurveReportPicture(const CurveView& view);

}  // namespace spectrane
