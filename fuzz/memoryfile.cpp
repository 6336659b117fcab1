// The input of a fuzzing program as a file in memory: what file numbers ask of the platform, without a system
// call.

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "files/platformfile.h"
#include "fuzz/checks/inputfile.h"

namespace {

constexpr const char* kName = "input";
spectrane::fuzz::Bytes content;
std::size_t place = 0;

}  // namespace

namespace spectrane {

FileFault RefusalOfExisting(const std::filesystem::path& path) {
  return SimpleFault(path == kName ? FileError::None : FileError::Missing);
}

std::FILE* OpenExistingFile(const std::filesystem::path& /*path*/) {
  // Nothing is asked of the stream itself, everything goes to the content directly: one serves all.
  static char nothing = 0;
  static std::FILE* const stream = ::fmemopen(&nothing, 1, "r");
  return stream;
}

bool SeekTo(std::FILE* /*file*/, std::int64_t offset) {
  place = static_cast<std::size_t>(offset);
  return true;
}

std::size_t ReadHere(std::FILE* /*file*/, void* bytes, std::size_t size, bool& failed) {
  failed = false;
  const std::size_t left = place < content.size() ? content.size() - place : 0;
  const std::size_t read = std::min(size, left);
  if (read > 0) std::memcpy(bytes, content.data() + place, read);
  place += read;
  return read;
}

std::int64_t PlatformFileLength(std::FILE* /*file*/) {
  return static_cast<std::int64_t>(content.size());
}

bool CloseStream(std::FILE* /*file*/) {
  return true;
}

FileFault PlatformFault(int /*code*/) {
  return SimpleFault(FileError::InputOutput);
}

FileFault SimpleFault(FileError error) {
  FileFault fault;
  fault.Error = error;
  return fault;
}

}  // namespace spectrane

namespace spectrane::fuzz {

InputFile::InputFile() : path_(kName) {}
InputFile::~InputFile() = default;

void InputFile::Hold(Bytes held) {
  content = held;
}

}  // namespace spectrane::fuzz
