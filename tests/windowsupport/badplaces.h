#pragma once

#ifndef _WIN32

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

namespace spectrane::testing_windows {

/// Gives up the rights of the superuser, who may write everywhere, while it lives.
class NoPrivileges {
 public:
  NoPrivileges() {
    if (::getuid() == 0) {
      EXPECT_EQ(::seteuid(65534), 0);
    }
  }
  ~NoPrivileges() {
    if (::getuid() == 0) {
      EXPECT_EQ(::seteuid(0), 0);
    }
  }
  NoPrivileges(const NoPrivileges&) = delete;
  NoPrivileges& operator=(const NoPrivileges&) = delete;
};

/// No file takes more than a few bytes while it lives, as on a disk that is full.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &before_), 0);
    const rlimit limit{bytes, before_.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~FullDisk() {
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &before_), 0);
    std::signal(SIGXFSZ, handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_ = {};
  void (*handler_)(int);
};

}  // namespace spectrane::testing_windows

#endif
