#include "files/filenumber.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

#include "base/childprocess.h"
#include "files/filesupport.h"

namespace spectrane {
namespace {

/// Puts a text into an open file.
bool Put(int number, std::int64_t offset, const std::string& text) {
  unsigned char* const room = PlaceBytes(number, offset, text.size());
  if (room != nullptr) std::memcpy(room, text.data(), text.size());
  return room != nullptr;
}
std::string Get(int number, std::int64_t offset, std::size_t size) {
  const unsigned char* const bytes = ViewBytes(number, offset, size);
  return bytes == nullptr ? "(nothing)" : std::string(reinterpret_cast<const char*>(bytes), size);
}

class FileNumber : public testing::Test {
 protected:
  int Create(const char* name) {
    const int number = FreeFileNumber();
    EXPECT_TRUE(CreateBinaryFile(folder_.Path(name), number));
    return number;
  }
  int Open(const std::string& path) {
    const int number = FreeFileNumber();
    OpenBinaryFile(path, number);
    return number;
  }
  TemporaryFolder folder_;
};

TEST_F(FileNumber, TheSmallestFreeNumberIsGiven) {
  const int a = Create("a");
  const int b = Create("b");
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, 2);
  CloseFileNumber(a);
  EXPECT_FALSE(IsOpenFileNumber(a));
  EXPECT_TRUE(IsOpenFileNumber(b));
  EXPECT_EQ(Create("c"), 1);
  EXPECT_EQ(FreeFileNumber(), 3);
  EXPECT_EQ(FreeFileNumber(), 3) << "a number is taken by opening a file only";
  CloseFileNumber(1);
  CloseFileNumber(2);
}

TEST_F(FileNumber, ANumberWithoutAFileIsHarmless) {
  for (const int number : {-1, 0, 99, FreeFileNumber()}) {
    CloseFileNumber(number);
    EXPECT_FALSE(IsOpenFileNumber(number));
    EXPECT_EQ(FileLength(number), 0);
    EXPECT_EQ(ViewBytes(number, 0, 0), nullptr);
    EXPECT_EQ(PlaceBytes(number, 0, 1), nullptr);
  }
}

TEST_F(FileNumber, ANumberThatWasNeverGivenOutTakesNothing) {
  for (const int number : {-1, 0, 99}) {
    EXPECT_FALSE(CreateBinaryFile(folder_.Path("a"), number));
    EXPECT_FALSE(OpenBinaryFile(folder_.Path("a"), number));
    NoteFault(number, {FileError::Damaged, 7, 0, 0, {}});
    NoteTextLost(number);
    EXPECT_FALSE(FaultOf(number));
    EXPECT_FALSE(TextLost(number));
  }
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("a")));
}

TEST_F(FileNumber, ANumberInUseKeepsItsFile) {
  WriteBytes(folder_.Path("b"), "other");
  const NumberAtEnd file{Create("a")};
  EXPECT_FALSE(CreateBinaryFile(folder_.Path("c"), file.Number));
  EXPECT_FALSE(OpenBinaryFile(folder_.Path("b"), file.Number));
  EXPECT_FALSE(FaultOf(file.Number));
  EXPECT_TRUE(Put(file.Number, 0, "mine"));
  EXPECT_EQ(Get(file.Number, 0, 4), "mine");
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("c")));
}

TEST_F(FileNumber, ANameThatNoFileCanHaveIsNotCreated) {
  for (const std::string& path : {std::string(), folder_.Path("a") + std::string("\0b", 2)}) {
    const int number = FreeFileNumber();
    EXPECT_FALSE(CreateBinaryFile(path, number));
    EXPECT_EQ(FaultOf(number).Error, FileError::Missing);
    EXPECT_FALSE(IsOpenFileNumber(number));
  }
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("a")));
}

TEST_F(FileNumber, AProgramThatRunsIsReadAlthoughNobodyMayWriteIt) {
  const NumberAtEnd file{Open("/proc/self/exe")};
  EXPECT_FALSE(FaultOf(file.Number));
  EXPECT_EQ(Get(file.Number, 1, 3), "ELF");
}

