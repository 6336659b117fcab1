#include "output/scanreport.h"

#include "base/language.h"
#include "output/curvepicture.h"

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
  const CurveView view = ScanView(document, settings, formats, name);
  ReportPicture picture;
  picture.LeftMargin = view.Margins.Left;
  picture.RightMargin = view.Margins.Right;
  picture.Paint = [view](QPainter& painter, const QRectF& surface, double twipsPerUnit) {
    PaintCurve(painter, surface, view,
               {twipsPerUnit, QFont(QString::fromStdString(FontFor(GetLanguageIndex()).Name))});
  };
  return picture;
}

}  // namespace spectrane
