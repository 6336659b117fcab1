#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "base/filereplacement.h"
#include "files/block.h"
#include "files/filefault.h"
#include "files/fileheader.h"
#include "files/filenumber.h"

namespace spectrane {

/// What tells one kind of data file from another: header, one option block, an array of records.
struct FileKind {
  /// Short word of the kind ("bas").
  const char* Name;
  std::int32_t FileType;
  Block Option;
  /// Offset of record 0; bytes between the option block and it are spare, written as zeros and never asked
  /// for.
  std::size_t FirstRecord;
  Block Record;
  /// Most records that the program takes from one file.
  std::int32_t MostRecords;
};

/// The blocks have their places.
constexpr bool KindHolds(const FileKind& kind) {
  return kind.FirstRecord >= kFileHeaderSize + kind.Option.Size && kind.FirstRecord <= kLargestPiece &&
         kind.Record.Size > 0 && kind.Record.Size <= kLargestPiece;
}

/// The procedures of all kinds. `option` and `record` point to the structures that the kind's layouts
/// describe.
bool CreateDataFile(const FileKind& kind, const std::string& path, int& fileNumber, const void* option,
                    bool ownerOnly = false);
bool OpenDataFile(const FileKind& kind, const std::string& path, int& fileNumber, void* option);
bool ReadDataRecord(const FileKind& kind, int fileNumber, void* record, std::int32_t index);
/// Reads `count` records from `index` on into as many structures in a row, many at a time. Returns how many
/// could be read, counted from the first.
std::int32_t ReadDataRecords(const FileKind& kind, int fileNumber, void* records, std::size_t recordSize,
                             std::int32_t index, std::int32_t count);
bool WriteDataRecord(const FileKind& kind, int fileNumber, const void* record, std::int32_t index);
void CloseDataFile(int fileNumber);

/// Closes the file of a number at the end of a block, however the block is left.
struct ClosedAtEnd {
  int Number = 0;
  ClosedAtEnd() = default;
  ClosedAtEnd(const ClosedAtEnd&) = delete;
  ClosedAtEnd& operator=(const ClosedAtEnd&) = delete;
  ~ClosedAtEnd() { CloseDataFile(Number); }
};

/// Whole records behind the option block of an open file.
std::int64_t RecordsInFile(const FileKind& kind, int fileNumber);
/// How many of the records that a file states can be read; never more than its length holds. `fault` is
/// Damaged for a negative count (0 is returned) and for a file that holds fewer, TooBig above the kind's
/// limit (0).
std::int32_t ReadableCount(const FileKind& kind, int fileNumber, std::int64_t stated, FileFault& fault);

/// A kind with the types of its structures: what the five procedures of a module, savers and openers work
/// with.
template <typename OptionT, typename RecordT>
struct FileModule : FileKind {
  /// Records that an option block states; any number the block may hold.
  std::int64_t (*StatedCount)(const OptionT& option);
  /// States the number of records. Does nothing where the number follows from other fields.
  void (*StateCount)(OptionT& option, std::int32_t count);

  /// A new file with header and option block, left open. False: the path was taken or could not be opened.
  /// `ownerOnly`: nobody else may read it, where the platform has such bits.
  bool Create(const std::string& path, int& fileNumber, const OptionT& option, bool ownerOnly = false) const {
    return CreateDataFile(*this, path, fileNumber, &option, ownerOnly);
  }
  /// An existing file. False: `option` is untouched; the file may stay open under `fileNumber` and is the
  /// caller's to close.
  bool Open(const std::string& path, int& fileNumber, OptionT& option) const {
    return OpenDataFile(*this, path, fileNumber, &option);
  }
  /// False, with nothing read, when the record does not lie wholly inside the file.
  bool Read(int fileNumber, RecordT& record, std::int32_t index) const {
    return ReadDataRecord(*this, fileNumber, &record, index);
  }
  /// Always true; what went wrong shows in FaultOf() once the file is closed.
  bool Write(int fileNumber, const RecordT& record, std::int32_t index) const {
    return WriteDataRecord(*this, fileNumber, &record, index);
  }
};

/// Reads a whole file. `option` is set when the option block could be read; `records` then has every record
/// that can be read, also when a fault says that the file states more, or that reading ended in the middle.
/// With any other fault `records` is empty.
template <typename OptionT, typename RecordT>
FileFault LoadDataFile(const FileModule<OptionT, RecordT>& module, const std::string& path, OptionT& option,
                       std::vector<RecordT>& records) {
  records.clear();
  ClosedAtEnd file;
  if (!module.Open(path, file.Number, option)) return FaultOf(file.Number);
  FileFault fault;
  const std::int32_t count = ReadableCount(module, file.Number, module.StatedCount(option), fault);
  records.resize(static_cast<std::size_t>(count));
  const std::int32_t read = ReadDataRecords(module, file.Number, records.data(), sizeof(RecordT), 0, count);
  if (read < count) {
    records.resize(static_cast<std::size_t>(read));
    NoteFault(file.Number, {FileError::Damaged, FileLength(file.Number), count, read, {}});
  }
  return fault ? fault : FaultOf(file.Number);
}

/// Writes a whole file and puts it in the place of the one at `path`, which stays as it was on any fault.
/// `recordAt(i)` gives record i of `count`. `lost` (when given) is set when a text had to give up a
/// character.
template <typename OptionT, typename RecordT, typename RecordAt>
FileFault SaveDataFile(const FileModule<OptionT, RecordT>& module, const std::string& path, OptionT option,
                       std::int32_t count, RecordAt recordAt, bool* lost = nullptr) {
  module.StateCount(option, count);
  FileReplacement replacement(path);
  ClosedAtEnd file;
  if (module.Create(replacement.TemporaryPath(), file.Number, option, replacement.OwnerOnly())) {
    for (std::int32_t i = 0; i < count && !FaultOf(file.Number); ++i) {
      module.Write(file.Number, recordAt(i), i);
    }
  }
  CloseDataFile(file.Number);
  FileFault fault = FaultOf(file.Number);
  if (fault) return fault;
  if (lost != nullptr && TextLost(file.Number)) *lost = true;
  if (!replacement.Commit(&fault.Reason)) fault.Error = FileError::InputOutput;
  return fault;
}

/// No limit but that of the count's own type.
inline constexpr std::int32_t kNoRecordLimit = std::numeric_limits<std::int32_t>::max();

}  // namespace spectrane
