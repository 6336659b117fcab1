#include "files/platformfile.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#ifndef _WIN32
#include <unistd.h>
#endif

namespace spectrane {

namespace fs = std::filesystem;

FileFault PlatformFault(int code) {
  FileFault fault;
  fault.Error = FileError::InputOutput;
  fault.Reason = std::generic_category().message(code);
  return fault;
}

FileFault SimpleFault(FileError error) {
  FileFault fault;
  fault.Error = error;
  return fault;
}

bool SeekTo(std::FILE* file, std::int64_t offset) {
#ifdef _WIN32
  return ::_fseeki64(file, offset, SEEK_SET) == 0;
#else
  return ::fseeko(file, static_cast<off_t>(offset), SEEK_SET) == 0;
#endif
}

std::size_t ReadHere(std::FILE* file, void* bytes, std::size_t size, bool& failed) {
  const std::size_t read = std::fread(bytes, 1, size, file);
  failed = std::ferror(file) != 0;
  std::clearerr(file);
  return read;
}

std::int64_t PlatformFileLength(std::FILE* file) {
#ifdef _WIN32
  if (::_fseeki64(file, 0, SEEK_END) != 0) return 0;
  return std::max<std::int64_t>(0, ::_ftelli64(file));
#else
  struct stat status {};
  return ::fstat(::fileno(file), &status) == 0 ? status.st_size : 0;
#endif
}

bool CloseStream(std::FILE* file) {
  return std::fclose(file) == 0;
}

FileFault RefusalOfExisting(const fs::path& path) {
  std::error_code code;
  const fs::file_status status = fs::status(path, code);
  if (status.type() == fs::file_type::not_found) return SimpleFault(FileError::Missing);
  if (status.type() == fs::file_type::none) {
    FileFault fault = SimpleFault(FileError::InputOutput);
    fault.Reason = code.message();
    return fault;
  }
  if (!fs::is_regular_file(status)) return SimpleFault(FileError::NotRegular);
  return {};
}

#ifdef _WIN32

std::FILE* OpenExistingFile(const fs::path& path) {
  std::FILE* file = ::_wfopen(path.c_str(), L"r+bN");
  return file != nullptr ? file : ::_wfopen(path.c_str(), L"rbN");
}

#else

namespace {

std::FILE* Stream(int descriptor, const char* mode) {
  if (descriptor < 0) return nullptr;
  std::FILE* file = ::fdopen(descriptor, mode);
  if (file == nullptr) {
    const int code = errno;
    ::close(descriptor);
    errno = code;
  }
  return file;
}

}  // namespace

/// O_NONBLOCK: a pipe that took the file's place a moment ago must not hold the program up.
std::FILE* OpenExistingFile(const fs::path& path) {
  constexpr int kFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  const int both = ::open(path.c_str(), O_RDWR | kFlags);
  if (both >= 0) return Stream(both, "r+b");
  return Stream(::open(path.c_str(), O_RDONLY | kFlags), "rb");
}

#endif

}  // namespace spectrane
