#include "output/workbook/workbook.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "base/filereplacement.h"
#include "base/utf8text.h"
#include "output/workbook/compoundfile.h"

namespace spectrane {
namespace {

constexpr std::uint16_t kPlainCell = 15;
/// Height of a row [twips], and in pixels of 1/96 inch.
constexpr std::uint32_t kRowHeight = 255;
constexpr int kRowPixels = 17;
/// A digit of the plain font, the margins of a cell, a column of standard width [pixels].
constexpr int kDigitPixels = 7;
constexpr int kMarginPixels = 5;
constexpr int kStandardPixels = 64;
constexpr std::uint32_t kStandardCharacters = 8;

void CheckPlace(std::uint32_t row, std::uint32_t column) {
  if (row >= kMostSheetRows || column >= kMostSheetColumns) throw std::out_of_range("no such cell");
}

enum class Substream : std::uint16_t { Globals = 0x0005, Sheet = 0x0010 };

void WriteBegin(RecordWriter& records, Substream kind) {
  ByteWriter body;
  body.U16(0x0600).U16(static_cast<std::uint16_t>(kind)).U16(0x0DBB).U16(0x07CC).U32(0x41).U32(0x0006);
  records.Add(RecordKind::Begin, body);
}

/// Name of who wrote the file, filled up with blanks.
void WriteWriter(RecordWriter& records) {
  constexpr std::size_t kLength = 112;
  ByteWriter body;
  PutText(body, u"Spectrane", 2);
  body.Raw(std::string(kLength - body.Size(), ' '));
  records.Add(RecordKind::WriteAccess, body);
}

void WriteCalculation(RecordWriter& records) {
  records.AddU16(RecordKind::CalcMode, 1);
  records.AddU16(RecordKind::CalcCount, 100);
  records.AddU16(RecordKind::RefMode, 1);
  records.AddU16(RecordKind::Iteration, 0);
  records.Add(RecordKind::Delta, ByteWriter().F64(0.001));
  records.AddU16(RecordKind::SaveRecalc, 1);
}

void WritePageSetup(RecordWriter& records) {
  constexpr std::uint32_t kA4 = 9;
  constexpr std::uint32_t kPortrait = 0x0002;
  records.AddU16(RecordKind::PrintHeaders, 0);
  records.AddU16(RecordKind::PrintGridLines, 0);
  records.AddU16(RecordKind::GridSet, 1);
  records.Add(RecordKind::Guts, ByteWriter().Zeros(8));
  records.Add(RecordKind::DefaultRowHeight, ByteWriter().U16(0).U16(kRowHeight));
  records.AddU16(RecordKind::SheetBool, 0x04C1);
  records.Add(RecordKind::Header, std::string_view());
  records.Add(RecordKind::Footer, std::string_view());
  records.AddU16(RecordKind::CentreAcross, 0);
  records.AddU16(RecordKind::CentreDown, 0);
  ByteWriter setup;
  setup.U16(kA4).U16(100).U16(1).U16(1).U16(1).U16(kPortrait).U16(600).U16(600).F64(0.5).F64(0.5).U16(1);
  records.Add(RecordKind::PageSetup, setup);
}

void WriteView(RecordWriter& records) {
  records.Add(RecordKind::Window2, ByteWriter().U16(0x06B6).U16(0).U16(0).U32(0x40).U16(0).U16(0).U32(0));
  records.Add(RecordKind::Selection,
              ByteWriter().U8(3).U16(0).U16(0).U16(0).U16(1).U16(0).U16(0).U8(0).U8(0));
}

}  // namespace

Workbook::Workbook(std::string sheetName) : sheetName_(std::move(sheetName)) {}

void Workbook::AddCell(Cell cell) {
  CheckPlace(cell.Row, cell.Column);
  cells_.push_back(cell);
}

void Workbook::WriteText(std::uint32_t row, std::uint32_t column, std::string_view text, Style style) {
  CheckPlace(row, column);
  AddCell({row, static_cast<std::uint16_t>(column), style, true, texts_.Add(text), 0});
}

void Workbook::WriteNumber(std::uint32_t row, std::uint32_t column, double value, Style style) {
  if (!std::isfinite(value)) {
    WriteText(row, column, "-", style);
    return;
  }
  CheckPlace(row, column);
  AddCell({row, static_cast<std::uint16_t>(column), style, false, 0, value});
}

void Workbook::Merge(const CellRange& range) {
  CheckPlace(range.FirstRow, range.FirstColumn);
  CheckPlace(range.LastRow, range.LastColumn);
  merged_.push_back(range);
}

void Workbook::SetColumn(std::uint32_t column, double characters, Style style) {
  CheckPlace(0, column);
  if (columns_.size() <= column) columns_.resize(column + 1);
  columns_[column] = Column{std::clamp(characters, 0.0, 255.0), style};
}

int Workbook::WidthOf(std::uint32_t column) const {
  if (column >= columns_.size() || !columns_[column]) return kStandardPixels;
  return static_cast<int>(columns_[column]->Characters * kDigitPixels) + kMarginPixels;
}

PictureCorner Workbook::CornerAt(int x, int y) const {
  PictureCorner corner;
  while (x >= WidthOf(corner.Column) && corner.Column + 1 < kMostSheetColumns) x -= WidthOf(corner.Column++);
  corner.Row = static_cast<std::uint32_t>(y / kRowPixels);
  const int width = WidthOf(corner.Column);
  corner.Across = static_cast<std::uint32_t>(std::min(x, width - 1) * 1024 / width);
  corner.Down = static_cast<std::uint32_t>(y % kRowPixels * 256 / kRowPixels);
  return corner;
}

void Workbook::InsertPicture(std::uint32_t row, std::uint32_t column, SheetPicture picture) {
  CheckPlace(row, column);
  int left = 0;
  for (std::uint32_t i = 0; i < column; ++i) left += WidthOf(i);
  const int top = static_cast<int>(row) * kRowPixels;
  const PictureCorner to = CornerAt(left + picture.Width, top + picture.Height);
  picture_ = PlacedPicture{std::move(picture), {row, column, 0, 0}, to};
}

std::vector<Workbook::Cell> Workbook::CellsInOrder() const {
  std::vector<Cell> cells = cells_;
  const auto place = [](const Cell& cell) { return std::pair(cell.Row, cell.Column); };
  std::ranges::stable_sort(cells, {}, place);
  // Of equal places the last one stays.
  const auto repeated = std::unique(cells.rbegin(), cells.rend(),
                                    [&](const Cell& a, const Cell& b) { return place(a) == place(b); });
  cells.erase(cells.begin(), repeated.base());
  return cells;
}

void Workbook::WriteGlobals(RecordWriter& records) const {
  constexpr std::uint32_t kUtf16 = 0x04B0;
  WriteBegin(records, Substream::Globals);
  records.AddU16(RecordKind::InterfaceHeader, kUtf16);
  records.AddU16(RecordKind::MenuChanges, 0);
  records.Add(RecordKind::InterfaceEnd, std::string_view());
  WriteWriter(records);
  records.AddU16(RecordKind::CodePage, kUtf16);
  records.AddU16(RecordKind::DoubleStream, 0);
  records.AddU16(RecordKind::TabIds, 1);
  records.AddU16(RecordKind::FunctionGroups, 14);
  for (const RecordKind none : {RecordKind::WindowProtect, RecordKind::Protect, RecordKind::Password,
                                RecordKind::Backup, RecordKind::HideObjects}) {
    records.AddU16(none, 0);
  }
  ByteWriter window;
  window.U16(0).U16(0).U16(0x4000).U16(0x2000).U16(0x38).U16(0).U16(0).U16(1).U16(0x258);
  records.Add(RecordKind::Window1, window);
  records.AddU16(RecordKind::DateMode, 0);
  records.AddU16(RecordKind::Precision, 1);
  records.AddU16(RecordKind::RefreshAll, 0);
  records.AddU16(RecordKind::BookBool, 0);
  styles_.Write(records);
  records.AddU16(RecordKind::NaturalLanguage, 0);
}

void Workbook::WriteColumns(RecordWriter& records) const {
  records.AddU16(RecordKind::DefaultColumnWidth, kStandardCharacters);
  for (std::uint32_t i = 0; i < columns_.size(); ++i) {
    if (!columns_[i]) continue;
    constexpr std::uint32_t kOwnWidth = 2;
    const int units = WidthOf(i) * 256 / kDigitPixels;
    records.Add(RecordKind::ColumnInfo, ByteWriter()
                                            .U16(i)
                                            .U16(i)
                                            .U16(static_cast<std::uint32_t>(units))
                                            .U16(columns_[i]->Look)
                                            .U16(kOwnWidth)
                                            .U16(0));
  }
}

void Workbook::WriteCells(RecordWriter& records, const std::vector<Cell>& cells) const {
  std::uint32_t columns = 0;
  for (const Cell& cell : cells) columns = std::max(columns, cell.Column + 1u);
  ByteWriter extent;
  extent.U32(cells.empty() ? 0 : cells.front().Row).U32(cells.empty() ? 0 : cells.back().Row + 1);
  records.Add(RecordKind::Dimensions, extent.U16(0).U16(columns).U16(0));
  // Rows come in blocks of 32, each before its cells.
  constexpr std::uint32_t kBlock = 32;
  for (auto first = cells.begin(); first != cells.end();) {
    const std::uint32_t block = first->Row / kBlock;
    const auto last =
        std::find_if(first, cells.end(), [&](const Cell& cell) { return cell.Row / kBlock != block; });
    for (auto cell = first; cell != last;) {
      const auto next = std::find_if(cell, last, [&](const Cell& c) { return c.Row != cell->Row; });
      ByteWriter row;
      row.U16(cell->Row).U16(cell->Column).U16((next - 1)->Column + 1u).U16(kRowHeight);
      records.Add(RecordKind::Row, row.U16(0).U16(0).U16(0x0100).U16(kPlainCell));
      cell = next;
    }
    for (; first != last; ++first) {
      ByteWriter body;
      body.U16(first->Row).U16(first->Column).U16(first->Look);
      if (first->IsText) {
        records.Add(RecordKind::LabelShared, body.U32(first->Text));
      } else {
        records.Add(RecordKind::Number, body.F64(first->Number));
      }
    }
  }
}

void Workbook::WriteMerged(RecordWriter& records) const {
  constexpr std::size_t kMostInRecord = 1026;
  for (std::size_t from = 0; from < merged_.size(); from += kMostInRecord) {
    const std::size_t count = std::min(kMostInRecord, merged_.size() - from);
    ByteWriter body;
    body.U16(static_cast<std::uint32_t>(count));
    for (std::size_t i = from; i < from + count; ++i) {
      const CellRange& range = merged_[i];
      body.U16(range.FirstRow).U16(range.LastRow).U16(range.FirstColumn).U16(range.LastColumn);
    }
    records.Add(RecordKind::MergedCells, body);
  }
}

void Workbook::WriteSheet(RecordWriter& records) const {
  WriteBegin(records, Substream::Sheet);
  WriteCalculation(records);
  WritePageSetup(records);
  WriteColumns(records);
  WriteCells(records, CellsInOrder());
  if (picture_) WriteDrawing(records, picture_->From, picture_->To);
  WriteView(records);
  WriteMerged(records);
  records.Add(RecordKind::Eof, std::string_view());
}

std::string Workbook::Bytes() const {
  RecordWriter records;
  WriteGlobals(records);
  const std::size_t sheetPlace = records.Size() + 4;
  ByteWriter sheet;
  sheet.U32(0).U16(0);
  PutText(sheet, Utf16FromUtf8(sheetName_), 1);
  records.Add(RecordKind::BoundSheet, sheet);
  records.Add(RecordKind::Country, ByteWriter().U16(1).U16(1));
  if (picture_) WriteDrawingGroup(records, picture_->Picture);
  texts_.Write(records);
  records.Add(RecordKind::Eof, std::string_view());
  records.Stream().PutU32At(sheetPlace, records.Size());
  WriteSheet(records);
  return CompoundFile(u"Workbook", records.Bytes());
}

bool Workbook::Save(const std::string& path, std::string* reason) const {
  return ReplaceFileContent(path, Bytes(), reason);
}

}  // namespace spectrane
