#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "output/workbook/recordwriter.h"

namespace spectrane {

enum class CellAlign : std::uint8_t { General = 0, Left = 1, Centre = 2, Right = 3 };

/// How a cell looks.
struct CellStyle {
  std::string FontName = "Verdana";
  /// [points]
  int FontSize = 10;
  bool Bold = false;
  /// A spreadsheet's number pattern; "@" is text, "General" as the value is.
  std::string NumberFormat = "General";
  CellAlign Align = CellAlign::General;

  bool operator==(const CellStyle&) const = default;
};

/// The styles of a workbook, each once, with the fonts and number formats they need.
class CellStyles {
 public:
  /// The style's number in cell records.
  std::uint16_t Add(const CellStyle& style);
  void Write(RecordWriter& records) const;

 private:
  std::vector<CellStyle> styles_;
};

}  // namespace spectrane
