#include "files/journalfile.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <system_error>

#include "base/utf8path.h"

#ifdef _WIN32
#include "base/windowsheader.h"
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace spectrane {

#ifdef _WIN32

namespace {

std::string SystemReason() {
  return std::system_category().message(static_cast<int>(GetLastError()));
}

/// Nobody else opens what is open without shares.
HANDLE OpenAlone(const std::string& path, DWORD how) {
  return CreateFileW(PathFromUtf8(path).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, how,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool MoveTo(HANDLE file, std::size_t offset) {
  LARGE_INTEGER place;
  place.QuadPart = static_cast<LONGLONG>(offset);
  return SetFilePointerEx(file, place, nullptr, FILE_BEGIN) != 0;
}

}  // namespace

std::unique_ptr<JournalFile> JournalFile::Create(const std::string& path, std::string& reason) {
  HANDLE handle = OpenAlone(path, CREATE_NEW);
  if (handle == INVALID_HANDLE_VALUE) {
    reason = SystemReason();
    return nullptr;
  }
  std::unique_ptr<JournalFile> file(new JournalFile);
  file->path_ = path;
  file->handle_ = handle;
  return file;
}

std::unique_ptr<JournalFile> JournalFile::Take(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(PathFromUtf8(path).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return nullptr;
  HANDLE handle = OpenAlone(path, OPEN_EXISTING);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  std::unique_ptr<JournalFile> file(new JournalFile);
  file->path_ = path;
  file->handle_ = handle;
  LARGE_INTEGER size;
  if (GetFileType(handle) != FILE_TYPE_DISK || GetFileSizeEx(handle, &size) == 0) return nullptr;
  file->size_ = static_cast<std::size_t>(size.QuadPart);
  return file;
}

JournalFile::~JournalFile() {
  if (handle_ != nullptr) CloseHandle(handle_);
}

std::string JournalFile::Read(std::size_t most) const {
  std::string bytes(std::min(most, size_), '\0');
  DWORD read = 0;
  if (!MoveTo(handle_, 0) ||
      !ReadFile(handle_, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
    return {};
  bytes.resize(read);
  return bytes;
}

bool JournalFile::Append(std::string_view bytes, std::string& reason) {
  DWORD written = 0;
  if (MoveTo(handle_, size_) &&
      WriteFile(handle_, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0 &&
      written == bytes.size()) {
    size_ += bytes.size();
    return true;
  }
  reason = SystemReason();
  CutTo(size_);
  return false;
}

bool JournalFile::CutTo(std::size_t size) {
  size_ = size;
  return MoveTo(handle_, size) && SetEndOfFile(handle_) != 0;
}

bool JournalFile::Sync() {
  return FlushFileBuffers(handle_) != 0;
}

void JournalFile::Remove() {
  FILE_DISPOSITION_INFO gone = {TRUE};
  // One that stays is not to be offered again.
  if (SetFileInformationByHandle(handle_, FileDispositionInfo, &gone, sizeof(gone)) == 0) CutTo(0);
  CloseHandle(handle_);
  handle_ = nullptr;
}

#else

namespace {

constexpr int kOpenFlags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;

}  // namespace

std::unique_ptr<JournalFile> JournalFile::Create(const std::string& path, std::string& reason) {
  const int descriptor = ::open(path.c_str(), kOpenFlags | O_CREAT | O_EXCL, 0600);
  // Where the file cannot be kept from others nothing is kept: they would take it for a dead program's.
  if (descriptor < 0 || ::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    reason = std::generic_category().message(errno);
    if (descriptor >= 0) {
      ::unlink(path.c_str());
      ::close(descriptor);
    }
    return nullptr;
  }
  std::unique_ptr<JournalFile> file(new JournalFile);
  file->path_ = path;
  file->descriptor_ = descriptor;
  return file;
}

std::unique_ptr<JournalFile> JournalFile::Take(const std::string& path) {
  const int descriptor = ::open(path.c_str(), kOpenFlags);
  if (descriptor < 0) return nullptr;
  std::unique_ptr<JournalFile> file(new JournalFile);
  file->path_ = path;
  file->descriptor_ = descriptor;
  struct stat status {};
  // Whoever had it may have deleted it between the opening and the lock.
  const bool taken = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && ::fstat(descriptor, &status) == 0 &&
                     S_ISREG(status.st_mode) && status.st_nlink > 0;
  if (!taken) return nullptr;
  file->size_ = static_cast<std::size_t>(status.st_size);
  return file;
}

JournalFile::~JournalFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::string JournalFile::Read(std::size_t most) const {
  std::string bytes(std::min(most, size_), '\0');
  std::size_t read = 0;
  while (read < bytes.size()) {
    const ssize_t piece =
        ::pread(descriptor_, bytes.data() + read, bytes.size() - read, static_cast<off_t>(read));
    if (piece < 0 && errno == EINTR) continue;
    if (piece <= 0) break;
    read += static_cast<std::size_t>(piece);
  }
  bytes.resize(read);
  return bytes;
}

bool JournalFile::Append(std::string_view bytes, std::string& reason) {
  ssize_t written = 0;
  do {
    written = ::pwrite(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(size_));
  } while (written < 0 && errno == EINTR);
  if (written == static_cast<ssize_t>(bytes.size())) {
    size_ += bytes.size();
    return true;
  }
  reason = std::generic_category().message(written < 0 ? errno : ENOSPC);
  if (written > 0) CutTo(size_);
  return false;
}

bool JournalFile::CutTo(std::size_t size) {
  size_ = size;
  return ::ftruncate(descriptor_, static_cast<off_t>(size)) == 0;
}

bool JournalFile::Sync() {
  return ::fsync(descriptor_) == 0;
}

void JournalFile::Remove() {
  // Before it is free for others; one that stays is not to be offered again.
  if (::unlink(path_.c_str()) != 0) CutTo(0);
  ::close(descriptor_);
  descriptor_ = -1;
}

#endif

}  // namespace spectrane
