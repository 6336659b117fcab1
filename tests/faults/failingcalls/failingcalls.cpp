#include "faults/failingcalls/failingcalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace spectrane::failing_calls {
namespace {

constexpr int kMostDescriptors = 4096;

struct State {
  char Folder[PATH_MAX] = {};
  Plan Planned;
  std::array<int, kCalls> Counts = {};
  bool Happened = false;
  /// Descriptors of files below the folder, and those of them whose next write fails.
  std::array<bool, kMostDescriptors> Watched = {};
  std::array<bool, kMostDescriptors> Full = {};
};

/// Never destroyed: files are closed until the very end of the process.
State& Now() {
  static State& state = *new State;
  return state;
}

bool IsBelow(const char* path) {
  const std::size_t length = std::strlen(Now().Folder);
  return length > 0 && path != nullptr && std::strncmp(path, Now().Folder, length) == 0 &&
         (path[length] == '/' || path[length] == '\0');
}

bool IsWatched(int file) {
  return file >= 0 && file < kMostDescriptors && Now().Watched.at(static_cast<std::size_t>(file));
}

void Watch(int file, bool watched) {
  if (file < 0 || file >= kMostDescriptors) return;
  Now().Watched.at(static_cast<std::size_t>(file)) = watched;
  Now().Full.at(static_cast<std::size_t>(file)) = false;
}

/// Counts a call; the fault that takes its place, or kNothing.
int FaultOf(Call call) {
  State& state = Now();
  const int number = ++state.Counts.at(static_cast<std::size_t>(call));
  const Plan& plan = state.Planned;
  if (plan.Fault == kNothing || plan.Which != call) return kNothing;
  if (number != plan.Nth && !(plan.Ever && number > plan.Nth)) return kNothing;
  state.Happened = true;
  if (plan.Fault == kKill && call != Call::Write) ::raise(SIGKILL);
  return plan.Fault;
}

/// Sets errno when the call is to fail.
bool Fails(Call call) {
  const int fault = FaultOf(call);
  if (fault == kNothing) return false;
  errno = fault == kShort ? ENOSPC : fault;
  return true;
}

int OpenThrough(int folder, const char* path, int flags, mode_t mode) {
  const bool below = IsBelow(path);
  if (below && Fails(Call::Open)) return -1;
  const auto file = static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode));
  Watch(file, below && file >= 0);
  return file;
}

/// Of a call that has no offset.
constexpr off64_t kWhereItStands = -1;

ssize_t ReadThrough(int file, void* bytes, std::size_t size, off64_t at = kWhereItStands) {
  if (IsWatched(file) && Fails(Call::Read)) return -1;
  return at == kWhereItStands ? ::syscall(SYS_read, file, bytes, size)
                              : ::syscall(SYS_pread64, file, bytes, size, at);
}

ssize_t ReallyWrite(int file, const void* bytes, std::size_t size, off64_t at) {
  return at == kWhereItStands ? ::syscall(SYS_write, file, bytes, size)
                              : ::syscall(SYS_pwrite64, file, bytes, size, at);
}

ssize_t WriteThrough(int file, const void* bytes, std::size_t size, off64_t at = kWhereItStands) {
  if (!IsWatched(file)) return ReallyWrite(file, bytes, size, at);
  bool& full = Now().Full.at(static_cast<std::size_t>(file));
  if (full) {
    full = Now().Planned.Ever;
    errno = ENOSPC;
    return -1;
  }
  const int fault = FaultOf(Call::Write);
  if (fault == kNothing) return ReallyWrite(file, bytes, size, at);
  if (fault != kShort && fault != kKill) {
    errno = fault;
    return -1;
  }
  const ssize_t half = ReallyWrite(file, bytes, std::max<std::size_t>(1, size / 2), at);
  if (fault == kKill) ::raise(SIGKILL);
  full = true;
  return half;
}

/// What is cut off makes room.
int CutThrough(int file, off64_t size) {
  if (IsWatched(file)) {
    if (Fails(Call::Cut)) return -1;
    if (Now().Planned.CutsFail) {
      errno = EIO;
      return -1;
    }
    Now().Full.at(static_cast<std::size_t>(file)) = false;
  }
  return static_cast<int>(::syscall(SYS_ftruncate, file, size));
}

/// As most file systems do: the descriptor is gone whatever the answer.
int CloseThrough(int file) {
  const bool failed = IsWatched(file) && Fails(Call::Close);
  const int code = errno;
  Watch(file, false);
  const auto result = static_cast<int>(::syscall(SYS_close, file));
  if (!failed) return result;
  errno = code;
  return -1;
}

/// Below the folder nothing is really brought to the disk: nobody pulls the plug here, and tests are many.
int SyncThrough(int file, long number) {
  if (IsWatched(file)) return Fails(Call::Sync) ? -1 : 0;
  return static_cast<int>(::syscall(number, file));
}

template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

