#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "files/filefault.h"

namespace spectrane {

/// Refuses an output path that is taken, unless `force`; and always one of `inputs`, which the command reads,
/// and the settings of the program, under whatever name.
void RefuseTakenOutput(const std::string& path, bool force, const std::vector<std::string>& inputs = {});

/// Refuses, before anything is measured, an output path that is taken (unless `force`), is no place for a
/// file, or lies in a folder that does not exist, cannot be written or has not `bytes` of room.
void RefuseUnwritable(const std::string& path, bool force, std::uintmax_t bytes = 0);

/// Where measured data went.
struct MeasuredOutput {
  std::string Path;
  /// Why it is not the path that was asked for; empty when it is.
  std::string Problem;
};

/// Saves what was measured. Where a file has come to stand at `path` since the run began and must stay, it
/// goes to the first free name beside it; where that place cannot be written, to the folder for temporary
/// files. Throws Refusal, with the words of the first failure, when neither takes it.
MeasuredOutput SaveMeasured(const std::string& path, bool force,
                            const std::function<FileFault(const std::string& path)>& save);

}  // namespace spectrane
