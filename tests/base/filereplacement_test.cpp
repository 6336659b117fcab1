#include "base/filereplacement.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "base/basesupport.h"
#include "base/childprocess.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class FileReplacementTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.Path(name); }
  Names FilesInFolder() const {
    Names names;
    for (const auto& entry : fs::directory_iterator(folder_.Path()))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
  static mode_t ModeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? (status.st_mode & 07777) : 0;
  }

  TemporaryFolder folder_;
};

TEST_F(FileReplacementTest, AMissingFileIsCreated) {
  EXPECT_TRUE(ReplaceFileContent(Path("a"), "new"));
  EXPECT_EQ(ReadBytes(Path("a")), "new");
  EXPECT_EQ(FilesInFolder(), Names{"a"});
}

TEST_F(FileReplacementTest, AnEmptyContentIsWritten) {
  WriteBytes(Path("a"), "old");
  EXPECT_TRUE(ReplaceFileContent(Path("a"), ""));
  EXPECT_EQ(fs::file_size(Path("a")), 0u);
}

TEST_F(FileReplacementTest, ALongerFileIsReplacedByAShorterOne) {
  WriteBytes(Path("a"), std::string(100000, 'o'));
  EXPECT_TRUE(ReplaceFileContent(Path("a"), std::string("n\0w", 3)));
  EXPECT_EQ(ReadBytes(Path("a")), std::string("n\0w", 3));
}

TEST_F(FileReplacementTest, TheTemporaryFileLiesBesideTheTargetAndIsNotCreated) {
  const FileReplacement replacement(Path("a"));
  EXPECT_EQ(fs::path(replacement.TemporaryPath()).parent_path(), folder_.Path());
  EXPECT_TRUE(FilesInFolder().empty());
}

TEST_F(FileReplacementTest, TwoReplacementsHaveTwoNames) {
  const FileReplacement one(Path("a"));
  const FileReplacement two(Path("a"));
  EXPECT_NE(one.TemporaryPath(), two.TemporaryPath());
}

TEST_F(FileReplacementTest, ANameLeftByADeadProcessOfTheSameNumberIsNotTaken) {
  std::string next;
  {
    const FileReplacement probe(Path("a"));
    next = probe.TemporaryPath();
  }
  const std::size_t dash = next.rfind('-');
  const std::size_t dot = next.rfind('.');
  const int counter = std::stoi(next.substr(dash + 1, dot - dash - 1));
  const std::string stray = next.substr(0, dash + 1) + std::to_string(counter + 1) + next.substr(dot);
  WriteBytes(stray, "stray");
  EXPECT_TRUE(ReplaceFileContent(Path("a"), "new"));
  EXPECT_EQ(ReadBytes(stray), "stray");
  EXPECT_EQ(ReadBytes(Path("a")), "new");
}

TEST_F(FileReplacementTest, AnUncommittedReplacementLeavesNothing) {
  WriteBytes(Path("a"), "old");
  {
    const FileReplacement replacement(Path("a"));
    WriteBytes(replacement.TemporaryPath(), "half");
    EXPECT_EQ(FilesInFolder().size(), 2u);
  }
  EXPECT_EQ(FilesInFolder(), Names{"a"});
  EXPECT_EQ(ReadBytes(Path("a")), "old");
}

TEST_F(FileReplacementTest, CommitWithoutATemporaryFileIsRefused) {
  WriteBytes(Path("a"), "old");
  FileReplacement replacement(Path("a"));
  std::string reason;
  EXPECT_FALSE(replacement.Commit(&reason));
  EXPECT_EQ(reason, "No such file or directory");
  EXPECT_EQ(ReadBytes(Path("a")), "old");
}

TEST_F(FileReplacementTest, ASymbolicLinkIsFollowed) {
  fs::create_directory(Path("deep"));
  WriteBytes(Path("deep/real"), "old");
  fs::create_symlink("deep/real", Path("first"));
  fs::create_symlink("first", Path("second"));
  EXPECT_TRUE(ReplaceFileContent(Path("second"), "new"));
  EXPECT_EQ(ReadBytes(Path("deep/real")), "new");
  EXPECT_TRUE(fs::is_symlink(Path("first")));
  EXPECT_TRUE(fs::is_symlink(Path("second")));
}

TEST_F(FileReplacementTest, ALinkToAMissingFileCreatesThatFile) {
  fs::create_symlink("real", Path("link"));
  EXPECT_TRUE(ReplaceFileContent(Path("link"), "new"));
  EXPECT_TRUE(fs::is_symlink(Path("link")));
  EXPECT_EQ(ReadBytes(Path("real")), "new");
}

TEST_F(FileReplacementTest, LinksInARingAreRefused) {
  fs::create_symlink("two", Path("one"));
  fs::create_symlink("one", Path("two"));
  EXPECT_FALSE(ReplaceFileContent(Path("one"), "new"));
  EXPECT_EQ(FilesInFolder(), (Names{"one", "two"}));
}

