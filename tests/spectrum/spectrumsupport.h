#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/basesupport.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"

namespace spectrane {

/// Points from 500 nm on, 1 nm apart, with these transmittances in whole percent: a blank of 10000 counts
/// over a dark energy of 50.
inline std::vector<WLSRecord> MeasuredPoints(const std::vector<int>& percents) {
  std::vector<WLSRecord> points;
  for (const int percent : percents) {
    points.push_back({percent * 100 + 50, 10050, 50, 500.0 + static_cast<double>(points.size()), 3});
  }
  return points;
}

/// A home view and parameters that are all different from a first start.
inline WLSOption OtherOption() {
  return {490.5, 520, 2.5, -0.25, 120, 10, 40000, 100, 4, 0, 2, 3, 0, 2};
}

/// Writes a spectrum file and gives its path.
template <typename RecordT>
std::string SaveSpectrum(const FileModule<WLSOption, RecordT>& module, const std::string& path,
                         const WLSOption& option, const std::vector<RecordT>& points) {
  const FileFault fault =
      SaveDataFile(module, path, option, static_cast<std::int32_t>(points.size()),
                   [&points](std::int32_t i) { return points[static_cast<std::size_t>(i)]; });
  EXPECT_FALSE(fault) << FaultWords(fault);
  return path;
}

/// Cuts a file at its end.
inline void CutFile(const std::string& path, std::uintmax_t bytes) {
  std::filesystem::resize_file(path, std::filesystem::file_size(path) - bytes);
}

}  // namespace spectrane
