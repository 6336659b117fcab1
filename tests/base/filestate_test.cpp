#include "base/filestate.h"

#include <filesystem>
#include <functional>

#include "base/basesupport.h"
#include "base/filereplacement.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;

class FileStateTest : public testing::Test {
 protected:
  FileStateTest() { WriteBytes(path_, "theirs"); }

  /// Whatever the caller does, size and time of the file are as before.
  void BehindTheTime(const std::function<void()>& change) const {
    const auto time = fs::last_write_time(path_);
    change();
    fs::last_write_time(path_, time);
    ASSERT_EQ(fs::file_size(path_), 6U);
    ASSERT_EQ(fs::last_write_time(path_), time);
  }

  TemporaryFolder folder_;
  const std::string path_ = folder_.Path("a.bas");
};

TEST_F(FileStateTest, StaysWhileNobodyWrites) {
  const FileState before = FileStateOf(path_);
  EXPECT_EQ(before.Size, 6);
  EXPECT_EQ(ReadBytes(path_), "theirs");
  EXPECT_TRUE(IsSameState(before, FileStateOf(path_)));
  EXPECT_TRUE(IsSameState(before, FileState::Rough(6, before.ModifiedMs())));
}

TEST_F(FileStateTest, OfNothingHasNoSize) {
  EXPECT_EQ(FileStateOf(folder_.Path("none")).Size, -1);
  EXPECT_TRUE(IsSameState(FileStateOf(folder_.Path("none")), {}));
}

TEST_F(FileStateTest, D09_AFileInItsPlaceOfTheSameSizeAndTimeIsAnother) {
  const FileState before = FileStateOf(path_);
  const std::string other = folder_.Path("other");
  WriteBytes(other, "others");
  BehindTheTime([&] { fs::rename(other, path_); });
  const FileState after = FileStateOf(path_);
  EXPECT_EQ(before.ModifiedNs, after.ModifiedNs);
  EXPECT_NE(before.Index, after.Index);
  EXPECT_FALSE(IsSameState(before, after));
}

TEST_F(FileStateTest, D09_ARewriteThatPutsTheOldTimeBackIsSeen) {
  const FileState before = FileStateOf(path_);
  // The clock of a file system ticks some hundred times a second.
  for (int i = 0; i < 1000 && FileStateOf(path_).Changed == before.Changed; ++i)
    BehindTheTime([&] { WriteBytes(path_, "others"); });
  const FileState after = FileStateOf(path_);
  EXPECT_EQ(before.ModifiedNs, after.ModifiedNs);
  EXPECT_EQ(before.Index, after.Index);
  EXPECT_FALSE(IsSameState(before, after));
}

TEST_F(FileStateTest, D09_ASaveThatPutsANewFileThereIsSeen) {
  const FileState before = FileStateOf(path_);
  BehindTheTime([&] { ASSERT_TRUE(ReplaceFileContent(path_, "others")); });
  EXPECT_FALSE(IsSameState(before, FileStateOf(path_)));
}

TEST_F(FileStateTest, WhatWasNotedDownRoughlyIsComparedSo) {
  const FileState now = FileStateOf(path_);
  EXPECT_FALSE(IsSameState(now, FileState::Rough(7, now.ModifiedMs())));
  EXPECT_FALSE(IsSameState(FileState::Rough(6, now.ModifiedMs() + 1), now));
  EXPECT_TRUE(IsSameState(FileState::Rough(6, now.ModifiedMs()), now));
  for (const std::int64_t ms : {INT64_MAX, INT64_MIN}) {
    const FileState odd = FileState::Rough(6, ms);
    EXPECT_TRUE(IsSameState(odd, FileState::Rough(6, ms)));
    EXPECT_FALSE(IsSameState(odd, now));
  }
}

TEST_F(FileStateTest, TimesBefore1970AreRoundedDownAsWell) {
  FileState early;
  early.ModifiedNs = -1;
  EXPECT_EQ(early.ModifiedMs(), -1);
  early.ModifiedNs = -1'000'000;
  EXPECT_EQ(early.ModifiedMs(), -1);
  early.ModifiedNs = 1'999'999;
  EXPECT_EQ(early.ModifiedMs(), 1);
}

}  // namespace
}  // namespace spectrane
