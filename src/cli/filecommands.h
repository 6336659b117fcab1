#pragma once

#include "cli/command.h"

namespace spectrane {

struct BatchKind;

/// `info`, `dump` and `pack`.
void AddFileCommands(CLI::App& root, BatchContext& context);

struct PackedFile {
  const BatchKind* Kind = nullptr;
  std::size_t Records = 0;
  /// A text had characters without a place in the file.
  bool TextLost = false;
};

/// Writes the data file that a JSON document describes, in the place of what is there. Throws BadJson for the
/// document and Refusal for the file.
PackedFile PackDocument(const std::string& text, const std::string& path);

/// Refuses an output path that is taken, unless `force`.
void RefuseTakenOutput(const std::string& path, bool force);

/// The whole of a text file, or of standard input for "-". Throws Refusal, for one that is too large as well.
std::string ReadDocument(const std::string& path, std::istream& standardInput);

/// The ending of a path with its point, in small letters.
std::string LowerEnding(const std::string& path);

}  // namespace spectrane
