#include "output/scanreport.h"

#include "output/curvereport.h"

namespace spectrane {

ScanReportParts ReportPartsOf(const ScanSettings& settings) {
  ScanReportParts parts;
  parts.Curve = settings.PrintCurve;
  parts.PeakValley = settings.PrintPeakValley;
  parts.MaxMinAverage = settings.PrintMaxMinAverage;
  parts.DataList = settings.PrintDataList;
  parts.PrintInterval = settings.PrintInterval;
  return parts;
}

ReportPicture ScanReportPicture(const SpectrumDocument& document, const ScanSettings& settings,
                                const DisplayFormats& formats, const QString& name) {
  return CurveReportPicture(ScanView(document, settings, formats, name));
}

}  // namespace spectrane
