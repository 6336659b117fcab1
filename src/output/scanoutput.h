#pragma once

#include "base/displayformats.h"
#include "files/wlsfile.h"
#include "output/documenthead.h"
#include "output/exportsheet.h"
#include "spectrum/spectrumdocument.h"
#include "spectrum/statistics.h"

namespace spectrane {

/// A spectrum as exports and reports see it. Everything must outlive what is made of it.
struct ScanSource {
  /// With the home view.
  const WLSOption& Option;
  ScanMode Mode;
  SpectrumPoints Points;
  /// The energies of a point; of a processed spectrum they are 0.
  std::function<WLSRecord(std::int32_t index)> RecordAt;
  /// Of the last search, by rising wavelength.
  std::span<const std::int32_t> PeakIndex;
  std::span<const std::int32_t> ValleyIndex;
};

ScanSource ScanSourceOf(const SpectrumDocument& document);

ExportSheet ScanSheet(const ScanSource& scan, const DisplayFormats& formats, const DocumentHead& head);

/// What a report on a spectrum holds.
struct ScanReportParts {
  bool Curve = true;
  bool PeakValley = true;
  bool MaxMinAverage = false;
  /// Range of the statistics [nm].
  double MaxStartWavelength = 0;
  double MaxEndWavelength = 0;
  bool DataList = false;
  /// The list has every so many points.
  std::int32_t PrintInterval = 1;
};

/// `picture` draws the curve.
Report ScanReport(const ScanSource& scan, const DisplayFormats& formats, const DocumentHead& head,
                  const ScanReportParts& parts, const ReportPicture& picture);

}  // namespace spectrane
