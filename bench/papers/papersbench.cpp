// Exports and the report of a spectrum of 10001 points, from the document to the bytes of the file, as the
// windows make them. QT_QPA_PLATFORM=offscreen build/release/bin/papers_bench
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "output/exportsheet.h"
#include "output/reportpages.h"
#include "output/scanreport.h"
#include "windows/windowreport.h"

namespace {

using namespace spectrane;

SpectrumDocument Bands(const std::string& path) {
  const WLSOption option{350, 1100, 3, 0, 100, 0, 65535, 0, 1, 1, 1, 0, 0, 1};
  SaveDataFile(WLSModule(), path, option, kMostSpectrumPoints, [](std::int32_t i) {
    const double wavelength = 350 + 0.075 * i;
    const double trans = 0.5 + 0.4 * std::sin(wavelength / 15);
    return WLSRecord{static_cast<std::int32_t>(60 + 30000 * trans), 30060, 60, wavelength, 3};
  });
  SpectrumDocument document(SpectrumDocument::Kind::Measured);
  document.OpenFile(path);
  document.FindPeak({});
  return document;
}

void Measure(const char* what, const std::function<std::size_t()>& make) {
  std::vector<double> waited;
  std::size_t bytes = 0;
  for (int i = 0; i < 15; ++i) {
    const auto from = Wall::now();
    bytes = make();
    waited.push_back(MsSince(from));
  }
  ReportTimes(what, waited);
  std::printf("  %zu bytes\n", bytes);
}

}  // namespace

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  const QTemporaryDir folder;
  const SpectrumDocument document = Bands(folder.filePath(QStringLiteral("bands.wls")).toStdString());
  const ScanSource source = ScanSourceOf(document);
  const DisplayFormats formats = DisplayFormats::AtStart(0);
  const DocumentHead head{"/data/bands.wls", "bands",      QDateTime::currentDateTime(),
                          "Operator",        "Laboratory", false};
  Measure("text", [&] { return ExportText(ScanSheet(source, formats, head)).size(); });
  Measure("spreadsheet",
          [&] { return ExportWorkbook(ScanSheet(source, formats, head), {})->Bytes().size(); });
  ScanReportParts parts;
  parts.DataList = true;
  const ScanSettings settings;
  Measure("report with curve and all points", [&] {
    const ReportPicture picture = ScanReportPicture(document, settings, formats, {});
    return static_cast<std::size_t>(ReportPdf(ScanReport(source, formats, head, parts, picture)).size());
  });
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) std::printf("%s\n", line.c_str());
  }
}
