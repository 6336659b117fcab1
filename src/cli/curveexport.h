#pragma once

#include <optional>
#include <string>

#include "cli/exportkinds.h"

namespace spectrane {

/// The text of a curve for other programs, where the ending asks for one (.csv, .jdx, .dx); nothing for
/// another ending and for a file of a kind that has no curve. Throws Refusal for a file that cannot be read
/// whole.
std::optional<std::string> CurveExport(const std::string& path, const std::string& ending,
                                       const ExportSurroundings& around);

}  // namespace spectrane
