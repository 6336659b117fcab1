#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace spectrane::fuzz {

/// What the files look like, told a second time and without a look at src/files: the checks reckon with these
/// numbers what a reader has to answer.

using Bytes = std::span<const unsigned char>;

enum class Form { Long, Integer, Double, Boolean, Text };

/// Equal elements in a row; rows follow each other without gaps.
struct Row {
  Form Is;
  std::size_t Count = 1;
  /// One text [bytes]; 0 for numbers.
  std::size_t TextWidth = 0;

  std::size_t Width() const;
};

inline constexpr std::size_t kHeader = 104;
/// For FileTable::CountAt: the count follows from the two doubles that the option block begins with.
inline constexpr std::size_t kFromRange = SIZE_MAX;

struct FileTable {
  /// Of the target and of its folder of inputs.
  const char* Name;
  /// Ending of the kind's files, without the point.
  const char* Ending;
  std::int32_t FileType;
  std::size_t OptionSize;
  std::size_t FirstRecord;
  std::size_t RecordSize;
  std::int64_t MostRecords;
  /// Offset of the count in the option block.
  std::size_t CountAt;
  std::span<const Row> Option;
  std::span<const Row> Record;
};

/// All eight kinds.
std::span<const FileTable> FileTables();
const FileTable& TableOf(std::int32_t fileType);

std::int32_t LongAt(Bytes bytes, std::size_t offset);
double DoubleAt(Bytes bytes, std::size_t offset);

/// Length, author and magic number of the header.
bool HeaderStands(Bytes file);
/// The header of this kind and the whole option block.
bool Opens(const FileTable& table, Bytes file);
/// Records that the option block of a file that opens states: below 0 for a range that is no number, above
/// 2^31 - 1 for one that is too long.
std::int64_t Stated(const FileTable& table, Bytes file);
/// Whole records that the length has room for.
std::int64_t Held(const FileTable& table, std::size_t length);
/// The file has the record.
bool HasRecord(const FileTable& table, std::size_t length, std::int64_t index);

/// Makes every Boolean that is not 0 a -1, which is what a writer makes of it.
void MendBooleans(std::span<const Row> rows, unsigned char* block);
/// Sets author, magic number and file type where the file is long enough for a header.
void MendHeader(std::int32_t fileType, std::span<unsigned char> file);
/// States `count` records where the file is long enough for its option block.
void MendCount(const FileTable& table, std::span<unsigned char> file, std::int64_t count);

}  // namespace spectrane::fuzz