TEST_F(FileNumber, APieceThatIsTooLargeIsAFaultAndWritesNothing) {
  const int number = Create("a");
  EXPECT_EQ(PlaceBytes(number, 0, kLargestPiece + 1), nullptr);
  CloseFileNumber(number);
  EXPECT_EQ(FaultOf(number).Error, FileError::InputOutput);
  EXPECT_EQ(ReadBytes(folder_.Path("a")), "");
}

TEST_F(FileNumber, AReusedNumberHasNoOldFault) {
  const int number = Open(folder_.Path("none"));
  EXPECT_EQ(FaultOf(number).Error, FileError::Missing);
  EXPECT_EQ(FreeFileNumber(), number);
  EXPECT_FALSE(FaultOf(number));
}

TEST_F(FileNumber, AnExistingFileIsNotCreated) {
  WriteBytes(folder_.Path("a"), "old");
  const int number = FreeFileNumber();
  EXPECT_FALSE(CreateBinaryFile(folder_.Path("a"), number));
  EXPECT_EQ(FaultOf(number).Error, FileError::Exists);
  EXPECT_FALSE(IsOpenFileNumber(number));
  EXPECT_EQ(ReadBytes(folder_.Path("a")), "old");
}

TEST_F(FileNumber, WhatIsNoFileIsNotOpened) {
  ASSERT_EQ(::mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(FaultOf(Open(folder_.Path("pipe"))).Error, FileError::NotRegular);
  EXPECT_EQ(FaultOf(Open(folder_.Path())).Error, FileError::NotRegular);
  EXPECT_EQ(FaultOf(Open("/dev/zero")).Error, FileError::NotRegular);
  EXPECT_EQ(FaultOf(Open("")).Error, FileError::Missing);
  EXPECT_EQ(FaultOf(Open(std::string("a\0b", 3))).Error, FileError::Missing);
  EXPECT_EQ(FaultOf(Open(std::string(300, 'n'))).Error, FileError::InputOutput);
  EXPECT_FALSE(IsOpenFileNumber(FreeFileNumber()));
}

TEST_F(FileNumber, BytesAreViewedInAnyOrder) {
  std::string bytes;
  for (int i = 0; i < 100000; ++i) bytes += Long(i);
  WriteBytes(folder_.Path("a"), bytes);
  const NumberAtEnd file{Open(folder_.Path("a"))};
  EXPECT_EQ(FileLength(file.Number), 400000);
  for (const int i : {0, 1, 99999, 32767, 32768, 5, 65535, 0}) {
    EXPECT_EQ(Get(file.Number, 4 * i, 4), Long(i));
  }
  EXPECT_EQ(Get(file.Number, 262142, 4), bytes.substr(262142, 4)) << "across the end of a block";
  EXPECT_EQ(Get(file.Number, 100000, kLargestPiece), bytes.substr(100000, kLargestPiece));
}

TEST_F(FileNumber, BytesBeyondTheEndAreNotViewed) {
  WriteBytes(folder_.Path("a"), "0123456789");
  const NumberAtEnd file{Open(folder_.Path("a"))};
  EXPECT_EQ(Get(file.Number, 6, 4), "6789");
  EXPECT_EQ(ViewBytes(file.Number, 7, 4), nullptr);
  EXPECT_EQ(ViewBytes(file.Number, 11, 0), nullptr);
  EXPECT_EQ(ViewBytes(file.Number, -1, 1), nullptr);
  EXPECT_EQ(ViewBytes(file.Number, INT64_MAX, 4), nullptr);
  EXPECT_EQ(ViewBytes(file.Number, 0, kLargestPiece + 1), nullptr);
  EXPECT_FALSE(FaultOf(file.Number)) << "the end of a file is no fault";
}

TEST_F(FileNumber, AFileThatGrewIsReadOn) {
  WriteBytes(folder_.Path("a"), "0123");
  const NumberAtEnd file{Open(folder_.Path("a"))};
  EXPECT_EQ(ViewBytes(file.Number, 0, 8), nullptr);
  WriteBytes(folder_.Path("a"), "01234567");
  EXPECT_EQ(Get(file.Number, 0, 8), "01234567");
}

TEST_F(FileNumber, WhatIsHeldGrowsWithTheFile) {
  std::string bytes = "0123456789";
  WriteBytes(folder_.Path("a"), bytes);
  const int number = Open(folder_.Path("a"));
  EXPECT_EQ(Get(number, 0, 10), bytes);
  for (int i = 0; i < 75000; ++i) bytes += Long(i);
  WriteBytes(folder_.Path("a"), bytes);
  EXPECT_EQ(Get(number, 200000, kLargestPiece), bytes.substr(200000, kLargestPiece));
  EXPECT_EQ(Get(number, 0, 20), bytes.substr(0, 20));
  EXPECT_EQ(Get(number, 300000, 10), bytes.substr(300000));
  Put(number, 300010, std::string(kLargestPiece, 'x'));
  EXPECT_EQ(Get(number, 300000, 20), bytes.substr(300000) + std::string(10, 'x'));
  CloseFileNumber(number);
  EXPECT_FALSE(FaultOf(number));
  EXPECT_EQ(ReadBytes(folder_.Path("a")), bytes + std::string(kLargestPiece, 'x'));
}

TEST_F(FileNumber, AFileThatShrankGivesNothing) {
  WriteBytes(folder_.Path("a"), std::string(600000, 'x'));
  const NumberAtEnd file{Open(folder_.Path("a"))};
  EXPECT_EQ(Get(file.Number, 0, 2), "xx");
  ASSERT_EQ(::truncate(folder_.Path("a").c_str(), 500000), 0);
  EXPECT_EQ(ViewBytes(file.Number, 550000, 8), nullptr);
}

TEST_F(FileNumber, WhatIsWrittenStandsInTheFileAfterTheClose) {
  const int number = Create("a");
  std::string expected;
  for (int i = 0; i < 70000; ++i) {
    EXPECT_TRUE(Put(number, 4 * i, Long(i)));
    expected += Long(i);
  }
  EXPECT_EQ(FileLength(number), 280000);
  CloseFileNumber(number);
  EXPECT_FALSE(FaultOf(number));
  EXPECT_EQ(ReadBytes(folder_.Path("a")), expected);
}

TEST_F(FileNumber, WaitingBytesCanBeReadAndWrittenOver) {
  const int number = Create("a");
  Put(number, 0, "0123456789");
  Put(number, 3, "abc");
  EXPECT_EQ(Get(number, 2, 5), "2abc6");
  Put(number, 8, "XYZ");
  EXPECT_EQ(Get(number, 0, 11), "012abc67XYZ");
  Put(number, 0, "-");
  CloseFileNumber(number);
  EXPECT_FALSE(FaultOf(number));
  EXPECT_EQ(ReadBytes(folder_.Path("a")), "-12abc67XYZ");
}

TEST_F(FileNumber, AGapIsFilledWithZeros) {
  const int number = Create("a");
  Put(number, 0, "ab");
  Put(number, 6, "cd");
  CloseFileNumber(number);
  EXPECT_EQ(ReadBytes(folder_.Path("a")), std::string("ab\0\0\0\0cd", 8));
}

TEST_F(FileNumber, AnOpenedFileCanBeWritten) {
  WriteBytes(folder_.Path("a"), "0123456789");
  const int number = Open(folder_.Path("a"));
  EXPECT_EQ(Get(number, 0, 3), "012");
  Put(number, 4, "XY");
  EXPECT_EQ(Get(number, 0, 10), "0123XY6789");
  CloseFileNumber(number);
  EXPECT_EQ(ReadBytes(folder_.Path("a")), "0123XY6789");
}

TEST_F(FileNumber, OffsetsBeyondFourGigabytesAreReached) {
  constexpr std::int64_t kFar = (std::int64_t{1} << 33) + 5;
  const int number = Create("a");
  Put(number, kFar, "far");
  EXPECT_EQ(FileLength(number), kFar + 3);
  EXPECT_EQ(Get(number, kFar + 1, 2), "ar");
  EXPECT_EQ(Get(number, (std::int64_t{1} << 32) + 5, 2), std::string(2, '\0'));
  CloseFileNumber(number);
  EXPECT_FALSE(FaultOf(number));
  EXPECT_EQ(std::filesystem::file_size(folder_.Path("a")), static_cast<std::uintmax_t>(kFar + 3));
}

TEST_F(FileNumber, ANegativeOffsetIsAFaultAndWritesNothing) {
  const int number = Create("a");
  EXPECT_FALSE(Put(number, -1, "x"));
  CloseFileNumber(number);
  EXPECT_EQ(FaultOf(number).Error, FileError::InputOutput);
  EXPECT_EQ(ReadBytes(folder_.Path("a")), "");
}

TEST_F(FileNumber, TheFirstFaultStays) {
  const int number = Create("a");
  NoteFault(number, {FileError::Damaged, 7, 0, 0, {}});
  NoteFault(number, {FileError::Missing, 0, 0, 0, {}});
  CloseFileNumber(number);
  EXPECT_EQ(FaultOf(number).Error, FileError::Damaged);
  EXPECT_EQ(FaultOf(number).Offset, 7);
}

TEST_F(FileNumber, AFileThatIsGivenUpTakesNothingMore) {
  const int number = Create("a");
  EXPECT_TRUE(Put(number, 0, "before"));
  NoteFault(number, {FileError::Damaged, 7, 0, 0, {}});
  EXPECT_TRUE(Put(number, 6, "behind"));
  CloseFileNumber(number);
  EXPECT_EQ(ReadBytes(folder_.Path("a")), "");
}

TEST_F(FileNumber, AFailedWriteShowsUnderTheNumber) {
  EXPECT_TRUE(InChild([this] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100000, 100000};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
    const int number = FreeFileNumber();
    if (!CreateBinaryFile(folder_.Path("a"), number)) return false;
    for (int i = 0; i < 10; ++i) Put(number, 50000 * i, std::string(50000, 'x'));
    CloseFileNumber(number);
    return FaultOf(number).Error == FileError::InputOutput && FaultOf(number).Reason == "File too large";
  }));
}