// A stream of the C library calls the system past this library. One that writes below the folder is
// replaced by a stream whose four functions are these; it buffers as the original would.

struct Stream {
  int File;
};

ssize_t StreamRead(void* cookie, char* bytes, std::size_t size) {
  return ReadThrough(static_cast<Stream*>(cookie)->File, bytes, size);
}
/// Until everything is written or a call fails.
ssize_t StreamWrite(void* cookie, const char* bytes, std::size_t size) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t written = WriteThrough(static_cast<Stream*>(cookie)->File, bytes + done, size - done);
    if (written < 0) break;
    done += static_cast<std::size_t>(written);
  }
  return static_cast<ssize_t>(done);
}
int StreamSeek(void* cookie, off64_t* offset, int from) {
  if (IsWatched(static_cast<Stream*>(cookie)->File) && Fails(Call::Seek)) return -1;
  const off64_t place = ::lseek64(static_cast<Stream*>(cookie)->File, *offset, from);
  if (place < 0) return -1;
  *offset = place;
  return 0;
}
int StreamClose(void* cookie) {
  const int result = CloseThrough(static_cast<Stream*>(cookie)->File);
  delete static_cast<Stream*>(cookie);
  return result;
}

/// The descriptors of such streams, by the stream.
struct StreamName {
  std::FILE* Of = nullptr;
  int File = -1;
};
std::array<StreamName, 64>& StreamNames() {
  static auto& names = *new std::array<StreamName, 64>;
  return names;
}

std::FILE* WatchedStream(int file, const char* mode) {
  auto* const cookie = new Stream{file};
  const cookie_io_functions_t functions{StreamRead, StreamWrite, StreamSeek, StreamClose};
  std::FILE* const stream = ::fopencookie(cookie, mode, functions);
  for (StreamName& name : StreamNames()) {
    if (name.Of != nullptr) continue;
    name = {stream, file};
    return stream;
  }
  ::abort();
}

std::FILE* OpenStream(const char* name, const char* path, const char* mode) {
  if (!IsBelow(path) || *mode != 'r' || std::strchr(mode, '+') != nullptr)
    return Next<std::FILE*(const char*, const char*)>(name)(path, mode);
  const int file = OpenThrough(AT_FDCWD, path, O_RDONLY | O_CLOEXEC, 0);
  return file < 0 ? nullptr : WatchedStream(file, "r");
}

void ArmFromEnvironment() {
  const char* const folder = std::getenv("SPECTRANE_FAILING_FOLDER");
  const char* const words = std::getenv("SPECTRANE_FAILING_CALLS");
  if (folder == nullptr || words == nullptr) return;
  char call[16] = {};
  char often[16] = {};
  Plan plan;
  if (std::sscanf(words, "%15[^:]:%d:%d:%15s", call, &plan.Nth, &plan.Fault, often) != 4) ::abort();
  const auto* const found = std::find(kCallNames.begin(), kCallNames.end(), std::string(call));
  if (found == kCallNames.end()) ::abort();
  plan.Which = static_cast<Call>(found - kCallNames.begin());
  plan.Ever = std::string(often) == "ever";
  Arm(folder, plan);
}

/// Begins with a program that has the library preloaded, and tells its counts at the end.
struct Environment {
  Environment() { ArmFromEnvironment(); }
  ~Environment() {
    const char* const path = std::getenv("SPECTRANE_FAILING_COUNTS");
    if (path == nullptr) return;
    Disarm();
    std::string text = Happened() ? "1" : "0";
    for (const int count : Now().Counts) text += " " + std::to_string(count);
    const auto file =
        static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC, 0644));
    if (::syscall(SYS_write, file, text.data(), text.size()) < 0) ::abort();
    ::syscall(SYS_close, file);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
};
const Environment kAtStart;

}  // namespace

void Arm(const char* folder, const Plan& plan) {
  State& state = Now();
  state.Planned = plan;
  state.Counts = {};
  state.Happened = false;
  state.Watched = {};
  state.Full = {};
  std::snprintf(state.Folder, sizeof state.Folder, "%s", folder);
}

void Replan(const Plan& plan) {
  Now().Planned = plan;
  Now().Happened = false;
}

void Disarm() {
  Now().Folder[0] = '\0';
  Now().Planned = {};
  Now().Watched = {};
}

int CountOf(Call call) {
  return Now().Counts.at(static_cast<std::size_t>(call));
}

bool Happened() {
  return Now().Happened;
}

}  // namespace spectrane::failing_calls

// The names of the C library.

using namespace spectrane::failing_calls;

