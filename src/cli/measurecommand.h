#pragma once

#include <cstdint>
#include <string>

#include "cli/command.h"

namespace spectrane {

inline constexpr std::int32_t kMostMeasurements = 100000;

struct MeasureOrder {
  /// Test wavelength [nm]; held inside the instrument's range.
  double Wavelength = 546.0;
  /// How often a measurement is started: one row each by hand, one row for each position in use with a
  /// sampler.
  std::int32_t Count = 1;
  /// The .bas file to write.
  std::string Out;
  /// No waiting for Enter before the blank and the samples.
  bool Yes = false;
  /// An existing file may be replaced.
  bool Force = false;
};

/// Connects, takes the blank, measures, releases, writes the file and gives its rows. A run that fails or is
/// stopped (Ctrl+C, end of input) saves the rows it has, says how many, and ends in a Refusal.
void Measure(const MeasureOrder& order, BatchContext& run);

}  // namespace spectrane
