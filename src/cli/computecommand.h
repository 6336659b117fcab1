#pragma once

#include "cli/command.h"

namespace spectrane {

/// `compute`.
void AddComputeCommand(CLI::App& root, BatchContext& context);

}  // namespace spectrane
