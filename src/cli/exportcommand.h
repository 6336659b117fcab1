#pragma once

#include "cli/command.h"

namespace spectrane {

/// `export`.
void AddExportCommand(CLI::App& root, BatchContext& context);

}  // namespace spectrane
