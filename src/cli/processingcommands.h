#pragma once

#include "cli/command.h"

namespace spectrane {

/// `smooth`, `derivative` and `calc`: spectra made of spectra.
void AddProcessingCommands(CLI::App& root, BatchContext& context);

}  // namespace spectrane
