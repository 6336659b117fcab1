#include "base/applicationfolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "base/basesupport.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;

class ApplicationFolderTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  ScopedVariable home_{"SPECTRANE_HOME", nullptr};
  ScopedVariable configuration_{"XDG_CONFIG_HOME", folder_.Path("xdg").c_str()};
  ScopedVariable user_{"HOME", folder_.Path("user").c_str()};
  /// No folder of that name: nothing can be written there, whoever asks.
  std::string nowhere_ = folder_.Path("nowhere/bin");
};

TEST_F(ApplicationFolderTest, TheVariableComesFirst) {
  const ScopedVariable named("SPECTRANE_HOME", folder_.Path("a/b").c_str());
  WriteBytes(folder_.Path("config.ini"), "");
  EXPECT_EQ(ApplicationFolder(folder_.Path()), folder_.Path("a/b"));
  EXPECT_TRUE(fs::is_directory(folder_.Path("a/b")));
}

TEST_F(ApplicationFolderTest, ARelativeVariableCountsFromTheWorkingFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_.Path());
  const ScopedVariable named("SPECTRANE_HOME", "rel");
  EXPECT_EQ(ApplicationFolder(nowhere_), (fs::current_path() / "rel").string());
  fs::current_path(before);
}

TEST_F(ApplicationFolderTest, AnEmptyVariableCountsAsUnset) {
  const ScopedVariable named("SPECTRANE_HOME", "");
  EXPECT_EQ(ApplicationFolder(folder_.Path()), folder_.Path());
}

TEST_F(ApplicationFolderTest, AVariableThatNamesAFileIsGivenAllTheSame) {
  WriteBytes(folder_.Path("file"), "x");
  const ScopedVariable named("SPECTRANE_HOME", folder_.Path("file").c_str());
  EXPECT_EQ(ApplicationFolder(nowhere_), folder_.Path("file"));
  EXPECT_EQ(ReadBytes(folder_.Path("file")), "x");
}

TEST_F(ApplicationFolderTest, AWritableProgramFolderIsTaken) {
  EXPECT_EQ(ApplicationFolder(folder_.Path()), folder_.Path());
  EXPECT_TRUE(fs::is_empty(folder_.Path())) << "asking left something behind";
}

TEST_F(ApplicationFolderTest, TheBinFolderOfAnInstalledTreeIsNotTaken) {
  const std::string programs = folder_.Path("usr/bin");
  fs::create_directories(programs);
  fs::create_directories(folder_.Path("usr/share/applications"));
  EXPECT_EQ(ApplicationFolder(programs), programs);
  WriteBytes(folder_.Path("usr/share/applications/org.spectrane.Spectrane.desktop"), "[Desktop Entry]\n");
  EXPECT_EQ(ApplicationFolder(programs), folder_.Path("xdg/spectrane"));
  WriteBytes(folder_.Path("usr/bin/config.ini"), "");
  EXPECT_EQ(ApplicationFolder(programs), programs) << "settings that are there are used";
}

TEST_F(ApplicationFolderTest, OtherwiseTheConfigurationFolder) {
  EXPECT_EQ(ApplicationFolder(nowhere_), folder_.Path("xdg/spectrane"));
  EXPECT_TRUE(fs::is_directory(folder_.Path("xdg/spectrane")));
}

TEST_F(ApplicationFolderTest, WithoutItsVariableItLiesInTheHomeFolder) {
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative/xdg"}) {
    const ScopedVariable configuration("XDG_CONFIG_HOME", value);
    EXPECT_EQ(ApplicationFolder(nowhere_), folder_.Path("user/.config/spectrane"));
  }
}

TEST_F(ApplicationFolderTest, WithoutAHomeVariableTheUsersRecordTells) {
  if (::geteuid() != 0) GTEST_SKIP() << "would write into the home folder of the person who runs the tests";
  const pid_t child = ::fork();
  if (child == 0) {
    ::unsetenv("XDG_CONFIG_HOME");
    ::unsetenv("HOME");
    // User 1 has a home folder in the record that he may not write to: the path is right, nothing is created.
    if (::setgid(1) != 0 || ::setuid(1) != 0) ::_exit(2);
    const std::string folder = ApplicationFolder(nowhere_);
    ::_exit(folder.ends_with("/.config/spectrane") && folder.front() == '/' && !fs::exists(folder) ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST_F(ApplicationFolderTest, AUserWithoutAnyHomeGetsTheProgramFolder) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to become somebody else";
  const pid_t child = ::fork();
  if (child == 0) {
    ::unsetenv("XDG_CONFIG_HOME");
    ::setenv("HOME", "relative", 1);
    // A user number that no record has.
    if (::setgid(54321) != 0 || ::setuid(54321) != 0) ::_exit(2);
    ::_exit(ApplicationFolder(nowhere_) == nowhere_ ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST_F(ApplicationFolderTest, AReadOnlyProgramFolderIsTakenOnlyWithItsSettings) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to become somebody else";
  fs::create_directory(folder_.Path("bin"));
  fs::create_directory(folder_.Path("xdg"));
  ASSERT_EQ(::chmod(folder_.Path("xdg").c_str(), 0777), 0);
  const auto chosen = [this] {
    const pid_t child = ::fork();
    if (child == 0) {
      if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(2);
      const std::string folder = ApplicationFolder(folder_.Path("bin"));
      ::_exit(folder == folder_.Path("bin") ? 10 : folder == folder_.Path("xdg/spectrane") ? 11 : 12);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return WEXITSTATUS(status);
  };
  EXPECT_EQ(chosen(), 11);
  WriteBytes(folder_.Path("bin/config.ini"), "");
  EXPECT_EQ(chosen(), 10);
}

TEST(EnsureFolder, CreatesAllThatIsMissing) {
  const TemporaryFolder folder;
  EXPECT_TRUE(EnsureFolder(folder.Path("a/b/c")));
  EXPECT_TRUE(fs::is_directory(folder.Path("a/b/c")));
  EXPECT_TRUE(EnsureFolder(folder.Path("a/b/c"))) << "there already";
  EXPECT_TRUE(EnsureFolder(folder.Path("d/"))) << "a slash at the end";
}

TEST(EnsureFolder, TellsWhenItCannot) {
  const TemporaryFolder folder;
  WriteBytes(folder.Path("file"), "x");
  EXPECT_FALSE(EnsureFolder(""));
  EXPECT_FALSE(EnsureFolder(folder.Path("file")));
  EXPECT_FALSE(EnsureFolder(folder.Path("file/a")));
  EXPECT_FALSE(EnsureFolder(folder.Path(std::string("a\0b", 3))));
  EXPECT_FALSE(fs::exists(folder.Path("a")));
}

}  // namespace
}  // namespace spectrane
