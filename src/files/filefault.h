#pragma once

#include <cstdint>
#include <string>

namespace spectrane {

/// What went wrong with a file, below the Boolean that the procedures return.
enum class FileError {
  None,
  /// No file of that name.
  Missing,
  /// A new file was wanted and the name is taken.
  Exists,
  /// A folder, a pipe or a device.
  NotRegular,
  /// No data file of this system.
  Foreign,
  /// A data file of another kind than asked for.
  WrongKind,
  /// The file ends, or contradicts itself, at `Offset`.
  Damaged,
  /// More records than the program holds.
  TooBig,
  /// The platform refused; `Reason` has its words.
  InputOutput,
  /// A document without anything to save.
  NotSavable,
  /// A document that was read from its file only in part, and must not take that file's place.
  HalfRead,
};

struct FileFault {
  FileError Error = FileError::None;
  /// Byte offset of a damage.
  std::int64_t Offset = 0;
  /// Records that the file states, and those of them that it has, where the fault is about them.
  std::int64_t Stated = 0;
  std::int64_t Held = 0;
  /// The platform's own words; empty when it said nothing.
  std::string Reason;

  explicit operator bool() const { return Error != FileError::None; }
};

/// Why a file was not taken, in plain words.
std::string FaultWords(const FileFault& fault);

}  // namespace spectrane
