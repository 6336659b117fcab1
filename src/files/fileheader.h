#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "files/block.h"

namespace spectrane {

/// Bytes that every data file begins with.
inline constexpr std::size_t kFileHeaderSize = 104;
inline constexpr std::int32_t kFileMagic = 0x12345678;
inline constexpr const char* kFileAuthor = "Kestu";

struct FileHeader {
  /// Number of the file's kind.
  std::int32_t FileType = 0;
  /// Version of the program that wrote the file; no reader looks at it.
  std::string Version;
  /// The fixed word by which a file of this system is known, together with `Magic`.
  std::string Author;
  std::string Contact;
  std::string Reserved1;
  std::string Reserved2;
  std::int32_t Magic = 0;
};

const Block& FileHeaderBlock();
/// The header that this program writes.
FileHeader NewFileHeader(std::int32_t fileType);
/// Author (blanks around it do not count) and magic number are those of this system.
bool HeaderHolds(const FileHeader& header);
/// Reads the header of an open file; false when the file is shorter.
bool ReadFileHeader(int fileNumber, FileHeader& header);

}  // namespace spectrane