TEST_F(FileReplacementTest, AHardLinkKeepsTheOldContent) {
  WriteBytes(Path("a"), "old");
  fs::create_hard_link(Path("a"), Path("b"));
  EXPECT_TRUE(ReplaceFileContent(Path("a"), "new"));
  EXPECT_EQ(ReadBytes(Path("a")), "new");
  EXPECT_EQ(ReadBytes(Path("b")), "old");
}

TEST_F(FileReplacementTest, ThePermissionBitsAreKept) {
  for (const mode_t mode : {0640u, 0600u, 0664u, 0755u}) {
    WriteBytes(Path("a"), "old");
    ASSERT_EQ(::chmod(Path("a").c_str(), mode), 0);
    EXPECT_TRUE(ReplaceFileContent(Path("a"), "new"));
    EXPECT_EQ(ModeOf(Path("a")), mode);
  }
}

TEST_F(FileReplacementTest, AFileOfAnotherOwnerStaysHis) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root may give a file away";
  WriteBytes(Path("a"), "old");
  ASSERT_EQ(::chown(Path("a").c_str(), 1234, 2345), 0);
  EXPECT_TRUE(ReplaceFileContent(Path("a"), "new"));
  struct stat status {};
  ASSERT_EQ(::stat(Path("a").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 1234u);
  EXPECT_EQ(status.st_gid, 2345u);
}

TEST_F(FileReplacementTest, AFolderIsRefused) {
  fs::create_directory(Path("a"));
  std::string reason;
  EXPECT_FALSE(ReplaceFileContent(Path("a"), "new", &reason));
  EXPECT_EQ(reason, "Is a directory");
  EXPECT_FALSE(ReplaceFileContent(Path("a/"), "new"));
  EXPECT_EQ(FilesInFolder(), Names{"a"});
}

TEST_F(FileReplacementTest, CommitOverAFolderIsRefusedAndTheTemporaryFileGoes) {
  fs::create_directory(Path("a"));
  FileReplacement replacement(Path("a"));
  WriteBytes(replacement.TemporaryPath(), "new");
  EXPECT_FALSE(replacement.Commit());
  EXPECT_EQ(FilesInFolder(), Names{"a"});
}

TEST_F(FileReplacementTest, APipeIsRefusedAtOnce) {
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  std::string reason;
  EXPECT_FALSE(ReplaceFileContent(Path("pipe"), "new", &reason));
  EXPECT_EQ(reason, "not a regular file");
  EXPECT_TRUE(fs::is_fifo(Path("pipe")));
}

// Root could really put a file in the place of the machine's own device, so it gets one to play with.
TEST_F(FileReplacementTest, CommitOverAPipeIsRefusedAndTheTemporaryFileGoes) {
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  FileReplacement replacement(Path("pipe"));
  WriteBytes(replacement.TemporaryPath(), "new");
  std::string reason;
  EXPECT_FALSE(replacement.Commit(&reason));
  EXPECT_EQ(reason, "not a regular file");
  EXPECT_TRUE(fs::is_fifo(Path("pipe")));
  EXPECT_EQ(FilesInFolder(), Names{"pipe"});
}

TEST_F(FileReplacementTest, WhatIsNotForEverybodyIsNeverOpenToAllOnItsWay) {
  const std::pair<mode_t, bool> rows[] = {{0600, true}, {0640, true}, {0644, false}, {0664, false}};
  for (const auto& [mode, ownerOnly] : rows) {
    WriteBytes(Path("a"), "old");
    ASSERT_EQ(::chmod(Path("a").c_str(), mode), 0);
    EXPECT_EQ(FileReplacement(Path("a")).OwnerOnly(), ownerOnly) << std::oct << mode;
  }
  EXPECT_FALSE(FileReplacement(Path("none")).OwnerOnly());
}

TEST_F(FileReplacementTest, ADeviceIsRefused) {
  std::string device = "/dev/full";
  if (::geteuid() == 0) {
    device = Path("full");
    if (::mknod(device.c_str(), S_IFCHR | 0666, makedev(1, 7)) != 0) GTEST_SKIP() << "mknod is not permitted";
  }
  std::string reason;
  EXPECT_FALSE(ReplaceFileContent(device, "new", &reason));
  EXPECT_EQ(reason, "not a regular file");
  EXPECT_TRUE(fs::is_character_file(device));
  fs::create_symlink(device, Path("link"));
  EXPECT_FALSE(ReplaceFileContent(Path("link"), "new"));
  EXPECT_TRUE(fs::is_character_file(device));
}

TEST_F(FileReplacementTest, AMissingFolderIsRefused) {
  std::string reason;
  EXPECT_FALSE(ReplaceFileContent(Path("none/a"), "new", &reason));
  EXPECT_EQ(reason, "No such file or directory");
  EXPECT_TRUE(FilesInFolder().empty());
}

TEST_F(FileReplacementTest, AFileInThePlaceOfTheFolderIsRefused) {
  WriteBytes(Path("a"), "old");
  EXPECT_FALSE(ReplaceFileContent(Path("a/b"), "new"));
  EXPECT_EQ(ReadBytes(Path("a")), "old");
}

