#pragma once

#include <cstdint>

#include "output/exportsheet.h"
#include "tools/systembaseline.h"

namespace spectrane {

/// The first `records` of a baseline, as many as it has: number, wavelength [nm], gain and energy. The
/// baseline must outlive the table.
DataTable BaselineDataTable(const SystemBaseline& baseline, std::int32_t records);

}  // namespace spectrane
