// Exports of the windows of one spectrum.

#include <tuple>

#include "output/scanreport.h"
#include "spectrum/windows/spectrumwindow.h"

namespace spectrane {

const ScanSource& SpectrumWindow::Source() {
  return source_.emplace(ScanSourceOf(document_));
}

std::optional<ExportSheet> SpectrumWindow::MakeSheet() {
  return ScanSheet(Source(), Formats(), OutputHead());
}

std::optional<Report> SpectrumWindow::MakeReport() {
  ScanReportParts parts = ReportPartsOf(settings_);
  std::tie(parts.MaxStartWavelength, parts.MaxEndWavelength) = ReportRange();
  return ScanReport(Source(), Formats(), OutputHead(), parts,
                    ScanReportPicture(document_, settings_, Formats(), Caption()));
}

}  // namespace spectrane