TEST_F(FileNumber, AWriteThatFailsAtTheCloseShowsUnderTheNumber) {
  EXPECT_TRUE(InChild([this] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{10, 10};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
    const int number = FreeFileNumber();
    if (!CreateBinaryFile(folder_.Path("a"), number)) return false;
    Put(number, 0, "more than ten");
    const bool silent = !FaultOf(number);
    CloseFileNumber(number);
    return silent && FaultOf(number).Error == FileError::InputOutput;
  }));
}

TEST_F(FileNumber, AFileWithoutWriteRightIsReadAndNotWritten) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to become somebody else";
  WriteBytes(folder_.Path("a"), "0123");
  ASSERT_EQ(::chmod(folder_.Path("a").c_str(), 0444), 0);
  EXPECT_TRUE(InChild([this] {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) return false;
    const int number = FreeFileNumber();
    if (!OpenBinaryFile(folder_.Path("a"), number) || Get(number, 0, 4) != "0123") return false;
    Put(number, 0, "x");
    CloseFileNumber(number);
    return FaultOf(number).Error == FileError::InputOutput;
  }));
  EXPECT_EQ(ReadBytes(folder_.Path("a")), "0123");
}

TEST_F(FileNumber, NoDescriptorIsLeftOpen) {
  const auto next = [] {
    const int descriptor = ::open("/dev/null", O_RDONLY);
    ::close(descriptor);
    return descriptor;
  };
  WriteBytes(folder_.Path("old"), "x");
  const int before = next();
  for (int i = 0; i < 50; ++i) {
    CloseFileNumber(Open(folder_.Path("old")));
    Open(folder_.Path("none"));
    Open(folder_.Path());
  }
  EXPECT_EQ(next(), before);
}

}  // namespace
}  // namespace spectrane
