#pragma once

#include <memory>
#include <string>
#include <vector>

namespace spectrane {

/// A system-wide mutual exclusion by name. It is held only between Acquire and Release; when a holder is
/// killed the platform frees it.
class Exclusion {
 public:
  virtual ~Exclusion() = default;
  /// Waits without limit. False when the exclusion cannot be had at all; Reason() says why.
  virtual bool Acquire() = 0;
  virtual void Release() = 0;
  virtual std::string Reason() const { return {}; }
};

/// Folders for lock files, the preferred one first; for tests, and of no meaning on Windows.
inline const std::vector<std::string> kLockFolders = {"/run/lock", "/tmp"};

/// The platform's exclusion of that name, shared by all processes of the machine, whoever runs them.
std::unique_ptr<Exclusion> MakeNamedExclusion(const std::string& name,
                                              const std::vector<std::string>& folders = kLockFolders);

/// No exclusion: for lines that no other process can reach.
class NoExclusion : public Exclusion {
 public:
  bool Acquire() override { return true; }
  void Release() override {}
};

}  // namespace spectrane
