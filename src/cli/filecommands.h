#pragma once

#include "cli/command.h"

namespace spectrane {

/// `info`, `dump` and `pack`.
void AddFileCommands(CLI::App& root, BatchContext& context);

/// Refuses an output path that is taken, unless `force`.
void RefuseTakenOutput(const std::string& path, bool force);

}  // namespace spectrane
