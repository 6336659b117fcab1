#include "files/file.h"

#include "files/fileheader.h"
#include "files/filenumber.h"

namespace spectrane {

bool GetFileType(const std::string& path, std::int32_t& fileType, FileFault* fault) {
  const int fileNumber = FreeFileNumber();
  FileHeader header;
  bool known = false;
  if (OpenBinaryFile(path, fileNumber)) {
    if (!ReadFileHeader(fileNumber, header)) {
      NoteFault(fileNumber, {FileError::Damaged, FileLength(fileNumber), 0, 0, {}});
    } else if (HeaderHolds(header)) {
      known = true;
    } else {
      NoteFault(fileNumber, {FileError::Foreign, 0, 0, 0, {}});
    }
  }
  CloseFileNumber(fileNumber);
  if (fault != nullptr) *fault = FaultOf(fileNumber);
  if (known) fileType = header.FileType;
  return known;
}

}  // namespace spectrane
