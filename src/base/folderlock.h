#pragma once

#include <string>

namespace spectrane {

/// Keeps other copies of the program out of a folder's common file while one of them rewrites it. Gone with
/// the process that holds it. Where the platform has no such lock for the folder, it counts as held.
class FolderLock {
 public:
  /// Waits up to `timeoutMs`.
  FolderLock(const std::string& folder, int timeoutMs);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  /// False: another copy had the lock all the time, or the process has no handle left to ask for it.
  bool Held() const { return held_; }

 private:
#ifdef _WIN32
  void* mutex_ = nullptr;
#else
  int directory_ = -1;
#endif
  bool held_ = false;
};

}  // namespace spectrane
