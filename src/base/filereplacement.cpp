#include "base/filereplacement.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "base/leftovers.h"
#include "base/newfile.h"
#include "base/utf8path.h"

#ifdef _WIN32
#include "base/windowsheader.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace spectrane {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;

/// The platform's words for the last failed call.
std::string LastFault() {
#ifdef _WIN32
  return std::system_category().message(static_cast<int>(GetLastError()));
#else
  return std::generic_category().message(errno);
#endif
}

std::string Words(std::errc code) {
  return std::make_error_code(code).message();
}

/// The file that a chain of symbolic links ends at, whether it exists or not; empty for links without end.
fs::path FollowLinks(fs::path path) {
  std::error_code fault;
  for (int i = 0; i < kMostLinks; ++i) {
    if (!fs::is_symlink(fs::symlink_status(path, fault))) return path;
    const fs::path next = fs::read_symlink(path, fault);
    if (fault) return {};
    path = next.is_absolute() ? next : path.parent_path() / next;
  }
  return {};
}

/// A name in the folder of `target` that no other file has. Short, so that it fits wherever the target's own
/// does.
fs::path FreeNameBeside(const fs::path& target) {
  static std::atomic<unsigned long> counter{0};
  std::error_code fault;
  for (;;) {
    fs::path candidate = target.parent_path() / TemporaryName(++counter);
    if (!fs::exists(fs::symlink_status(candidate, fault))) return candidate;
  }
}

/// Why `target` cannot take a new content: it is no plain file, or it is write-protected. Empty when it can.
std::string RefusalOf(const std::string& target) {
  if (target.empty() || target.find('\0') != std::string::npos)
    return Words(std::errc::no_such_file_or_directory);
  const fs::path path = PathFromUtf8(target);
  if (!path.has_filename()) return Words(std::errc::is_a_directory);
  std::error_code fault;
  const fs::file_status status = fs::status(path, fault);
  if (status.type() == fs::file_type::not_found) return {};
  if (fs::is_directory(status)) return Words(std::errc::is_a_directory);
  if (status.type() == fs::file_type::none) return fault.message();
  if (!fs::is_regular_file(status)) return "not a regular file";
#ifdef _WIN32
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    return Words(std::errc::permission_denied);
  }
#else
  if (::access(path.c_str(), W_OK) != 0) return LastFault();
#endif
  return {};
}

/// An existing file that not everybody may read.
bool IsPrivate([[maybe_unused]] const std::string& target) {
#ifdef _WIN32
  return false;
#else
  constexpr mode_t kOthersRead = S_IRGRP | S_IROTH;
  struct stat old {};
  return ::stat(target.c_str(), &old) == 0 && (old.st_mode & kOthersRead) != kOthersRead;
#endif
}

#ifdef _WIN32

/// Brings the temporary file to the disk and renames it. False: `reason` says why.
bool SyncAndRename(const std::string& temporary, const std::string& target, std::string& reason) {
  const fs::path from = PathFromUtf8(temporary);
  HANDLE file =
      CreateFileW(from.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    reason = LastFault();
    return false;
  }
  bool done = FlushFileBuffers(file) != 0;
  if (!done) reason = LastFault();
  if (CloseHandle(file) == 0 && done) {
    reason = LastFault();
    done = false;
  }
  if (!done) return false;
  // Not ReplaceFileW: without a backup name a failed move can leave neither of the two files in place.
  const fs::path to = PathFromUtf8(target);
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0) {
    reason = LastFault();
    return false;
  }
  return true;
}

#else

int SyncFile(int file) {
  int result = 0;
  do {
    result = ::fsync(file);
  } while (result != 0 && errno == EINTR);
  return result;
}

/// Gives the temporary file the owner (as far as rights allow) and the permission bits of the old one.
bool TakeOverMode(int file, const struct stat& old) {
  struct stat own {};
  if (::fstat(file, &own) != 0) return false;
  if (own.st_uid != old.st_uid || own.st_gid != old.st_gid) {
    // Best effort: for another owner's file in a folder we may write, the content counts.
    const bool kept = ::fchown(file, old.st_uid, old.st_gid) == 0 ||
                      ::fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0;
    static_cast<void>(kept);
  }
  // Not every file system knows permission bits; where nothing differs nothing is asked of it.
  return ((own.st_mode ^ old.st_mode) & 0777) == 0 || ::fchmod(file, old.st_mode & 0777) == 0;
}

/// Brings the temporary file to the disk and renames it. False: `reason` says why.
bool SyncAndRename(const std::string& temporary, const std::string& target, std::string& reason) {
  const int file = ::open(temporary.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW);
  if (file < 0) {
    reason = LastFault();
    return false;
  }
  struct stat old {};
  bool done = ::stat(target.c_str(), &old) != 0 || TakeOverMode(file, old);
  done = done && SyncFile(file) == 0;
  if (!done) reason = LastFault();
  if (::close(file) != 0 && done) {
    reason = LastFault();
    done = false;
  }
  if (!done) return false;
  if (::rename(temporary.c_str(), target.c_str()) != 0) {
    reason = LastFault();
    return false;
  }
  // The new file stands now, whole; a folder that cannot be synced does not take that back.
  const std::string folder = Utf8FromPath(fs::path(target).parent_path());
  const int directory = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory >= 0) {
    SyncFile(directory);
    ::close(directory);
  }
  return true;
}

#endif

/// Creates `path`, which must not exist, with this content. False: `reason` says why.
bool WriteNewFile(const std::string& path, bool ownerOnly, std::string_view bytes, std::string& reason) {
  std::FILE* file = OpenNewFile(path, ownerOnly);
  const auto fault = [&reason] {
    reason = std::generic_category().message(errno);
    return false;
  };
  if (file == nullptr) return fault();
  const bool done = bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  if (!done) fault();
  if (std::fclose(file) != 0 && done) return fault();
  return done;
}

}  // namespace

FileReplacement::FileReplacement(std::string path) : targetPath_(std::move(path)) {
  if (targetPath_.find('\0') == std::string::npos) {
    // Links without end leave the path as it stands; Commit() then gets the platform's refusal.
    const fs::path followed = FollowLinks(PathFromUtf8(targetPath_));
    if (!followed.empty()) targetPath_ = Utf8FromPath(followed);
  }
  ownerOnly_ = IsPrivate(targetPath_);
  temporaryPath_ = Utf8FromPath(FreeNameBeside(PathFromUtf8(targetPath_)));
}

FileReplacement::~FileReplacement() {
  if (committed_) return;
  std::error_code fault;
  std::filesystem::remove(PathFromUtf8(temporaryPath_), fault);
}

bool FileReplacement::Commit(std::string* reason) {
  std::string words = RefusalOf(targetPath_);
  committed_ = words.empty() && SyncAndRename(temporaryPath_, targetPath_, words);
  if (committed_) {
    RemoveLeftoversOnce(Utf8FromPath(PathFromUtf8(targetPath_).parent_path()));
    return true;
  }
  std::error_code fault;
  std::filesystem::remove(PathFromUtf8(temporaryPath_), fault);
  if (reason != nullptr) *reason = words;
  return false;
}

bool ReplaceFileContent(const std::string& path, std::string_view bytes, std::string* reason) {
  std::string words = RefusalOf(path);
  if (words.empty()) {
    FileReplacement replacement(path);
    if (WriteNewFile(replacement.TemporaryPath(), replacement.OwnerOnly(), bytes, words) &&
        replacement.Commit(&words))
      return true;
  }
  if (reason != nullptr) *reason = words;
  return false;
}

}  // namespace spectrane
