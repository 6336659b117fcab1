#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "output/workbook/cellstyles.h"
#include "output/workbook/drawing.h"
#include "output/workbook/sharedstrings.h"

namespace spectrane {

/// What a sheet of this format can hold.
inline constexpr std::uint32_t kMostSheetRows = 65536;
inline constexpr std::uint32_t kMostSheetColumns = 256;

/// Cells from one corner to the other, both included; from 0.
struct CellRange {
  std::uint32_t FirstRow = 0;
  std::uint32_t FirstColumn = 0;
  std::uint32_t LastRow = 0;
  std::uint32_t LastColumn = 0;
  bool operator==(const CellRange&) const = default;
};

/// A spreadsheet of one sheet, built in memory and saved as a binary workbook (.xls, BIFF8). Rows and columns
/// count from 0; a place outside the sheet throws std::out_of_range. Texts are UTF-8.
class Workbook {
 public:
  /// Of AddStyle().
  using Style = std::uint16_t;

  explicit Workbook(std::string sheetName);

  /// The same style gives the same number again.
  Style AddStyle(const CellStyle& style) { return styles_.Add(style); }
  /// Always a text, whatever it looks like. A cell that is written twice has what came last.
  void WriteText(std::uint32_t row, std::uint32_t column, std::string_view text, Style style);
  /// A number; NaN and infinity, which no cell can hold, become the text "-".
  void WriteNumber(std::uint32_t row, std::uint32_t column, double value, Style style);
  /// The range shows as one cell, the first of it.
  void Merge(const CellRange& range);
  /// Width in characters of the plain font, 255 at most; `style` is for the cells that are not written.
  void SetColumn(std::uint32_t column, double characters, Style style);
  /// The sheet's only picture, its corner in that cell, at its own size. Columns must have their widths.
  void InsertPicture(std::uint32_t row, std::uint32_t column, SheetPicture picture);

  /// The file.
  std::string Bytes() const;
  /// Writes the file in the place of an old one, whole or not at all. False: nothing has changed at `path`;
  /// `reason` (when given) has the platform's words.
  bool Save(const std::string& path, std::string* reason = nullptr) const;

 private:
  struct Cell {
    std::uint32_t Row;
    std::uint16_t Column;
    Style Look;
    bool IsText;
    std::uint32_t Text;
    double Number;
  };
  struct Column {
    double Characters;
    Style Look;
  };
  struct PlacedPicture {
    SheetPicture Picture;
    PictureCorner From;
    PictureCorner To;
  };

  void AddCell(Cell cell);
  int WidthOf(std::uint32_t column) const;
  PictureCorner CornerAt(int x, int y) const;
  std::vector<Cell> CellsInOrder() const;
  void WriteGlobals(RecordWriter& records) const;
  void WriteSheet(RecordWriter& records) const;
  void WriteColumns(RecordWriter& records) const;
  void WriteCells(RecordWriter& records, const std::vector<Cell>& cells) const;
  void WriteMerged(RecordWriter& records) const;

  std::string sheetName_;
  CellStyles styles_;
  SharedStrings texts_;
  std::vector<Cell> cells_;
  std::vector<CellRange> merged_;
  std::vector<std::optional<Column>> columns_;
  std::optional<PlacedPicture> picture_;
};

}  // namespace spectrane
