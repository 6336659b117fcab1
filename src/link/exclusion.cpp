#include "link/exclusion.h"

#include <cerrno>
#include <cstring>
#include <system_error>

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include "base/windowsheader.h"
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace spectrane {
namespace {

#ifdef _WIN32

// A mutex rather than a semaphore: a mutex whose holder was killed passes to the next in line.
class NamedExclusion : public Exclusion {
 public:
  NamedExclusion(const std::string& name, const std::vector<std::string>&) : name_("Global\\" + name) {}
  ~NamedExclusion() override { NamedExclusion::Release(); }

  bool Acquire() override {
    // Open to every user of the machine: all share the line.
    SECURITY_DESCRIPTOR everyone = {};
    InitializeSecurityDescriptor(&everyone, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&everyone, TRUE, nullptr, FALSE);
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, &everyone, FALSE};
    handle_ = CreateMutexA(&attributes, FALSE, name_.c_str());
    if (!handle_) return Failed();
    const DWORD result = WaitForSingleObject(handle_, INFINITE);
    if (result == WAIT_OBJECT_0 || result == WAIT_ABANDONED) return true;
    Failed();
    CloseHandle(handle_);
    handle_ = nullptr;
    return false;
  }

  void Release() override {
    if (!handle_) return;
    ReleaseMutex(handle_);
    CloseHandle(handle_);
    handle_ = nullptr;
  }

  std::string Reason() const override { return reason_; }

 private:
  bool Failed() {
    reason_ = std::system_category().message(static_cast<int>(GetLastError()));
    return false;
  }

  std::string name_;
  std::string reason_;
  HANDLE handle_ = nullptr;
};

#else

// An advisory lock on a file: the kernel drops it with the holder's last descriptor, however the holder ends.
class NamedExclusion : public Exclusion {
 public:
  NamedExclusion(std::string name, std::vector<std::string> folders)
      : name_(std::move(name)), folders_(std::move(folders)) {}
  ~NamedExclusion() override { Forget(); }

  bool Acquire() override {
    for (;;) {
      if (file_ < 0 && !OpenLockFile()) return false;
      if (flock(file_, LOCK_EX) == 0) {
        if (IsInItsFolder()) return true;
        Forget();  // somebody removed the file: others would meet at a new one
      } else if (errno != EINTR) {
        reason_ = name_ + ": " + std::strerror(errno);
        Forget();
        return false;
      }
    }
  }

  // The file stays open for the next turn; opening it each time costs more than the lock itself.
  void Release() override {
    if (file_ >= 0) flock(file_, LOCK_UN);
  }

  std::string Reason() const override { return reason_; }

 private:
  // All users must meet at the same file: a folder that only some may write to comes behind those that are
  // open to everybody, also for those who may.
  bool OpenLockFile() {
    for (const bool open : {true, false}) {
      for (const std::string& folder : folders_) {
        if (IsOpenToAll(folder) != open) continue;
        file_ = OpenIn(folder + "/" + name_);
        if (file_ >= 0) return true;
      }
    }
    return false;
  }

  static bool IsOpenToAll(const std::string& folder) {
    struct stat about = {};
    return stat(folder.c_str(), &about) == 0 && (about.st_mode & S_IWOTH) != 0;
  }

  bool IsInItsFolder() const {
    struct stat about = {};
    return fstat(file_, &about) == 0 && about.st_nlink > 0;
  }

  void Forget() {
    if (file_ >= 0) close(file_);
    file_ = -1;
  }

  int OpenIn(const std::string& path) {
    // Without O_CREAT first: in a sticky folder the kernel may refuse O_CREAT on another user's file.
    int file = open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    if (file < 0 && errno == ENOENT) {
      file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
      if (file >= 0) static_cast<void>(fchmod(file, 0666));  // every user of the machine shares it
    }
    if (file < 0 && errno == EACCES) file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (file < 0) reason_ = path + ": " + std::strerror(errno);
    return file;
  }

  std::string name_;
  std::vector<std::string> folders_;
  std::string reason_;
  int file_ = -1;
};

#endif

}  // namespace

std::unique_ptr<Exclusion> MakeNamedExclusion(const std::string& name,
                                              const std::vector<std::string>& folders) {
  return std::make_unique<NamedExclusion>(name, folders);
}

}  // namespace spectrane
