#include "files/datafile.h"

#include <cstring>

namespace spectrane {
namespace {

std::int64_t RecordOffset(const FileKind& kind, std::int32_t index) {
  return static_cast<std::int64_t>(kind.FirstRecord) +
         static_cast<std::int64_t>(index) * static_cast<std::int64_t>(kind.RecordSize);
}

void WriteBlock(int fileNumber, std::int64_t offset, std::size_t size, Layout layout, const void* object) {
  unsigned char* const bytes = PlaceBytes(fileNumber, offset, size);
  if (bytes == nullptr) return;
  bool lost = false;
  EncodeBlock(layout, object, bytes, lost);
  if (lost) NoteTextLost(fileNumber);
}

/// The bytes between the option block and the first record.
void WriteSpare(const FileKind& kind, int fileNumber) {
  const std::size_t offset = kFileHeaderSize + kind.OptionSize;
  const std::size_t size = kind.FirstRecord - offset;
  if (size == 0) return;
  unsigned char* const bytes = PlaceBytes(fileNumber, static_cast<std::int64_t>(offset), size);
  if (bytes != nullptr) std::memset(bytes, 0, size);
}

void NoteDamage(int fileNumber) {
  NoteFault(fileNumber, {FileError::Damaged, FileLength(fileNumber), 0, 0, {}});
}

}  // namespace

bool CreateDataFile(const FileKind& kind, const std::string& path, int& fileNumber, const void* option,
                    bool ownerOnly) {
  fileNumber = FreeFileNumber();
  if (!CreateBinaryFile(path, fileNumber, ownerOnly)) return false;
  const FileHeader header = NewFileHeader(kind.FileType);
  WriteBlock(fileNumber, 0, kFileHeaderSize, FileHeaderLayout(), &header);
  WriteBlock(fileNumber, kFileHeaderSize, kind.OptionSize, kind.Option, option);
  WriteSpare(kind, fileNumber);
  return true;
}

bool OpenDataFile(const FileKind& kind, const std::string& path, int& fileNumber, void* option) {
  fileNumber = FreeFileNumber();
  if (!OpenBinaryFile(path, fileNumber)) return false;
  FileHeader header;
  if (!ReadFileHeader(fileNumber, header)) {
    NoteDamage(fileNumber);
    return false;
  }
  if (!HeaderHolds(header) || header.FileType != kind.FileType) {
    NoteFault(fileNumber, {FileError::WrongKind, 0, 0, 0, {}});
    return false;
  }
  const unsigned char* const bytes = ViewBytes(fileNumber, kFileHeaderSize, kind.OptionSize);
  if (bytes == nullptr) {
    NoteDamage(fileNumber);
    return false;
  }
  DecodeBlock(kind.Option, bytes, option);
  return true;
}

bool ReadDataRecord(const FileKind& kind, int fileNumber, void* record, std::int32_t index) {
  if (index < 0) return false;
  const unsigned char* const bytes = ViewBytes(fileNumber, RecordOffset(kind, index), kind.RecordSize);
  if (bytes == nullptr) return false;
  DecodeBlock(kind.Record, bytes, record);
  return true;
}

bool WriteDataRecord(const FileKind& kind, int fileNumber, const void* record, std::int32_t index) {
  // A negative index would land in the blocks before the records; it becomes a fault under the number.
  WriteBlock(fileNumber, index < 0 ? -1 : RecordOffset(kind, index), kind.RecordSize, kind.Record, record);
  return true;
}

void CloseDataFile(int fileNumber) {
  CloseFileNumber(fileNumber);
}

std::int64_t RecordsInFile(const FileKind& kind, int fileNumber) {
  const std::int64_t behind = FileLength(fileNumber) - static_cast<std::int64_t>(kind.FirstRecord);
  return behind <= 0 ? 0 : behind / static_cast<std::int64_t>(kind.RecordSize);
}

std::int32_t ReadableCount(const FileKind& kind, int fileNumber, std::int64_t stated, FileFault& fault) {
  const std::int64_t held = RecordsInFile(kind, fileNumber);
  fault = {};
  if (stated < 0) {
    fault = {FileError::Damaged, static_cast<std::int64_t>(kFileHeaderSize), stated, 0, {}};
    return 0;
  }
  if (stated > kind.MostRecords) {
    fault = {FileError::TooBig, 0, stated, kind.MostRecords, {}};
    return 0;
  }
  if (stated <= held) return static_cast<std::int32_t>(stated);
  fault = {FileError::Damaged, FileLength(fileNumber), stated, held, {}};
  return static_cast<std::int32_t>(held);
}

}  // namespace spectrane
