#pragma once

#include <cstdint>
#include <string>

#include "acquire/scangrid.h"
#include "cli/acquisitiondesk.h"

namespace spectrane {

struct BaselineOrder : AcquisitionOrder {
  /// Range [nm]; where it was not given that of the instrument is taken.
  bool HasRange = false;
  ScanGrid Grid;
};

struct ScanOrder : AcquisitionOrder {
  ScanGrid Grid;
  std::int32_t Samples = 20;
  /// Where the reference comes from when it is not the blank; empty: the baseline that the windows use.
  std::string Baseline;
  bool Blank = false;
};

/// The system's own light at each whole nanometre into a .bsl file. A run that fails or is stopped saves what
/// it has, says how much, and ends in a Refusal; so does every command below.
void MeasureBaseline(const BaselineOrder& order, BatchContext& run);
/// A spectrum into a .wls file, or one of each cell.
void MeasureSpectrum(const ScanOrder& order, BatchContext& run);

}  // namespace spectrane
