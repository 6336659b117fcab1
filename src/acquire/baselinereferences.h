#pragma once

#include <optional>
#include <string>
#include <vector>

#include "acquire/scangrid.h"
#include "files/bslfile.h"
#include "files/filefault.h"

namespace spectrane {

/// References of a scan out of a stored baseline.
struct BaselineReferences {
  /// One for each wavelength of the grid; empty when there is a reason.
  std::vector<BSLRecord> References;
  /// Why the baseline does not serve, in plain words; empty when it does.
  std::string Reason;
};

/// Looks up every wavelength of `grid` in the baseline at `path`. It does not serve when the file cannot be
/// read whole, when the grid has points between whole nanometres, when it begins or ends outside the
/// baseline's range, and when a record is a hole: missing, at another wavelength, or without a gain that the
/// instrument has (1 to `gainCount`) or an energy.
BaselineReferences FindReferences(const std::string& path, const ScanGrid& grid, std::int32_t gainCount);

/// Writes references as a baseline, whose range is that of the references; there must be one at least. `now`
/// is the date serial of the moment.
FileFault SaveBaseline(const std::string& path, const std::vector<BSLRecord>& references, double now);

}  // namespace spectrane
