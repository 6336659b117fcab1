#include "base/filestate.h"

#include "base/utf8path.h"
#include "base/windowsheader.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace spectrane {
namespace {

constexpr std::int64_t kNsInMs = 1'000'000;

#ifdef _WIN32

std::uint64_t Joined(DWORD high, DWORD low) {
  return (static_cast<std::uint64_t>(high) << 32) | low;
}

/// 100 ns since 1601 as ns since 1970.
std::int64_t NsOf(const FILETIME& time) {
  constexpr std::int64_t kFrom1601To1970 = 116'444'736'000'000'000;
  return (static_cast<std::int64_t>(Joined(time.dwHighDateTime, time.dwLowDateTime)) - kFrom1601To1970) * 100;
}

FileState StateOfOpen(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION known{};
  if (GetFileInformationByHandle(file, &known) == 0) return {};
  FileState state;
  state.Size = static_cast<std::int64_t>(Joined(known.nFileSizeHigh, known.nFileSizeLow));
  state.ModifiedNs = NsOf(known.ftLastWriteTime);
  state.Volume = known.dwVolumeSerialNumber;
  state.Index = Joined(known.nFileIndexHigh, known.nFileIndexLow);
  FILE_BASIC_INFO times{};
  if (GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof(times)) != 0)
    state.Changed = times.ChangeTime.QuadPart;
  return state;
}

#else

std::int64_t NsOf(const timespec& time) {
  constexpr std::int64_t kNsInSecond = 1'000'000'000;
  return static_cast<std::int64_t>(time.tv_sec) * kNsInSecond + time.tv_nsec;
}

#endif

}  // namespace

std::int64_t FileState::ModifiedMs() const {
  const std::int64_t part = ModifiedNs % kNsInMs;
  return (ModifiedNs - part) / kNsInMs - (part < 0 ? 1 : 0);
}

FileState FileState::Rough(std::int64_t size, std::int64_t modifiedMs) {
  FileState state;
  state.Size = size;
  // Whatever a journal states: what is beyond the range of nanoseconds is no time of any file.
  constexpr std::int64_t kMostMs = INT64_MAX / kNsInMs - 1;
  state.ModifiedNs = modifiedMs > kMostMs || modifiedMs < -kMostMs ? INT64_MIN : modifiedMs * kNsInMs;
  state.IsRough = true;
  return state;
}

FileState FileStateOf(const std::string& path) {
#ifdef _WIN32
  // No right to the content is asked for, so that nobody's opening is in the way.
  HANDLE const file = CreateFileW(PathFromUtf8(path).c_str(), FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  const FileState state = StateOfOpen(file);
  CloseHandle(file);
  return state;
#else
  struct stat known {};
  if (::stat(path.c_str(), &known) != 0) return {};
  FileState state;
  state.Size = known.st_size;
  state.ModifiedNs = NsOf(known.st_mtim);
  state.Volume = known.st_dev;
  state.Index = known.st_ino;
  state.Changed = NsOf(known.st_ctim);
  return state;
#endif
}

bool IsSameState(const FileState& one, const FileState& other) {
  if (one.Size != other.Size) return false;
  if (one.IsRough || other.IsRough) return one.ModifiedMs() == other.ModifiedMs();
  return one.ModifiedNs == other.ModifiedNs && one.Volume == other.Volume && one.Index == other.Index &&
         one.Changed == other.Changed;
}

}  // namespace spectrane
