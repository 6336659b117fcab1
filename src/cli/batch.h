#pragma once

#include <iosfwd>

namespace spectrane {

/// Exit statuses of the batch command.
enum BatchStatus : int {
  kBatchDone = 0,
  /// One line on the error stream says why; the output stream got nothing.
  kBatchRefused = 1,
  /// The usage stands on the error stream.
  kBatchWrongUsage = 2,
};

/// Runs one command line; `argv` in UTF-8, the program's name first. Gives a BatchStatus.
int RunBatch(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err);

}  // namespace spectrane
