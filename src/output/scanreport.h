#pragma once

#include "output/scanoutput.h"
#include "output/scanview.h"

namespace spectrane {

/// What the options of the spectrum window say of a report; the range of the statistics is left open.
ScanReportParts ReportPartsOf(const ScanSettings& settings);

/// The curve for a report. `document` must outlive it.
ReportPicture ScanReportPicture(const SpectrumDocument& document, const ScanSettings& settings,
                                const DisplayFormats& formats, const QString& name);

}  // namespace spectrane
