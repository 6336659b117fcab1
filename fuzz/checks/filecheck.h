#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "files/datafile.h"
#include "files/file.h"
#include "fuzz/checks/filetable.h"
#include "fuzz/checks/inputfile.h"

namespace spectrane::fuzz {

/// Of GetFileType on the file at `path`: words about what it got wrong; empty when all is right.
std::string CheckFileType(const std::string& path, Bytes file);

/// What `stated` and `held` records have to come to: the number that is read, and the fault.
struct Readable {
  std::int64_t Count;
  FileError Error;
};
Readable ReadableOf(const FileTable& table, std::int64_t stated, std::int64_t held);
/// The fault that a file leaves behind which does not open as this kind.
FileError RefusalOf(const FileTable& table, Bytes file);

/// Opens and reads a file of one kind in every way there is and compares each answer with what the bytes say.
template <typename OptionT, typename RecordT>
class FileCheck {
 public:
  FileCheck(const FileTable& table, const FileModule<OptionT, RecordT>& module)
      : table_(table), module_(module) {
    // A block is never asked for more than its table says, so that a wrong size is seen and not run into.
    expected_.resize(std::max({table.OptionSize, table.RecordSize, module.Option.Size, module.Record.Size}));
    written_.resize(expected_.size());
    mark_.assign(expected_.size(), 'Z');
    module.Option.Decode(mark_.data(), &markedOption_, 1);
    module.Record.Decode(mark_.data(), &markedRecord_, 1);
  }

  /// Words about the first answer that is wrong; empty when all are right.
  std::string Run(Bytes file) {
    if (module_.Option.Size != table_.OptionSize || module_.Record.Size != table_.RecordSize) {
      return "a block has another size";
    }
    input_.Hold(file);
    std::string wrong = CheckFileType(input_.Path(), file);
    if (wrong.empty()) wrong = CheckOpen(file);
    if (wrong.empty()) wrong = CheckLoad(file);
    if (wrong.empty() && FreeFileNumber() != 1) wrong = "a file was left open";
    return wrong;
  }

 private:
  std::string CheckOpen(Bytes file) {
    option_ = markedOption_;
    int number = 0;
    const bool opened = module_.Open(input_.Path(), number, option_);
    checked_ = option_;
    std::string wrong;
    if (opened != Opens(table_, file)) {
      wrong = opened ? "Open took a file that is not whole" : "Open refused a whole file";
    } else if (!OptionIs(opened, file)) {
      wrong = opened ? "the option block differs from the file" : "a refused file changed the option block";
    } else if (FaultOf(number).Error != (opened ? FileError::None : RefusalOf(table_, file))) {
      wrong = "Open left another fault behind";
    } else {
      wrong = CheckRecords(number, file, opened);
    }
    CloseDataFile(number);
    if (wrong.empty() && module_.Read(number, record_, 0)) wrong = "a record was read from a closed file";
    return wrong;
  }

  std::string CheckRecords(int number, Bytes file, bool opened) {
    using Limits = std::numeric_limits<std::int32_t>;
    const auto held = static_cast<std::int32_t>(Held(table_, file.size()));
    if (RecordsInFile(module_, number) != held) return "another number of records in the file";
    const std::int64_t stated =
        opened ? std::clamp<std::int64_t>(Stated(table_, file), Limits::min(), Limits::max()) : 0;
    for (const std::int32_t index : std::array{0, held - 1, held, held / 2, -1, Limits::min(), Limits::max(),
                                               static_cast<std::int32_t>(stated)}) {
      record_ = markedRecord_;
      const bool read = module_.Read(number, record_, index);
      if (read != HasRecord(table_, file.size(), index)) {
        return (read ? "read a record that the file does not have: " : "did not read record ") +
               std::to_string(index);
      }
      if (read ? !RecordIs(record_, RecordBytes(file, index)) : !(record_ == markedRecord_)) {
        return (read ? "differs from the file: record " : "not read, and changed: record ") +
               std::to_string(index);
      }
    }
    return {};
  }

  std::string CheckLoad(Bytes file) {
    option_ = markedOption_;
    std::vector<RecordT> records(1);
    const FileFault fault = LoadDataFile(module_, input_.Path(), option_, records);
    const bool opened = Opens(table_, file);
    // NaN is not equal to itself; then the bytes are compared.
    if (!(option_ == checked_) && !OptionIs(opened, file)) return "the loaded option block differs";
    const std::int64_t held = Held(table_, file.size());
    const Readable readable =
        opened ? ReadableOf(table_, Stated(table_, file), held) : Readable{0, RefusalOf(table_, file)};
    if (fault.Error != readable.Error) return "loading ended with another fault: " + FaultWords(fault);
    if (static_cast<std::int64_t>(records.size()) != readable.Count) {
      return "loaded " + std::to_string(records.size()) + " records, not " + std::to_string(readable.Count);
    }
    if (static_cast<std::int64_t>(records.capacity()) > std::max<std::int64_t>(1, held)) {
      return "room for more records than the file holds";
    }
    for (std::size_t i = 0; i < records.size(); ++i) {
      if (!RecordIs(records[i], RecordBytes(file, static_cast<std::int64_t>(i)))) {
        return "differs from the file: loaded record " + std::to_string(i);
      }
    }
    return {};
  }

  const unsigned char* RecordBytes(Bytes file, std::int64_t index) const {
    return file.data() + table_.FirstRecord + static_cast<std::size_t>(index) * table_.RecordSize;
  }

  /// The option block of the file, or the one from before.
  bool OptionIs(bool opened, Bytes file) {
    return opened ? Is(module_.Option, &option_, file.data() + kHeader, table_.Option)
                  : option_ == markedOption_;
  }
  bool RecordIs(const RecordT& record, const unsigned char* bytes) {
    return Is(module_.Record, &record, bytes, table_.Record);
  }
  /// `object` written out gives `bytes` again, and no text loses a character.
  bool Is(const Block& block, const void* object, const unsigned char* bytes, std::span<const Row> rows) {
    std::memcpy(expected_.data(), bytes, block.Size);
    MendBooleans(rows, expected_.data());
    bool lost = false;
    block.Encode(object, written_.data(), lost);
    return !lost && std::memcmp(written_.data(), expected_.data(), block.Size) == 0;
  }

  const FileTable& table_;
  const FileModule<OptionT, RecordT>& module_;
  InputFile input_;
  /// What stands in option block and record before each call; 'Z' everywhere.
  std::vector<unsigned char> mark_;
  OptionT markedOption_;
  RecordT markedRecord_;
  OptionT option_;
  /// As Open left it, compared with the bytes.
  OptionT checked_;
  RecordT record_;
  std::vector<unsigned char> expected_;
  std::vector<unsigned char> written_;
};

}  // namespace spectrane::fuzz
