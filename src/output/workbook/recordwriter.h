#pragma once

#include <cstdint>
#include <string_view>

#include "output/workbook/bytewriter.h"

namespace spectrane {

/// Numbers of the record kinds that a workbook of this library has (BIFF8).
enum class RecordKind : std::uint16_t {
  Eof = 0x000A,
  CalcCount = 0x000C,
  CalcMode = 0x000D,
  Precision = 0x000E,
  RefMode = 0x000F,
  Delta = 0x0010,
  Iteration = 0x0011,
  Protect = 0x0012,
  Password = 0x0013,
  Header = 0x0014,
  Footer = 0x0015,
  WindowProtect = 0x0019,
  Selection = 0x001D,
  DateMode = 0x0022,
  PrintHeaders = 0x002A,
  PrintGridLines = 0x002B,
  Font = 0x0031,
  Continue = 0x003C,
  Window1 = 0x003D,
  Backup = 0x0040,
  CodePage = 0x0042,
  DefaultColumnWidth = 0x0055,
  WriteAccess = 0x005C,
  Obj = 0x005D,
  SaveRecalc = 0x005F,
  ColumnInfo = 0x007D,
  Guts = 0x0080,
  SheetBool = 0x0081,
  GridSet = 0x0082,
  CentreAcross = 0x0083,
  CentreDown = 0x0084,
  BoundSheet = 0x0085,
  Country = 0x008C,
  HideObjects = 0x008D,
  FunctionGroups = 0x009C,
  PageSetup = 0x00A1,
  MenuChanges = 0x00C1,
  BookBool = 0x00DA,
  ExtendedFormat = 0x00E0,
  InterfaceHeader = 0x00E1,
  InterfaceEnd = 0x00E2,
  MergedCells = 0x00E5,
  DrawingGroup = 0x00EB,
  Drawing = 0x00EC,
  SharedStrings = 0x00FC,
  LabelShared = 0x00FD,
  TabIds = 0x013D,
  NaturalLanguage = 0x0160,
  DoubleStream = 0x0161,
  RefreshAll = 0x01B7,
  Dimensions = 0x0200,
  Number = 0x0203,
  Row = 0x0208,
  DefaultRowHeight = 0x0225,
  Window2 = 0x023E,
  Style = 0x0293,
  Format = 0x041E,
  Begin = 0x0809,
};

/// Most bytes that one record carries; more go into records of the kind Continue.
inline constexpr std::size_t kRecordLimit = 8224;

/// A stream of records, one behind the other.
class RecordWriter {
 public:
  /// `body` has kRecordLimit bytes at most.
  void Add(RecordKind kind, std::string_view body) {
    bytes_.U16(static_cast<std::uint16_t>(kind)).U16(static_cast<std::uint32_t>(body.size())).Raw(body);
  }
  void Add(RecordKind kind, const ByteWriter& body) { Add(kind, std::string_view(body.Bytes())); }
  /// A record with one number of 16 bits.
  void AddU16(RecordKind kind, std::uint32_t value) { Add(kind, ByteWriter().U16(value)); }
  void Raw(std::string_view records) { bytes_.Raw(records); }

  ByteWriter& Stream() { return bytes_; }
  const std::string& Bytes() const { return bytes_.Bytes(); }
  std::size_t Size() const { return bytes_.Size(); }

 private:
  ByteWriter bytes_;
};

/// A text with its length in front, as `lengthBytes` bytes: one byte a character where all fit, else UTF-16.
void PutText(ByteWriter& body, std::u16string_view text, int lengthBytes);
/// Every character fits into one byte.
bool IsNarrow(std::u16string_view text);
void PutUnits(ByteWriter& body, std::u16string_view text, bool narrow);

}  // namespace spectrane
