#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "output/datatable.h"
#include "output/workbook/workbook.h"

namespace spectrane {

/// What an export writes, as text or as a spreadsheet.
struct ExportSheet {
  /// In front of the tables.
  std::vector<std::string> Lines;
  std::vector<DataTable> Tables;
  /// So many of the lines, the first ones, stand in the text alone.
  std::size_t TextOnlyLines = 0;
};

/// How far a long piece of work is [%]; false ends it.
using WorkProgress = std::function<bool(int percent)>;

/// The sheet as a text file: UTF-8, a line a row, cells joined by tabs. Empty when `progress` ended it.
std::string ExportText(const ExportSheet& sheet, const WorkProgress& progress = {});

/// Whether a spreadsheet has a row for each line, title and row of the sheet.
bool FitsWorkbook(const ExportSheet& sheet);
/// Why it is refused otherwise, in plain words.
inline constexpr const char* kTooLongForWorkbook =
    "a spreadsheet of this kind holds 65536 rows; export as text";

/// The sheet as a spreadsheet of the same rows: the lines and the first heading merged across the table,
/// numbers as numbers in the patterns of their columns, `picture` at the right of the first row of tables.
/// Nothing when `progress` ended it, or when it does not fit.
std::optional<Workbook> ExportWorkbook(const ExportSheet& sheet, const std::optional<SheetPicture>& picture,
                                       const WorkProgress& progress = {});

}  // namespace spectrane
