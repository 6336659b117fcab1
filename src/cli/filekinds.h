#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "cli/jsontext.h"
#include "files/datafile.h"
#include "files/filefault.h"

namespace spectrane {

/// What the file commands can do with one kind of data file.
struct BatchKind {
  const FileKind* Kind;
  /// The document of `info`. Throws Refusal.
  std::function<std::string(const std::string& path)> Describe;
  /// The document of `dump`; `smooth`: the derived values of a measured spectrum are weighted means of five
  /// points, of the other kinds they are the same. Throws Refusal.
  std::function<std::string(const std::string& path, bool smooth)> Dump;
  /// Writes the data file that `document` describes; throws BadJson. `lost`: a text had characters without a
  /// place in the file.
  std::function<FileFault(const JsonInput& document, const std::string& path, std::size_t& records,
                          bool& lost)>
      Pack;
};

/// The kind of a file type or of a short word; null for one that is not known.
const BatchKind* KindOfType(std::int32_t fileType);
const BatchKind* KindOfName(const std::string& name);

}  // namespace spectrane
