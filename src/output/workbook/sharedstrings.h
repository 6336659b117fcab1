#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "output/workbook/recordwriter.h"

namespace spectrane {

/// The texts of a workbook's cells, each once.
class SharedStrings {
 public:
  /// The number of the text (UTF-8), which is cut at what a cell can hold, 32767 units of UTF-16.
  std::uint32_t Add(std::string_view text);
  /// The table, in as many records as it needs.
  void Write(RecordWriter& records) const;

 private:
  std::vector<std::u16string> texts_;
  std::unordered_map<std::string, std::uint32_t> numbers_;
  std::uint32_t uses_ = 0;
};

}  // namespace spectrane
