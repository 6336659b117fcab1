#include "fuzz/checks/filecheck.h"

namespace spectrane::fuzz {

std::string CheckFileType(const std::string& path, Bytes file) {
  constexpr std::int32_t kBefore = 0x5A5A5A5A;
  std::int32_t fileType = kBefore;
  FileFault fault;
  const bool known = GetFileType(path, fileType, &fault);
  if (known != HeaderStands(file))
    return known ? "GetFileType took a foreign file" : "GetFileType refused a file";
  if (fileType != (known ? LongAt(file, 0) : kBefore)) return "GetFileType gave another type";
  const FileError refusal = file.size() < kHeader ? FileError::Damaged : FileError::Foreign;
  if (fault.Error != (known ? FileError::None : refusal)) return "GetFileType gave another fault";
  return FreeFileNumber() == 1 ? "" : "GetFileType left the file open";
}

Readable ReadableOf(const FileTable& table, std::int64_t stated, std::int64_t held) {
  if (stated < 0) return {0, FileError::Damaged};
  if (stated > table.MostRecords) return {0, FileError::TooBig};
  if (stated > held) return {held, FileError::Damaged};
  return {stated, FileError::None};
}

FileError RefusalOf(const FileTable& table, Bytes file) {
  if (file.size() < kHeader) return FileError::Damaged;
  if (!HeaderStands(file)) return FileError::Foreign;
  return LongAt(file, 0) == table.FileType ? FileError::Damaged : FileError::WrongKind;
}

}  // namespace spectrane::fuzz
