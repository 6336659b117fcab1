#include "modes/samplercells.h"

#include <algorithm>

namespace spectrane {

std::string SamplerCellName(std::int32_t position) {
  return "Sampler Position " + std::to_string(position);
}

bool MeasureEachCell(const TestBench& bench, const CellSteps& steps) {
  const auto& used = bench.State.SamplerPositions;
  if (std::none_of(used.begin() + 1, used.end(), [](bool position) { return position; })) {
    bench.Display.SetRemark("No sampler position is in use.");
    return true;
  }
  for (std::int32_t position = 1; position <= kSamplerPositionCount; ++position) {
    // Asked anew for each: the choice may change while one is measured.
    if (!used[static_cast<std::size_t>(position)]) continue;
    if (steps.Stopped()) return false;
    std::int32_t cell = position;
    if (!bench.Instrument.SetSampler(cell)) return steps.Failed();
    if (steps.Stopped() || !steps.Measure(SamplerCellName(position))) return false;
  }
  return true;
}

}  // namespace spectrane
