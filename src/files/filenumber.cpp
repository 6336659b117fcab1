#include "files/filenumber.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <deque>
#include <memory>
#include <system_error>

#include "base/newfile.h"
#include "base/utf8path.h"
#include "files/platformfile.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;

/// Bytes read ahead or gathered before they are written. One system call a block.
constexpr std::size_t kBlock = 262144;
static_assert(kBlock >= kLargestPiece);

/// One open file, or what the last one left behind.
class OpenFile {
 public:
  bool IsOpen() const { return file_ != nullptr; }
  std::int64_t Length() const { return length_; }
  void Reset() {
    Fault = {};
    LostText = false;
  }

  bool Start(std::FILE* file) {
    if (file == nullptr) {
      const int code = errno;
      Note(code == EEXIST ? SimpleFault(FileError::Exists) : PlatformFault(code));
      return false;
    }
    // The blocks kept here are the only buffer, so that a failed write shows where it happens.
    std::setvbuf(file, nullptr, _IONBF, 0);
    file_ = file;
    length_ = PlatformFileLength(file);
    return true;
  }

  void Close() {
    if (file_ == nullptr) return;
    Flush();
    if (std::fclose(file_) != 0) Note(PlatformFault(errno));
    file_ = nullptr;
    length_ = 0;
    size_ = 0;
    block_.reset();
    room_ = 0;
  }

  const unsigned char* View(std::int64_t offset, std::size_t size) {
    if (file_ == nullptr || offset < 0 || size > kLargestPiece) return nullptr;
    if (!Inside(offset, size)) LookAgain();
    if (!Inside(offset, size)) return nullptr;
    if (!InBlock(offset, size) && !Fill(offset, size)) return nullptr;
    return block_.get() + (offset - start_);
  }

  unsigned char* Place(std::int64_t offset, std::size_t size) {
    if (file_ == nullptr || offset < 0 || size > kLargestPiece) {
      Note(PlatformFault(file_ == nullptr ? EBADF : EINVAL));
      return nullptr;
    }
    const bool follows = waiting_ && offset == End() && size_ + size <= kBlock;
    if (!follows && !(waiting_ && InBlock(offset, size))) {
      Flush();
      start_ = offset;
      size_ = 0;
      waiting_ = true;
    }
    if (offset == End()) size_ += size;
    MakeRoom(kBlock);
    length_ = std::max(length_, offset + static_cast<std::int64_t>(size));
    return block_.get() + (offset - start_);
  }

  void Note(FileFault fault) {
    if (!Fault) Fault = std::move(fault);
  }

  FileFault Fault;
  bool LostText = false;

 private:
  std::int64_t End() const { return start_ + static_cast<std::int64_t>(size_); }
  bool Inside(std::int64_t offset, std::size_t size) const {
    return offset <= length_ && static_cast<std::int64_t>(size) <= length_ - offset;
  }
  bool InBlock(std::int64_t offset, std::size_t size) const {
    return offset >= start_ && offset <= End() && static_cast<std::int64_t>(size) <= End() - offset;
  }

  /// The file may have grown since.
  void LookAgain() {
    Flush();
    length_ = PlatformFileLength(file_);
  }

  /// What the block held is gone when it has to grow. Bytes that nobody filled are never looked at, so that
  /// they need no value.
  void MakeRoom(std::size_t size) {
    if (room_ >= size) return;
    block_ = std::make_unique_for_overwrite<unsigned char[]>(size);
    room_ = size;
  }

  /// Reads ahead from `offset`, no further than the file goes: most files are far smaller than a block. The
  /// piece itself lies inside the file.
  bool Fill(std::int64_t offset, std::size_t size) {
    Flush();
    const std::int64_t rest = length_ - offset;
    const std::size_t wanted =
        rest < static_cast<std::int64_t>(kBlock) ? static_cast<std::size_t>(rest) : kBlock;
    MakeRoom(wanted);
    start_ = offset;
    size_ = 0;
    if (!SeekTo(file_, offset)) {
      Note(PlatformFault(errno));
      return false;
    }
    bool failed = false;
    size_ = ReadHere(file_, block_.get(), wanted, failed);
    if (failed) Note(PlatformFault(errno));
    return size_ >= size;
  }

