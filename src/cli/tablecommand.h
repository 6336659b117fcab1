#pragma once

#include <cstdint>
#include <vector>

#include "cli/acquisitiondesk.h"

namespace spectrane {

struct TableOrder : AcquisitionOrder {
  /// How often a measurement is started: a row each by hand, a row for each cell from the sampler.
  std::int32_t Count = 1;
};

struct MultiOrder : TableOrder {
  /// 1 to 15 wavelengths [nm], and as many coefficients; without any, each is 1.
  std::vector<double> Wavelengths;
  std::vector<double> Parameters;
};

struct DnaOrder : TableOrder {
  /// 1 or 2.
  std::int32_t Mode = 1;
};

/// Samples at several wavelengths with one result each, into a .mul file.
void MeasureMulti(const MultiOrder& order, BatchContext& run);
/// DNA and protein into a .dna file.
void MeasureDna(const DnaOrder& order, BatchContext& run);

}  // namespace spectrane
