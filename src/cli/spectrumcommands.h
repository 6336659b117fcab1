#pragma once

#include "cli/command.h"

namespace spectrane {

/// `peaks`.
void AddSpectrumCommands(CLI::App& root, BatchContext& context);

}  // namespace spectrane
