#pragma once

#include <cstdint>
#include <string>

namespace spectrane {

/// What tells one state of a file from the next without reading it.
struct FileState {
  std::int64_t Size = -1;       ///< [bytes]; -1: there is none
  std::int64_t ModifiedNs = 0;  ///< since 1970; whoever writes a file can set it
  /// The file itself, whatever its name: one that took its place has another number.
  std::uint64_t Volume = 0;
  std::uint64_t Index = 0;
  /// When the platform last noted a change of the file, which nobody can set. In units of its own.
  std::int64_t Changed = 0;
  /// Nothing is known but the size, and the time to the millisecond.
  bool IsRough = false;

  std::int64_t ModifiedMs() const;
  /// As it was noted down elsewhere.
  static FileState Rough(std::int64_t size, std::int64_t modifiedMs);
};

/// `path` in UTF-8; a symbolic link is followed.
FileState FileStateOf(const std::string& path);

/// As far as both are known.
bool IsSameState(const FileState& one, const FileState& other);

}  // namespace spectrane
