#include "link/exclusion.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "link/lockfiles.h"

namespace spectrane::testing_link {
namespace {

constexpr uid_t kNobody = 65534;

/// Acquires the exclusion in another process, of another user where that is possible, says so through a pipe,
/// and keeps it until killed.
pid_t HoldInChild(const std::string& name, const std::vector<std::string>& folders = kLockFolders) {
  int told[2];
  if (pipe(told) != 0) return -1;
  const pid_t child = fork();
  if (child == 0) {
    if (getuid() == 0 && setuid(kNobody) != 0) _exit(1);
    const auto held = MakeNamedExclusion(name, folders);
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
  const auto turn = MakeNamedExclusion("no such folder/" + OwnLockName("nowhere"));
  EXPECT_FALSE(turn->Acquire());
  EXPECT_EQ(turn->Reason(), "/tmp/no such folder/" + OwnLockName("nowhere") + ": No such file or directory");
  turn->Release();
  EXPECT_FALSE(turn->Acquire());
}

TEST(Exclusion, CanBeTakenAgainAfterRelease) {
  const TidyLock tidy{OwnLockName("again")};
  const auto turn = MakeNamedExclusion(tidy.Name);
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(turn->Acquire());
    turn->Release();
  }
}

TEST(Exclusion, WaitsForAnotherProcessAndIsFreedWhenThatIsKilled) {
  const TidyLock tidy{OwnLockName("killed")};
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

// Where only some users may write to the first folder, they meet the others in the second one.
TEST(Exclusion, S06_UsersWithDifferentRightsMeetAtOneLock) {
  const std::string name = OwnLockName("rights");
  const std::string base = testing::TempDir() + "/" + name;
  const std::vector<std::string> folders = {base + "/narrow", base + "/wide"};
  for (const std::string& folder : {base, folders[0], folders[1]}) ASSERT_EQ(mkdir(folder.c_str(), 0755), 0);
  ASSERT_EQ(chmod(folders[1].c_str(), 01777), 0);
  const pid_t child = HoldInChild(name, folders);
  std::atomic<bool> freed = false;
  std::thread killer([child, &freed] {
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    freed = true;
    Kill(child);
  });
  const auto turn = MakeNamedExclusion(name, folders);
  EXPECT_TRUE(turn->Acquire());
  EXPECT_TRUE(freed) << "it must have waited for the holder";
  killer.join();
  turn->Release();
  EXPECT_EQ(access((folders[0] + "/" + name).c_str(), F_OK), -1);
  EXPECT_EQ(unlink((folders[1] + "/" + name).c_str()), 0);
  for (const std::string& folder : {folders[0], folders[1], base}) rmdir(folder.c_str());
}

TEST(Exclusion, AFileThatWasRemovedIsMadeAnew) {
  const TidyLock tidy{OwnLockName("removed")};
  const auto turn = MakeNamedExclusion(tidy.Name);
  EXPECT_TRUE(turn->Acquire());
  turn->Release();
  for (const std::string& folder : kLockFolders) unlink((folder + "/" + tidy.Name).c_str());
  EXPECT_TRUE(turn->Acquire());
  const bool there = access(("/run/lock/" + tidy.Name).c_str(), F_OK) == 0 ||
                     access(("/tmp/" + tidy.Name).c_str(), F_OK) == 0;
  EXPECT_TRUE(there) << "others must meet at the same file";
  turn->Release();
}

TEST(Exclusion, NamesDoNotDisturbEachOther) {
  const TidyLock one{OwnLockName("one")};
  const TidyLock two{OwnLockName("other")};
  const pid_t child = HoldInChild(one.Name);
  const auto other = MakeNamedExclusion(two.Name);
  EXPECT_TRUE(other->Acquire());
  other->Release();
  Kill(child);
}

}  // namespace
}  // namespace spectrane::testing_link
#endif
