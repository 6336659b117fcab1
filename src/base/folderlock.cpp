#include "base/folderlock.h"

#ifdef _WIN32
#include "base/windowsheader.h"

#include <filesystem>
#include <functional>
#include <system_error>

#include "base/utf8path.h"
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>
#endif

namespace spectrane {

#ifdef _WIN32

FolderLock::FolderLock(const std::string& folder, int timeoutMs) {
  std::error_code fault;
  const std::filesystem::path whole = std::filesystem::weakly_canonical(PathFromUtf8(folder), fault);
  const auto number = std::hash<std::wstring>{}(whole.wstring());
  const std::wstring name = L"Local\\Spectrane-settings-" + std::to_wstring(number);
  mutex_ = CreateMutexW(nullptr, FALSE, name.c_str());
  if (mutex_ == nullptr) {
    held_ = true;
    return;
  }
  const DWORD result = WaitForSingleObject(mutex_, static_cast<DWORD>(timeoutMs));
  held_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
}

FolderLock::~FolderLock() {
  if (mutex_ == nullptr) return;
  if (held_) ReleaseMutex(mutex_);
  CloseHandle(mutex_);
}

#else

namespace {

/// Whether a folder that could not be opened may be opened a moment later.
bool MayPass(int fault) {
  return fault == EMFILE || fault == ENFILE || fault == ENOMEM || fault == EIO;
}

}  // namespace

FolderLock::FolderLock(const std::string& folder, int timeoutMs) {
  // The folder itself carries the lock, so that no lock file is left lying in it.
  directory_ = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory_ < 0 && MayPass(errno)) return;
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  while (directory_ >= 0 && ::flock(directory_, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) break;
    if (std::chrono::steady_clock::now() >= end) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  held_ = true;
}

FolderLock::~FolderLock() {
  if (directory_ >= 0) ::close(directory_);
}

#endif

}  // namespace spectrane
