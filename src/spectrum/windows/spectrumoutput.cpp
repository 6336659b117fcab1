// Exports of the windows of one spectrum.

#include <tuple>

#include "output/curvepicture.h"
#include "output/scanreport.h"
#include "output/windows/piccurve.h"
#include "spectrum/windows/spectrumwindow.h"

namespace spectrane {

const ScanSource& SpectrumWindow::Source() {
  return source_.emplace(ScanSourceOf(document_));
}

std::optional<ExportSheet> SpectrumWindow::MakeSheet() {
  return ScanSheet(Source(), formats_, OutputHead());
}

std::optional<Report> SpectrumWindow::MakeReport() {
  ScanReportParts parts = ReportPartsOf(settings_);
  std::tie(parts.MaxStartWavelength, parts.MaxEndWavelength) = ReportRange();
  return ScanReport(Source(), formats_, OutputHead(), parts,
                    ScanReportPicture(document_, settings_, formats_, Caption()));
}

QImage SpectrumWindow::MakePicture() {
  return curve_->Image();
}

void SpectrumWindow::mmuFileOutputBMP() {
  OutputPicture(MakePicture());
}

}  // namespace spectrane
