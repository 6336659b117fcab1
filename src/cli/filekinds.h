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
  /// The document of `info`, or with `data` that of `dump`. Throws Refusal.
  std::function<std::string(const std::string& path, bool data)> Describe;
  /// Writes the data file that `document` describes; throws BadJson. `lost`: a text had characters without a
  /// place in the file.
  std::function<FileFault(const Json& document, const std::string& path, std::size_t& records, bool& lost)>
      Pack;
};

/// The kind of a file type or of a short word; null for one that is not known.
const BatchKind* KindOfType(std::int32_t fileType);
const BatchKind* KindOfName(const std::string& name);

}  // namespace spectrane
