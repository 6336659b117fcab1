#include "output/exportsheet.h"

#include <algorithm>
#include <utility>

namespace spectrane {
namespace {

#ifdef _WIN32
constexpr const char* kLineEnd = "\r\n";
#else
constexpr const char* kLineEnd = "\n";
#endif

/// The picture stands beside the tables, from the second row on: "H2" beside seven columns.
constexpr std::uint32_t kPictureRow = 1;
constexpr std::uint32_t kPictureColumn = 7;

/// Tells about the rows of all tables, now and then.
class RowProgress {
 public:
  RowProgress(const ExportSheet& sheet, const WorkProgress& progress) : progress_(progress) {
    for (const DataTable& table : sheet.Tables) rows_ += table.RowCount;
  }

  /// One row more is done; false when the work is to end.
  bool Row() {
    constexpr std::int64_t kSteps = 10;
    ++done_;
    const std::int64_t step = done_ * kSteps / rows_;
    if (step == step_) return true;
    step_ = step;
    return !progress_ || progress_(static_cast<int>(step * 100 / kSteps));
  }

 private:
  const WorkProgress& progress_;
  std::int64_t rows_ = 0;
  std::int64_t done_ = 0;
  std::int64_t step_ = 0;
};

bool AppendRows(std::string& text, const DataTable& table, RowProgress& progress) {
  for (std::int32_t row = 0; row < table.RowCount; ++row) {
    for (std::size_t i = 0; i < table.Columns.size(); ++i) {
      if (i > 0) text += '\t';
      text += CellText(table.Columns[i], table.CellAt(row, i));
    }
    text += kLineEnd;
    if (!progress.Row()) return false;
  }
  return true;
}

/// Writes a sheet row by row.
class SheetWriter {
 public:
  SheetWriter(const ExportSheet& sheet, const WorkProgress& progress)
      : sheet_(sheet), progress_(sheet, progress), text_(book_.AddStyle({.NumberFormat = "@"})) {
    for (const DataTable& table : sheet.Tables) columns_ = std::max(columns_, table.Columns.size());
  }

  bool Write() {
    SetColumns();
    for (std::size_t i = sheet_.TextOnlyLines; i < sheet_.Lines.size(); ++i) Merged(sheet_.Lines[i]);
    for (const DataTable& table : sheet_.Tables) {
      if (!Table(table, &table == &sheet_.Tables.front())) return false;
    }
    return true;
  }
  Workbook& Book() { return book_; }

 private:
  Workbook::Style NumberStyle(const std::string& pattern) {
    return book_.AddStyle({.NumberFormat = pattern});
  }
  Workbook::Style StyleOf(const TableColumn& column) {
    return column.HoldsTexts() ? text_ : NumberStyle(column.Pattern);
  }

  void SetColumns() {
    for (const DataTable& table : sheet_.Tables) {
      for (std::uint32_t i = 0; i < table.Columns.size(); ++i)
        book_.SetColumn(i, table.Columns[i].Width, StyleOf(table.Columns[i]));
    }
  }

  void Merged(const std::string& line) {
    if (columns_ > 1) book_.Merge({row_, 0, row_, static_cast<std::uint32_t>(columns_ - 1)});
    book_.WriteText(row_++, 0, line, text_);
  }

  void Titles(const DataTable& table) {
    for (std::uint32_t i = 0; i < table.Columns.size(); ++i) {
      const CellAlign align = table.Columns[i].HoldsTexts() ? CellAlign::Left : CellAlign::Right;
      const auto style = book_.AddStyle({.Bold = true, .NumberFormat = "@", .Align = align});
      book_.WriteText(row_, i, table.Columns[i].Title, style);
    }
    ++row_;
  }

  bool Table(const DataTable& table, bool first) {
    row_ += static_cast<std::uint32_t>(table.LinesBefore);
    if (!table.Heading.empty() && first) {
      Merged(table.Heading);
    } else if (!table.Heading.empty()) {
      book_.WriteText(row_++, 0, table.Heading, text_);
    }
    Titles(table);
    if (table.RowCount == 0) book_.WriteText(row_++, 0, table.EmptyWords, text_);
    std::vector<Workbook::Style> styles;
    for (const TableColumn& column : table.Columns) styles.push_back(StyleOf(column));
    for (std::int32_t row = 0; row < table.RowCount; ++row, ++row_) {
      for (std::uint32_t i = 0; i < table.Columns.size(); ++i) {
        const TableCell cell = table.CellAt(row, i);
        const auto* const number = std::get_if<double>(&cell);
        const bool bySize = number && table.Columns[i].Pattern == kBySize;
        Cell(cell, i, bySize ? NumberStyle(CellPattern(table.Columns[i], *number)) : styles[i]);
      }
      if (!progress_.Row()) return false;
    }
    return true;
  }

  void Cell(const TableCell& cell, std::uint32_t column, Workbook::Style style) {
    if (const auto* const text = std::get_if<std::string>(&cell)) {
      if (!text->empty()) book_.WriteText(row_, column, *text, text_);
    } else {
      book_.WriteNumber(row_, column, std::get<double>(cell), style);
    }
  }

  const ExportSheet& sheet_;
  RowProgress progress_;
  Workbook book_{"sheet1"};
  Workbook::Style text_;
  std::size_t columns_ = 0;
  std::uint32_t row_ = 0;
};

}  // namespace

std::string ExportText(const ExportSheet& sheet, const WorkProgress& progress) {
  std::string text;
  const auto line = [&text](const std::string& words) { text += words + kLineEnd; };
  RowProgress rows(sheet, progress);
  for (const std::string& words : sheet.Lines) line(CellText({}, words));
  for (const DataTable& table : sheet.Tables) {
    for (int i = 0; i < table.LinesBefore; ++i) line({});
    if (!table.Heading.empty()) line(table.Heading);
    std::string titles;
    for (const TableColumn& column : table.Columns)
      titles += (titles.empty() ? "" : "\t") + CellText({}, column.Title);
    line(titles);
    if (table.RowCount == 0) line(table.EmptyWords);
    if (!AppendRows(text, table, rows)) return {};
  }
  return text;
}

bool FitsWorkbook(const ExportSheet& sheet) {
  auto rows = static_cast<std::int64_t>(sheet.Lines.size() - sheet.TextOnlyLines);
  for (const DataTable& table : sheet.Tables) {
    constexpr std::int64_t kTitles = 1;
    rows += table.LinesBefore + (table.Heading.empty() ? 0 : 1) + kTitles + std::max(table.RowCount, 1);
  }
  return rows <= kMostSheetRows;
}

std::optional<Workbook> ExportWorkbook(const ExportSheet& sheet, const std::optional<SheetPicture>& picture,
                                       const WorkProgress& progress) {
  if (!FitsWorkbook(sheet)) return {};
  SheetWriter writer(sheet, progress);
  if (!writer.Write()) return {};
  if (picture) writer.Book().InsertPicture(kPictureRow, kPictureColumn, *picture);
  return std::move(writer.Book());
}

}  // namespace spectrane
