#pragma once

#include "cli/command.h"

namespace spectrane {

/// `stats`.
void AddStatsCommand(CLI::App& root, BatchContext& context);

}  // namespace spectrane
