#include "spectrum/spectrumfiles.h"

#include <utility>

#include "files/wlsfile.h"
#include "files/wlsfile2.h"
#include "spectrum/scanvalues.h"

namespace spectrane {

FileFault LoadMeasuredSpectrum(const std::string& path, bool smooth, StoredSpectrum& spectrum) {
  std::vector<WLSRecord> records;
  FileFault fault = LoadDataFile(WLSModule(), path, spectrum.Option, records);
  ScanValues values = DeriveScanValues(records, smooth);
  spectrum.Points.WL.clear();
  spectrum.Points.WL.reserve(records.size());
  for (const WLSRecord& record : records) spectrum.Points.WL.push_back(record.Wavelength);
  spectrum.Points.Trans = std::move(values.Trans);
  spectrum.Points.Abs = std::move(values.Abs);
  return fault;
}

FileFault LoadProcessedSpectrum(const std::string& path, StoredSpectrum& spectrum) {
  std::vector<WLS2Record> records;
  FileFault fault = LoadDataFile(WLS2Module(), path, spectrum.Option, records);
  spectrum.Points = {};
  for (const WLS2Record& record : records) {
    spectrum.Points.Add(record.Wavelength, record.Trans, record.Abs);
  }
  return fault;
}

FileFault SaveProcessedSpectrum(const std::string& path, const WLSOption& option, const Spectrum& points) {
  WLSOption block;
  block.StartWavelength = option.StartWavelength;
  block.EndWavelength = option.EndWavelength;
  block.AbsTop = option.AbsTop;
  block.AbsBottom = option.AbsBottom;
  block.TransTop = option.TransTop;
  block.TransBottom = option.TransBottom;
  block.DisplayMode = option.DisplayMode;
  return SaveDataFile(WLS2Module(), path, block, static_cast<std::int32_t>(points.Size()),
                      [&points](std::int32_t index) {
                        const auto i = static_cast<std::size_t>(index);
                        return WLS2Record{points.WL[i], points.Trans[i], points.Abs[i]};
                      });
}

}  // namespace spectrane
