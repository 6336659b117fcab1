#pragma once

#include "cli/command.h"

namespace spectrane {

/// `energy` and `format`.
void AddNumberCommands(CLI::App& root, BatchContext& context);

}  // namespace spectrane
