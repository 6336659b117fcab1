#include "fuzz/checks/inputfile.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#ifdef _WIN32
#include <process.h>

#include <fstream>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace spectrane::fuzz {
namespace {

[[noreturn]] void Refused() {
  std::fputs("The file of an input cannot be written.\n", stderr);
  std::abort();
}

/// A name that no other object here and in other processes has.
std::string NewPath() {
  static int count = 0;
#ifdef _WIN32
  const int process = ::_getpid();
#else
  const int process = ::getpid();
#endif
  const std::string name = "spectrane-input-" + std::to_string(process) + "-" + std::to_string(++count);
  const std::u8string path = (std::filesystem::temp_directory_path() / name).u8string();
  return std::string(path.begin(), path.end());
}

}  // namespace

#ifdef _WIN32

InputFile::InputFile() : path_(NewPath()) {}

void InputFile::Hold(Bytes content) {
  const std::filesystem::path path(std::u8string(path_.begin(), path_.end()));
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
  if (!file.flush()) Refused();
}

InputFile::~InputFile() {
  std::error_code ignored;
  std::filesystem::remove(std::filesystem::path(std::u8string(path_.begin(), path_.end())), ignored);
}

#else

InputFile::InputFile()
    : path_(NewPath()), descriptor_(::open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600)) {
  if (descriptor_ < 0) Refused();
}

void InputFile::Hold(Bytes content) {
  const auto size = static_cast<::ssize_t>(content.size());
  if (::ftruncate(descriptor_, size) != 0) Refused();
  if (size != 0 && ::pwrite(descriptor_, content.data(), content.size(), 0) != size) Refused();
}

InputFile::~InputFile() {
  ::close(descriptor_);
  ::unlink(path_.c_str());
}

#endif

}  // namespace spectrane::fuzz