TEST_F(FileReplacementTest, AnEmptyPathAndAPathWithNulAreRefused) {
  EXPECT_FALSE(ReplaceFileContent("", "new"));
  EXPECT_FALSE(ReplaceFileContent(Path(std::string("a\0b", 3)), "new"));
  EXPECT_TRUE(FilesInFolder().empty());
}

TEST_F(FileReplacementTest, ANameOfFullLengthIsTaken) {
  const std::string name(255, 'n');
  EXPECT_TRUE(ReplaceFileContent(Path(name), "one"));
  EXPECT_TRUE(ReplaceFileContent(Path(name), "two"));
  EXPECT_EQ(ReadBytes(Path(name)), "two");
}

TEST_F(FileReplacementTest, ANameTooLongIsRefused) {
  EXPECT_FALSE(ReplaceFileContent(Path(std::string(256, 'n')), "new"));
  EXPECT_FALSE(ReplaceFileContent(Path(std::string(5000, 'n')), "new"));
  EXPECT_TRUE(FilesInFolder().empty());
}

TEST_F(FileReplacementTest, ANameOutsideAsciiIsTaken) {
  EXPECT_TRUE(ReplaceFileContent(Path("Küvette µ 比色.wls"), "new"));
  EXPECT_EQ(FilesInFolder(), Names{"Küvette µ 比色.wls"});
}

TEST_F(FileReplacementTest, ARelativePathIsTaken) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_.Path());
  EXPECT_TRUE(ReplaceFileContent("a", "one"));
  EXPECT_TRUE(ReplaceFileContent("a", "two"));
  fs::current_path(before);
  EXPECT_EQ(ReadBytes(Path("a")), "two");
}

TEST_F(FileReplacementTest, AFolderWithoutWriteRightKeepsTheOldFile) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to become somebody else";
  WriteBytes(Path("a"), "old");
  ASSERT_EQ(::chmod(folder_.Path().c_str(), 0555), 0);
  const bool done = InChild([this] {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) return false;
    std::string reason;
    return !ReplaceFileContent(Path("a"), "new", &reason) && reason == "Permission denied";
  });
  ::chmod(folder_.Path().c_str(), 0755);
  EXPECT_TRUE(done);
  EXPECT_EQ(ReadBytes(Path("a")), "old");
}

TEST_F(FileReplacementTest, AWriteProtectedFileIsRefused) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to become somebody else";
  WriteBytes(Path("a"), "old");
  ASSERT_EQ(::chmod(Path("a").c_str(), 0444), 0);
  ASSERT_EQ(::chmod(folder_.Path().c_str(), 0777), 0);
  const bool done = InChild([this] {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) return false;
    return !ReplaceFileContent(Path("a"), "new");
  });
  EXPECT_TRUE(done);
  EXPECT_EQ(ReadBytes(Path("a")), "old");
  EXPECT_EQ(FilesInFolder(), Names{"a"});
}

TEST_F(FileReplacementTest, AFileSizeLimitKeepsTheOldFile) {
  WriteBytes(Path("a"), "old");
  const bool done = InChild([this] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{4096, 4096};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
    std::string reason;
    return !ReplaceFileContent(Path("a"), std::string(100000, 'n'), &reason) && reason == "File too large";
  });
  EXPECT_TRUE(done);
  EXPECT_EQ(ReadBytes(Path("a")), "old");
  EXPECT_EQ(FilesInFolder(), Names{"a"});
}

TEST_F(FileReplacementTest, AFullDiskKeepsTheOldFile) {
  if (::mount("tmpfs", folder_.Path().c_str(), "tmpfs", 0, "size=64k") != 0)
    GTEST_SKIP() << "mount is not permitted";
  WriteBytes(Path("a"), std::string(1000, 'o'));
  std::string reason;
  const bool replaced = ReplaceFileContent(Path("a"), std::string(100000, 'n'), &reason);
  const std::string kept = ReadBytes(Path("a"));
  const Names names = FilesInFolder();
  ::umount(folder_.Path().c_str());
  EXPECT_FALSE(replaced);
  EXPECT_EQ(reason, "No space left on device");
  EXPECT_EQ(kept, std::string(1000, 'o'));
  EXPECT_EQ(names, Names{"a"});
}

TEST_F(FileReplacementTest, AProcessKilledWhileItWritesLeavesOldOrNew) {
  const std::string old(300000, 'o');
  const std::string fresh(300000, 'n');
  for (int delayUs = 0; delayUs < 6000; delayUs += 300) {
    WriteBytes(Path("a"), old);
    const pid_t child = ::fork();
    if (child == 0) {
      for (;;) {
        if (!ReplaceFileContent(Path("a"), fresh)) ::_exit(1);
      }
    }
    ::usleep(static_cast<useconds_t>(delayUs));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    const std::string found = ReadBytes(Path("a"));
    EXPECT_TRUE(found == old || found == fresh) << "after " << delayUs << " us: " << found.size() << " bytes";
  }
}

}  // namespace
}  // namespace spectrane
