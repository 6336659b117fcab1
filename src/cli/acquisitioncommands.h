#pragma once

#include "cli/command.h"

namespace spectrane {

/// `instrument baseline`, `scan`, `multi`, `dna` and `kinetics`, below the group `instrument`.
void AddAcquisitionCommands(CLI::App* group, BatchContext& context);

}  // namespace spectrane
