#pragma once

#include "cli/command.h"

namespace spectrane {

/// `fit` and `conc`.
void AddQuantitationCommands(CLI::App& root, BatchContext& context);

}  // namespace spectrane
