#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "modes/testbench.h"

namespace spectrane {

/// What a row is called that comes out of a cell of the automatic sampler.
std::string SamplerCellName(std::int32_t position);

/// What measures one after the other; each is given and asked in turn.
struct CellSteps {
  /// The person wants the run to end.
  std::function<bool()> Stopped;
  /// Measures what stands in the beam; false ends the run.
  std::function<bool(const std::string& name)> Measure;
  /// Tells that the sampler did not move; what it gives is the end of the run.
  std::function<bool()> Failed;
};

/// Brings each cell in use into the beam and measures it. True, and remarked on, when none is in use.
bool MeasureEachCell(const TestBench& bench, const CellSteps& steps);

}  // namespace spectrane
