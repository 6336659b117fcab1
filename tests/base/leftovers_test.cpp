#include "base/leftovers.h"

#include <sys/wait.h>

#include <chrono>

#include "base/basesupport.h"
#include "base/filereplacement.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;
using std::chrono::hours;
using std::chrono::minutes;

/// The number of a process that is gone.
std::string DeadProcess() {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ::waitpid(child, nullptr, 0);
  return std::to_string(child);
}

class Leftovers : public testing::Test {
 protected:
  template <typename Age>
  std::string Put(const std::string& name, Age age) {
    WriteBytes(folder_.Path(name), "half");
    fs::last_write_time(folder_.Path(name), fs::file_time_type::clock::now() - age);
    return folder_.Path(name);
  }
  TemporaryFolder folder_;
};

TEST_F(Leftovers, D11_TheNextSaveRemovesWhatAKilledOneHasLeft) {
  const std::string stray = Put(".spectrane-" + DeadProcess() + "-3.tmp", minutes(11));
  ASSERT_TRUE(ReplaceFileContent(folder_.Path("a.bas"), "new"));
  EXPECT_FALSE(fs::exists(stray));
  EXPECT_EQ(NamesIn(folder_.Path()), 1u);
}

TEST_F(Leftovers, ASaveOfTheMomentIsLeftAlone) {
  const std::string dead = DeadProcess();
  const std::string living = std::to_string(::getppid());
  const std::vector<std::string> kept = {
      Put(".spectrane-" + dead + "-1.tmp", minutes(9)),
      Put(".spectrane-" + dead + "-2.tmp", -hours(2)),
      Put(".spectrane-" + living + "-1.tmp", hours(23)),
      Put(".spectrane-" + std::to_string(::getpid()) + "-1.tmp", hours(1)),
  };
  RemoveLeftovers(folder_.Path());
  for (const std::string& path : kept) EXPECT_TRUE(fs::exists(path)) << path;
}

TEST_F(Leftovers, AfterADayTheNumberOfTheProcessDoesNotCount) {
  const std::string path = Put(".spectrane-" + std::to_string(::getppid()) + "-1.tmp", hours(25));
  RemoveLeftovers(folder_.Path());
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(Leftovers, NothingOfAnotherNameOrKindIsTouched) {
  const std::string dead = DeadProcess();
  const std::vector<std::string> names = {"run.bas",
                                          ".spectrane-" + dead + "-1.tmp.bas",
                                          ".spectrane-" + dead + ".tmp",
                                          ".spectrane-" + dead + "-.tmp",
                                          ".spectrane-" + dead + "-1x.tmp",
                                          ".spectrane--1.tmp",
                                          ".spectrane-9999999999-1.tmp",
                                          ".spectrane-.tmp",
                                          "spectrane-" + dead + "-1.tmp"};
  for (const std::string& name : names) Put(name, hours(48));
  const std::string link = folder_.Path(".spectrane-" + dead + "-7.tmp");
  fs::create_symlink(folder_.Path("run.bas"), link);
  fs::create_directory(folder_.Path(".spectrane-" + dead + "-8.tmp"));
  RemoveLeftovers(folder_.Path());
  EXPECT_EQ(NamesIn(folder_.Path()), names.size() + 2);
  RemoveLeftovers(folder_.Path("no such folder"));
}

}  // namespace
}  // namespace spectrane
