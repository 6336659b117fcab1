#pragma once

#include "cli/command.h"

namespace spectrane {

/// `import`: spectra of other programs.
void AddImportCommand(CLI::App& root, BatchContext& context);

}  // namespace spectrane