namespace {

mode_t ModeOf(int flags, va_list arguments) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

#define SPECTRANE_OPEN(name)                         \
  int name(const char* path, int flags, ...) {       \
    va_list arguments;                               \
    va_start(arguments, flags);                      \
    const mode_t mode = ModeOf(flags, arguments);    \
    va_end(arguments);                               \
    return OpenThrough(AT_FDCWD, path, flags, mode); \
  }
#define SPECTRANE_OPENAT(name)                             \
  int name(int folder, const char* path, int flags, ...) { \
    va_list arguments;                                     \
    va_start(arguments, flags);                            \
    const mode_t mode = ModeOf(flags, arguments);          \
    va_end(arguments);                                     \
    return OpenThrough(folder, path, flags, mode);         \
  }

extern "C" {

SPECTRANE_OPEN(open)
SPECTRANE_OPEN(open64)
SPECTRANE_OPENAT(openat)
SPECTRANE_OPENAT(openat64)

int __open_2(const char* path, int flags) {
  return OpenThrough(AT_FDCWD, path, flags, 0);
}
int __open64_2(const char* path, int flags) {
  return OpenThrough(AT_FDCWD, path, flags, 0);
}

std::FILE* fopen(const char* path, const char* mode) {
  return OpenStream("fopen", path, mode);
}
std::FILE* fopen64(const char* path, const char* mode) {
  return OpenStream("fopen64", path, mode);
}

std::FILE* fdopen(int file, const char* mode) {
  if (IsWatched(file) && Fails(Call::Stream)) return nullptr;
  if (IsWatched(file)) return WatchedStream(file, mode);
  return Next<std::FILE*(int, const char*)>("fdopen")(file, mode);
}
int fileno(std::FILE* stream) noexcept {
  for (const StreamName& name : StreamNames()) {
    if (stream != nullptr && name.Of == stream) return name.File;
  }
  return Next<int(std::FILE*)>("fileno")(stream);
}
int fclose(std::FILE* stream) {
  for (StreamName& name : StreamNames()) {
    if (name.Of == stream) name = {};
  }
  return Next<int(std::FILE*)>("fclose")(stream);
}

ssize_t read(int file, void* bytes, std::size_t size) {
  return ReadThrough(file, bytes, size);
}
ssize_t write(int file, const void* bytes, std::size_t size) {
  return WriteThrough(file, bytes, size);
}
ssize_t writev(int file, const iovec* parts, int count) {
  if (!IsWatched(file)) return ::syscall(SYS_writev, file, parts, count);
  ssize_t sum = 0;
  for (int i = 0; i < count; ++i) {
    const ssize_t written = WriteThrough(file, parts[i].iov_base, parts[i].iov_len);
    if (written < 0) return sum > 0 ? sum : written;
    sum += written;
  }
  return sum;
}
ssize_t pread(int file, void* bytes, std::size_t size, off_t at) {
  return ReadThrough(file, bytes, size, at);
}
ssize_t pread64(int file, void* bytes, std::size_t size, off64_t at) {
  return ReadThrough(file, bytes, size, at);
}
ssize_t pwrite(int file, const void* bytes, std::size_t size, off_t at) {
  return WriteThrough(file, bytes, size, at);
}
ssize_t pwrite64(int file, const void* bytes, std::size_t size, off64_t at) {
  return WriteThrough(file, bytes, size, at);
}
int ftruncate(int file, off_t size) noexcept {
  return CutThrough(file, size);
}
int ftruncate64(int file, off64_t size) noexcept {
  return CutThrough(file, size);
}
int fstat(int file, struct stat* facts) noexcept {
  if (IsWatched(file) && Fails(Call::Length)) return -1;
  return Next<int(int, struct stat*)>("fstat")(file, facts);
}
int flock(int file, int how) noexcept {
  if (IsWatched(file) && Fails(Call::Lock)) return -1;
  return static_cast<int>(::syscall(SYS_flock, file, how));
}
int poll(pollfd* files, nfds_t count, int timeoutMs) {
  const bool watched = std::any_of(files, files + count, [](const pollfd& one) { return IsWatched(one.fd); });
  if (watched && Fails(Call::Wait)) return -1;
  return Next<int(pollfd*, nfds_t, int)>("poll")(files, count, timeoutMs);
}
int fsync(int file) {
  return SyncThrough(file, SYS_fsync);
}
int fdatasync(int file) {
  return SyncThrough(file, SYS_fdatasync);
}
int close(int file) {
  return CloseThrough(file);
}
int rename(const char* from, const char* to) noexcept {
  if ((IsBelow(from) || IsBelow(to)) && Fails(Call::Rename)) return -1;
  return static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}
int fchmod(int file, mode_t mode) noexcept {
  if (IsWatched(file) && Fails(Call::Mode)) return -1;
  return static_cast<int>(::syscall(SYS_fchmod, file, mode));
}
int unlink(const char* path) noexcept {
  if (IsBelow(path) && Fails(Call::Remove)) return -1;
  return static_cast<int>(::syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}
int remove(const char* path) noexcept {
  if (IsBelow(path) && Fails(Call::Remove)) return -1;
  return Next<int(const char*)>("remove")(path);
}

}  // extern "C"
