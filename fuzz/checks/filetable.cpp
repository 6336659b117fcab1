#include "fuzz/checks/filetable.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace spectrane::fuzz {
namespace {

constexpr std::int64_t kLargestLong = 0x7FFFFFFF;
constexpr std::int64_t kMostPoints = 10001;

constexpr Row kBasOption[] = {{Form::Text, 1, 256}, {Form::Text, 1, 128}, {Form::Long}};
constexpr Row kBasRecord[] = {{Form::Long, 3}, {Form::Double}, {Form::Text, 1, 256}};

constexpr Row kQuaOption[] = {
    {Form::Text, 21, 256}, {Form::Double, 126},  {Form::Boolean, 21}, {Form::Double, 21}, {Form::Boolean, 21},
    {Form::Text, 21, 256}, {Form::Long, 2},      {Form::Double, 5},   {Form::Boolean},    {Form::Long},
    {Form::Double, 4},     {Form::Text, 1, 256}, {Form::Long},        {Form::Double, 4},  {Form::Long, 12},
    {Form::Boolean},       {Form::Double, 4},    {Form::Long},
};
constexpr Row kQuaRecord[] = {{Form::Text, 1, 256}, {Form::Double, 5}, {Form::Text, 1, 256}};

constexpr Row kTisOption[] = {
    {Form::Double}, {Form::Long, 3}, {Form::Integer}, {Form::Double, 4}, {Form::Long, 4}};
constexpr Row kTisRecord[] = {{Form::Long}, {Form::Double}};

constexpr Row kWlsOption[] = {{Form::Double, 6}, {Form::Long, 8}};
constexpr Row kWlsRecord[] = {{Form::Long, 3}, {Form::Double}, {Form::Long}};
constexpr Row kWls2Record[] = {{Form::Double, 3}};

constexpr Row kMulOption[] = {{Form::Double, 32}, {Form::Long, 2}};
constexpr Row kMulRecord[] = {{Form::Double, 17}, {Form::Text, 1, 256}};

constexpr Row kDnaOption[] = {{Form::Double, 8}, {Form::Long, 3}};
constexpr Row kDnaRecord[] = {{Form::Text, 1, 256}, {Form::Double, 7}, {Form::Text, 1, 256}};

constexpr Row kBslOption[] = {{Form::Double, 3}, {Form::Long}};
constexpr Row kBslRecord[] = {{Form::Double}, {Form::Long, 2}};

constexpr FileTable kTables[] = {
    {"qua", "qua", 1, 12476, 12582, 552, kLargestLong, 12472, kQuaOption, kQuaRecord},
    {"tis", "tis", 2, 70, 174, 12, kMostPoints, 54, kTisOption, kTisRecord},
    {"wls", "wls", 3, 80, 184, 24, kMostPoints, 72, kWlsOption, kWlsRecord},
    {"mul", "mul", 4, 264, 368, 392, kLargestLong, 260, kMulOption, kMulRecord},
    {"dna", "dna", 5, 76, 180, 568, kLargestLong, 72, kDnaOption, kDnaRecord},
    {"bsl", "bsl", 6, 28, 132, 16, kMostPoints, kFromRange, kBslOption, kBslRecord},
    {"bas", "bas", 11, 388, 492, 276, kLargestLong, 384, kBasOption, kBasRecord},
    {"wls2", "wls", 12, 80, 184, 24, kMostPoints, 72, kWlsOption, kWls2Record},
};

void PutLittle(unsigned char* bytes, std::uint64_t value, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

}  // namespace

std::size_t Row::Width() const {
  switch (Is) {
    case Form::Long:
      return 4;
    case Form::Integer:
    case Form::Boolean:
      return 2;
    case Form::Double:
      return 8;
    case Form::Text:
      break;
  }
  return TextWidth;
}

std::span<const FileTable> FileTables() {
  return kTables;
}

const FileTable& TableOf(std::int32_t fileType) {
  for (const FileTable& table : kTables) {
    if (table.FileType == fileType) return table;
  }
  std::abort();
}

std::int32_t LongAt(Bytes bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = (value << 8) | bytes[offset + i];
  return static_cast<std::int32_t>(value);
}

double DoubleAt(Bytes bytes, std::size_t offset) {
  std::uint64_t value = 0;
  for (std::size_t i = 8; i-- > 0;) value = (value << 8) | bytes[offset + i];
  return std::bit_cast<double>(value);
}

bool HeaderStands(Bytes file) {
  if (file.size() < kHeader) return false;
  std::size_t first = 20;
  std::size_t last = 36;
  while (first < last && file[first] == ' ') ++first;
  while (last > first && file[last - 1] == ' ') --last;
  return last - first == 5 && std::memcmp(file.data() + first, "Kestu", 5) == 0 &&
         LongAt(file, 100) == 305419896;
}

bool Opens(const FileTable& table, Bytes file) {
  return HeaderStands(file) && LongAt(file, 0) == table.FileType && file.size() >= kHeader + table.OptionSize;
}

std::int64_t Stated(const FileTable& table, Bytes file) {
  if (table.CountAt != kFromRange) return LongAt(file, kHeader + table.CountAt);
  // Both ends have a record; std::rint takes halves to the even neighbour.
  const double records = std::rint(DoubleAt(file, kHeader) - DoubleAt(file, kHeader + 8)) + 1;
  if (!(records >= 0) || std::isinf(records)) return -1;
  return records > static_cast<double>(kLargestLong) ? kLargestLong + 1 : static_cast<std::int64_t>(records);
}

std::int64_t Held(const FileTable& table, std::size_t length) {
  return length < table.FirstRecord
             ? 0
             : static_cast<std::int64_t>((length - table.FirstRecord) / table.RecordSize);
}

bool HasRecord(const FileTable& table, std::size_t length, std::int64_t index) {
  return index >= 0 && static_cast<std::int64_t>(table.FirstRecord) +
                               (index + 1) * static_cast<std::int64_t>(table.RecordSize) <=
                           static_cast<std::int64_t>(length);
}

void MendBooleans(std::span<const Row> rows, unsigned char* block) {
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.Count; ++i, block += row.Width()) {
      if (row.Is == Form::Boolean && (block[0] | block[1]) != 0) block[0] = block[1] = 0xFF;
    }
  }
}

void MendHeader(std::int32_t fileType, std::span<unsigned char> file) {
  if (file.size() < kHeader) return;
  PutLittle(file.data(), static_cast<std::uint32_t>(fileType), 4);
  std::memcpy(file.data() + 20, "Kestu           ", 16);
  PutLittle(file.data() + 100, 305419896, 4);
}

void MendCount(const FileTable& table, std::span<unsigned char> file, std::int64_t count) {
  if (file.size() < kHeader + table.OptionSize) return;
  if (table.CountAt != kFromRange) {
    PutLittle(file.data() + kHeader + table.CountAt, static_cast<std::uint64_t>(count), 4);
    return;
  }
  constexpr double kStart = 190;
  PutLittle(file.data() + kHeader, std::bit_cast<std::uint64_t>(kStart + static_cast<double>(count - 1)), 8);
  PutLittle(file.data() + kHeader + 8, std::bit_cast<std::uint64_t>(kStart), 8);
}

}  // namespace spectrane::fuzz
