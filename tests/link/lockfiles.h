#pragma once

#include <unistd.h>

#include <string>

#include "link/exclusion.h"

namespace spectrane::testing_link {

/// The name of a lock that no other test and no other run of it has.
inline std::string OwnLockName(const char* what) {
  return std::string("spectrane_test_") + what + std::to_string(::getpid());
}

/// Removes the lock files of a name when the test ends; the program leaves its one file for the next
/// exchange.
struct TidyLock {
  std::string Name;
  ~TidyLock() {
    for (const std::string& folder : kLockFolders) ::unlink((folder + "/" + Name).c_str());
  }
};

}  // namespace spectrane::testing_link
