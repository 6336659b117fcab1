#include "output/datatable.h"

#include <cmath>

#include "base/numbers.h"
#include "link/function.h"

namespace spectrane {
namespace {

std::string OneLine(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  return text;
}

std::string BySize(double value) {
  if (!std::isfinite(value)) return "-";
  std::string text = FormatValue(value);
  return text.erase(0, text.find_first_not_of(' '));
}

}  // namespace

std::string CellText(const TableColumn& column, const TableCell& cell) {
  if (const auto* const text = std::get_if<std::string>(&cell)) return OneLine(*text);
  const double value = std::get<double>(cell);
  if (column.Pattern == kBySize && !column.PatternOf) return BySize(value);
  return Format(value, CellPattern(column, value));
}

std::string CellPattern(const TableColumn& column, double value) {
  if (column.Pattern != kBySize) return column.Pattern;
  if (column.PatternOf) return column.PatternOf(value);
  const std::string text = BySize(value);
  const std::size_t point = text.find('.');
  return point == std::string::npos ? "0" : "0." + std::string(text.size() - point - 1, '0');
}

}  // namespace spectrane
