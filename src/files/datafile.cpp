#include "files/datafile.h"

#include <algorithm>
#include <cstring>

namespace spectrane {
namespace {

std::int64_t RecordOffset(const FileKind& kind, std::int32_t index) {
  return static_cast<std::int64_t>(kind.FirstRecord) +
         static_cast<std::int64_t>(index) * static_cast<std::int64_t>(kind.Record.Size);
}

/// Lets `fill` write the bytes of a place; a place that cannot be had is a fault under the number.
template <typename Fill>
void WritePlace(int fileNumber, std::int64_t offset, std::size_t size, const Fill& fill) {
  unsigned char* const bytes = PlaceBytes(fileNumber, offset, size);
  if (bytes != nullptr) fill(bytes);
}

void WriteBlock(int fileNumber, std::int64_t offset, const Block& block, const void* object) {
  WritePlace(fileNumber, offset, block.Size, [&](unsigned char* bytes) {
    bool lost = false;
    block.Encode(object, bytes, lost);
    if (lost) NoteTextLost(fileNumber);
  });
}

/// The bytes between the option block and the first record.
void WriteSpare(const FileKind& kind, int fileNumber) {
  const std::size_t offset = kFileHeaderSize + kind.Option.Size;
  const std::size_t size = kind.FirstRecord - offset;
  if (size == 0) return;
  WritePlace(fileNumber, static_cast<std::int64_t>(offset), size,
             [size](unsigned char* bytes) { std::memset(bytes, 0, size); });
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
  WriteBlock(fileNumber, 0, FileHeaderBlock(), &header);
  WriteBlock(fileNumber, kFileHeaderSize, kind.Option, option);
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
  const bool known = HeaderHolds(header);
  if (!known || header.FileType != kind.FileType) {
    NoteFault(fileNumber, {known ? FileError::WrongKind : FileError::Foreign, 0, 0, 0, {}});
    return false;
  }
  const unsigned char* const bytes = ViewBytes(fileNumber, kFileHeaderSize, kind.Option.Size);
  if (bytes == nullptr) {
    NoteDamage(fileNumber);
    return false;
  }
  kind.Option.Decode(bytes, option, 1);
  return true;
}

bool ReadDataRecord(const FileKind& kind, int fileNumber, void* record, std::int32_t index) {
  if (index < 0) return false;
  const unsigned char* const bytes = ViewBytes(fileNumber, RecordOffset(kind, index), kind.Record.Size);
  if (bytes == nullptr) return false;
  kind.Record.Decode(bytes, record, 1);
  return true;
}

std::int32_t ReadDataRecords(const FileKind& kind, int fileNumber, void* records, std::size_t recordSize,
                             std::int32_t index, std::int32_t count) {
  const auto most = static_cast<std::int32_t>(kLargestPiece / kind.Record.Size);
  auto* const bytes = static_cast<unsigned char*>(records);
  std::int32_t read = 0;
  while (read < count) {
    void* const record = bytes + static_cast<std::size_t>(read) * recordSize;
    const std::int32_t step = std::min(most, count - read);
    const unsigned char* const piece = ViewBytes(fileNumber, RecordOffset(kind, index + read),
                                                 static_cast<std::size_t>(step) * kind.Record.Size);
    if (piece != nullptr) {
      kind.Record.Decode(piece, record, static_cast<std::size_t>(step));
      read += step;
    } else if (step > 1 && ReadDataRecord(kind, fileNumber, record, index + read)) {
      // The file was cut short meanwhile: whole records before its end still count.
      ++read;
    } else {
      break;
    }
  }
  return read;
}

bool WriteDataRecord(const FileKind& kind, int fileNumber, const void* record, std::int32_t index) {
  // A negative index would land in the blocks before the records; it becomes a fault under the number.
  WriteBlock(fileNumber, index < 0 ? -1 : RecordOffset(kind, index), kind.Record, record);
  return true;
}

void CloseDataFile(int fileNumber) {
  CloseFileNumber(fileNumber);
}

std::int64_t RecordsInFile(const FileKind& kind, int fileNumber) {
  const std::int64_t behind = FileLength(fileNumber) - static_cast<std::int64_t>(kind.FirstRecord);
  return behind <= 0 ? 0 : behind / static_cast<std::int64_t>(kind.Record.Size);
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
