#pragma once

#include <cstddef>
#include <string>

namespace spectrane {

struct BatchKind;

struct PackedFile {
  const BatchKind* Kind = nullptr;
  std::size_t Records = 0;
  /// A text had characters without a place in the file.
  bool TextLost = false;
};

/// Writes the data file that a JSON document describes, in the place of what is there. Throws BadJson for the
/// document and Refusal for the file.
PackedFile PackDocument(const std::string& text, const std::string& path);

}  // namespace spectrane
