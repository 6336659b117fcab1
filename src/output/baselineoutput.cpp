#include "output/baselineoutput.h"

#include <algorithm>

#include "base/language.h"
#include "output/plottexts.h"

namespace spectrane {
namespace {

constexpr int kShortWavelengthTitle = 702;

}  // namespace

DataTable BaselineDataTable(const SystemBaseline& baseline, std::int32_t records) {
  DataTable table;
  table.Columns = {
      {"No", "0", 6}, {Text(kShortWavelengthTitle), "0.0"}, {"Amp", "0"}, {Text(kEnergyTitle), "0"}};
  table.RowCount = std::min(records, baseline.Count());
  table.EmptyWords = Text(kNoRecords);
  table.CellAt = [&baseline](std::int32_t row, std::size_t column) -> TableCell {
    switch (column) {
      case 0:
        return row + 1.0;
      case 1:
        return baseline.BaselineWavelength(row);
      case 2:
        return static_cast<double>(baseline.BaselineAmp(row));
      default:
        return static_cast<double>(baseline.BaselineEnergy(row));
    }
  };
  return table;
}

}  // namespace spectrane
