#pragma once

#include "cli/command.h"

namespace spectrane {

/// `instrument probe`, `instrument send`, `instrument measure`.
void AddInstrumentCommands(CLI::App& root, BatchContext& context);

}  // namespace spectrane
