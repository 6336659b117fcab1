#include "link/exclusion.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

namespace spectrane {
namespace {

std::string OwnName(const char* what) {
  return std::string("spectrane_test_") + what + std::to_string(getpid());
}

/// Removes the lock files of a name when the test ends; the program leaves its one file for the next
/// exchange.
struct Tidy {
  std::string Name;
  ~Tidy() {
    for (const char* folder : {"/run/lock/", "/tmp/"}) unlink((folder + Name).c_str());
  }
};

/// Acquires the exclusion in another process, says so through a pipe, and keeps it until killed.
pid_t HoldInChild(const std::string& name) {
  int told[2];
  if (pipe(told) != 0) return -1;
  const pid_t child = fork();
  if (child == 0) {
    const auto held = MakeNamedExclusion(name);
    const char answer = held->Acquire() ? 'y' : 'n';
    if (write(told[1], &answer, 1) != 1) _exit(1);
    for (;;) pause();
  }
  char answer = 0;
  EXPECT_EQ(read(told[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  close(told[0]);
  close(told[1]);
  return child;
}

void Kill(pid_t child) {
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

TEST(Exclusion, ANameThatNoFolderTakesCannotBeHadAndSaysWhy) {
  const auto turn = MakeNamedExclusion("no such folder/" + OwnName("nowhere"));
  EXPECT_FALSE(turn->Acquire());
  EXPECT_EQ(turn->Reason(), "/tmp/no such folder/" + OwnName("nowhere") + ": No such file or directory");
  turn->Release();
  EXPECT_FALSE(turn->Acquire());
}

TEST(Exclusion, CanBeTakenAgainAfterRelease) {
  const Tidy tidy{OwnName("again")};
  const auto turn = MakeNamedExclusion(tidy.Name);
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(turn->Acquire());
    turn->Release();
  }
}

TEST(Exclusion, WaitsForAnotherProcessAndIsFreedWhenThatIsKilled) {
  const Tidy tidy{OwnName("killed")};
  const std::string& name = tidy.Name;
  const pid_t child = HoldInChild(name);
  std::thread killer([child] {
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    Kill(child);
  });
  const auto start = std::chrono::steady_clock::now();
  const auto turn = MakeNamedExclusion(name);
  EXPECT_TRUE(turn->Acquire());
  const auto waited = std::chrono::steady_clock::now() - start;
  killer.join();
  EXPECT_GE(waited, std::chrono::milliseconds(100)) << "it must have waited for the holder";
  turn->Release();
}

TEST(Exclusion, AFileThatWasRemovedIsMadeAnew) {
  const Tidy tidy{OwnName("removed")};
  const auto turn = MakeNamedExclusion(tidy.Name);
  EXPECT_TRUE(turn->Acquire());
  turn->Release();
  for (const char* folder : {"/run/lock/", "/tmp/"}) unlink((folder + tidy.Name).c_str());
  EXPECT_TRUE(turn->Acquire());
  const bool there = access(("/run/lock/" + tidy.Name).c_str(), F_OK) == 0 ||
                     access(("/tmp/" + tidy.Name).c_str(), F_OK) == 0;
  EXPECT_TRUE(there) << "others must meet at the same file";
  turn->Release();
}

TEST(Exclusion, NamesDoNotDisturbEachOther) {
  const Tidy one{OwnName("one")};
  const Tidy two{OwnName("other")};
  const pid_t child = HoldInChild(one.Name);
  const auto other = MakeNamedExclusion(two.Name);
  EXPECT_TRUE(other->Acquire());
  other->Release();
  Kill(child);
}

}  // namespace
}  // namespace spectrane
#endif
