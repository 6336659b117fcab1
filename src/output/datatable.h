#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace spectrane {

/// In the place of a number pattern: one that goes by the size of the value.
inline constexpr const char* kBySize = "General";

struct TableColumn {
  std::string Title;
  /// Number pattern, or kBySize; empty for a column of texts.
  std::string Pattern;
  /// On a spreadsheet [characters].
  double Width = 12;
  /// The pattern of a value where Pattern is kBySize; empty for the rule that results of any size follow:
  /// fewer decimals the larger the value is.
  std::function<std::string(double value)> PatternOf = {};

  bool HoldsTexts() const { return Pattern.empty(); }
};

/// A text stands as it is; a number by the pattern of its column.
using TableCell = std::variant<std::string, double>;

/// A table as exports and reports print it. Rows are asked for one by one and not kept.
struct DataTable {
  /// Stands above the table; may be empty. In exports so many empty lines come before it.
  std::string Heading;
  int LinesBefore = 0;
  std::vector<TableColumn> Columns;
  std::int32_t RowCount = 0;
  std::function<TableCell(std::int32_t row, std::size_t column)> CellAt;
  /// Stands in the place of rows where there are none.
  std::string EmptyWords;
};

/// The cell in one line: what would begin another cell or line becomes a blank, NaN and infinity "-".
std::string CellText(const TableColumn& column, const TableCell& cell);

/// The number pattern of a value in that column; as many decimals as its text has where they go by size.
std::string CellPattern(const TableColumn& column, double value);

}  // namespace spectrane
