#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "cli/jsontext.h"
#include "files/datafile.h"
#include "files/filefault.h"

namespace spectrane {

/// The points of a spectrum or a time scan.
struct BatchCurve {
  /// Wavelength [nm] or time [s].
  std::vector<double> X;
  std::vector<double> Abs;
  std::vector<double> Trans;
};

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
  /// The points of a whole file; `smooth` as in Dump. Throws Refusal. Empty for a kind that has no curve.
  std::function<BatchCurve(const std::string& path, bool smooth)> Curve;
  /// Peak value that a search of the curve begins with [Abs].
  double PeakHeight = 0;
};

/// The kind of a file type or of a short word; null for one that is not known.
const BatchKind* KindOfType(std::int32_t fileType);
const BatchKind* KindOfName(const std::string& name);
/// The kind that the header of a file tells. Throws Refusal.
const BatchKind& KindOfFile(const std::string& path);

}  // namespace spectrane