  void Flush() {
    if (!waiting_) return;
    waiting_ = false;
    // After a fault nothing more is written: the file is given up.
    if (!Fault) {
      const bool written = SeekTo(file_, start_) && std::fwrite(block_.get(), 1, size_, file_) == size_;
      if (!written) Note(PlatformFault(errno));
    }
    size_ = 0;
  }

  std::FILE* file_ = nullptr;
  std::int64_t length_ = 0;
  /// The part of the file from `start_` on that is held here; `waiting_`: it is still to be written.
  std::unique_ptr<unsigned char[]> block_;
  std::size_t room_ = 0;
  std::int64_t start_ = 0;
  std::size_t size_ = 0;
  bool waiting_ = false;
};

std::deque<OpenFile>& Files() {
  static std::deque<OpenFile> files;
  return files;
}

/// Null for a number that was never given out.
OpenFile* FileOf(int fileNumber) {
  std::deque<OpenFile>& files = Files();
  if (fileNumber < 1 || static_cast<std::size_t>(fileNumber) > files.size()) return nullptr;
  return &files[static_cast<std::size_t>(fileNumber) - 1];
}

}  // namespace

int FreeFileNumber() {
  std::deque<OpenFile>& files = Files();
  const auto free = std::find_if(files.begin(), files.end(), [](const OpenFile& f) { return !f.IsOpen(); });
  const auto index = free - files.begin();
  if (free == files.end()) files.emplace_back();
  files[static_cast<std::size_t>(index)].Reset();
  return static_cast<int>(index) + 1;
}

bool CreateBinaryFile(const std::string& path, int fileNumber, bool ownerOnly) {
  OpenFile* const file = FileOf(fileNumber);
  if (file == nullptr || file->IsOpen()) return false;
  if (path.empty() || path.find('\0') != std::string::npos) {
    file->Note(SimpleFault(FileError::Missing));
    return false;
  }
  return file->Start(OpenNewFile(path, ownerOnly));
}

bool OpenBinaryFile(const std::string& path, int fileNumber) {
  OpenFile* const file = FileOf(fileNumber);
  if (file == nullptr || file->IsOpen()) return false;
  const bool named = path.find('\0') == std::string::npos;
  const fs::path platformPath = named ? PathFromUtf8(path) : fs::path();
  const FileFault refusal = RefusalOfExisting(platformPath);
  if (refusal) {
    file->Note(refusal);
    return false;
  }
  return file->Start(OpenExistingFile(platformPath));
}

void CloseFileNumber(int fileNumber) {
  if (OpenFile* const file = FileOf(fileNumber)) file->Close();
}

bool IsOpenFileNumber(int fileNumber) {
  const OpenFile* const file = FileOf(fileNumber);
  return file != nullptr && file->IsOpen();
}

std::int64_t FileLength(int fileNumber) {
  const OpenFile* const file = FileOf(fileNumber);
  return file == nullptr ? 0 : file->Length();
}

const unsigned char* ViewBytes(int fileNumber, std::int64_t offset, std::size_t size) {
  OpenFile* const file = FileOf(fileNumber);
  return file == nullptr ? nullptr : file->View(offset, size);
}

unsigned char* PlaceBytes(int fileNumber, std::int64_t offset, std::size_t size) {
  OpenFile* const file = FileOf(fileNumber);
  return file == nullptr ? nullptr : file->Place(offset, size);
}

FileFault FaultOf(int fileNumber) {
  const OpenFile* const file = FileOf(fileNumber);
  return file == nullptr ? FileFault{} : file->Fault;
}

void NoteFault(int fileNumber, FileFault fault) {
  if (OpenFile* const file = FileOf(fileNumber)) file->Note(std::move(fault));
}

bool TextLost(int fileNumber) {
  const OpenFile* const file = FileOf(fileNumber);
  return file != nullptr && file->LostText;
}

void NoteTextLost(int fileNumber) {
  if (OpenFile* const file = FileOf(fileNumber)) file->LostText = true;
}

}  // namespace spectrane
