#pragma once

#include "cli/command.h"

namespace spectrane {

/// `info`, `dump` and `pack`.
void AddFileCommands(CLI::App& root, BatchContext& context);

/// The whole of a text file, or of standard input for "-". Throws Refusal, for one that is too large as well.
std::string ReadDocument(const std::string& path, std::istream& standardInput);

/// The ending of a path with its point, in small letters.
std::string LowerEnding(const std::string& path);

}  // namespace spectrane
