#include "files/basicfile.h"

#include <sys/stat.h>

#include "base/version.h"
#include "files/filesupport.h"

namespace spectrane {
namespace {

class BasicFile : public testing::Test {
 protected:
  std::string File() const { return folder_.Path("a.bas"); }
  bool Opens(const std::string& bytes) {
    WriteBytes(File(), bytes);
    NumberAtEnd file;
    return OpenBasicFile(File(), file.Number, option_);
  }
  TemporaryFolder folder_;
  BasicOption option_;
};

TEST_F(BasicFile, IsWrittenFieldByField) {
  ASSERT_EQ(VersionText(), "1.62.0");
  int number = 0;
  ASSERT_TRUE(CreateBasicFile(File(), number, {"1.62.0", "2024-02-29  13:05:09", 2}));
  EXPECT_TRUE(WriteBasicRecord(number, BasicRow(100, "row 0"), 0));
  EXPECT_TRUE(WriteBasicRecord(number, BasicRow(101, "row 1"), 1));
  CloseBasicFile(number);
  EXPECT_FALSE(FaultOf(number));
  const std::string bytes = ReadBytes(File());
  EXPECT_EQ(bytes.size(), 492u + 2 * 276u);
  EXPECT_EQ(bytes, BasicFileBytes(2, 2));
}

TEST_F(BasicFile, IsReadFieldByField) {
  WriteBytes(File(), BasicFileBytes(2, 2));
  NumberAtEnd file;
  ASSERT_TRUE(OpenBasicFile(File(), file.Number, option_));
  EXPECT_EQ(option_.Version, "1.62.0");
  EXPECT_EQ(option_.Written, "2024-02-29  13:05:09");
  EXPECT_EQ(option_.RecordCount, 2);
  BasicRecord record;
  ASSERT_TRUE(ReadBasicRecord(file.Number, record, 1));
  EXPECT_EQ(record.SampleEnergy, 101);
  EXPECT_EQ(record.ReferenceEnergy, 20000);
  EXPECT_EQ(record.DarkEnergy, -7);
  EXPECT_EQ(record.Wavelength, 546.0);
  EXPECT_EQ(record.Note, "row 1");
  ASSERT_TRUE(ReadBasicRecord(file.Number, record, 0));
  EXPECT_EQ(record.SampleEnergy, 100);
  EXPECT_FALSE(ReadBasicRecord(file.Number, record, 2));
  EXPECT_EQ(record.Note, "row 0") << "nothing is read past the end";
}

TEST_F(BasicFile, AnExistingFileIsNotCreatedOver) {
  WriteBytes(File(), "old");
  int number = 0;
  EXPECT_FALSE(CreateBasicFile(File(), number, {}));
  EXPECT_GE(number, 1);
  CloseBasicFile(number);
  EXPECT_EQ(ReadBytes(File()), "old");
}

TEST_F(BasicFile, AnEmptyFileHasItsOptionBlock) {
  int number = 0;
  ASSERT_TRUE(CreateBasicFile(File(), number, {}));
  CloseBasicFile(number);
  EXPECT_EQ(ReadBytes(File()).size(), 492u);
  NumberAtEnd file;
  EXPECT_TRUE(OpenBasicFile(File(), file.Number, option_));
  BasicRecord record;
  EXPECT_FALSE(ReadBasicRecord(file.Number, record, 0));
}

TEST_F(BasicFile, ARefusedFileStaysOpenUntilItIsClosed) {
  WriteBytes(File(), HeaderBytes(12) + BasicOptionBytes(0));
  int number = 0;
  EXPECT_FALSE(OpenBasicFile(File(), number, option_));
  EXPECT_TRUE(IsOpenFileNumber(number));
  EXPECT_EQ(FaultOf(number).Error, FileError::WrongKind);
  CloseBasicFile(number);
  EXPECT_FALSE(IsOpenFileNumber(number));
}

TEST_F(BasicFile, AMissingFileLeavesNothingOpen) {
  int number = 0;
  EXPECT_FALSE(OpenBasicFile(File(), number, option_));
  EXPECT_GE(number, 1);
  EXPECT_FALSE(IsOpenFileNumber(number));
  EXPECT_EQ(FaultOf(number).Error, FileError::Missing);
}

TEST_F(BasicFile, APipeIsRefusedAtOnce) {
  ASSERT_EQ(::mkfifo(File().c_str(), 0600), 0);
  int number = 0;
  EXPECT_FALSE(OpenBasicFile(File(), number, option_));
  EXPECT_EQ(FaultOf(number).Error, FileError::NotRegular);
}

TEST_F(BasicFile, EachHeaderTestCounts) {
  EXPECT_TRUE(Opens(HeaderBytes(11) + BasicOptionBytes(0)));
  EXPECT_TRUE(Opens(HeaderBytes(11, "  Kestu  ") + BasicOptionBytes(0)));
  EXPECT_FALSE(Opens(HeaderBytes(3) + BasicOptionBytes(0)));
  EXPECT_FALSE(Opens(HeaderBytes(11, "kestu") + BasicOptionBytes(0)));
  EXPECT_FALSE(Opens(HeaderBytes(11, "Kestu", 1) + BasicOptionBytes(0)));
}

TEST_F(BasicFile, VersionContactAndReserveAreNotLookedAt) {
  std::string header = HeaderBytes(11);
  header.replace(4, 16, std::string(16, '\xFF'));
  header.replace(36, 64, std::string(64, '\0'));
  EXPECT_TRUE(Opens(header + BasicOptionBytes(0)));
}

TEST_F(BasicFile, EveryCutOfTheHeadIsRefused) {
  const std::string whole = BasicFileBytes(0, 0);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    option_.Version = "untouched";
    EXPECT_FALSE(Opens(whole.substr(0, length))) << length;
    EXPECT_EQ(option_.Version, "untouched") << length;
  }
  EXPECT_TRUE(Opens(whole));
}

TEST_F(BasicFile, EveryCutOfARecordLosesThatRecordOnly) {
  const std::string whole = BasicFileBytes(2, 2);
  for (std::size_t length = 492; length <= whole.size(); ++length) {
    WriteBytes(File(), whole.substr(0, length));
    NumberAtEnd file;
    ASSERT_TRUE(OpenBasicFile(File(), file.Number, option_));
    BasicRecord record;
    EXPECT_EQ(ReadBasicRecord(file.Number, record, 0), length >= 768) << length;
    EXPECT_EQ(ReadBasicRecord(file.Number, record, 1), length >= 1044) << length;
  }
}

TEST_F(BasicFile, ATailBehindTheLastRecordIsPassedOver) {
  WriteBytes(File(), BasicFileBytes(1, 1) + "something else");
  std::vector<BasicRecord> records;
  EXPECT_FALSE(LoadDataFile(BasicModule(), File(), option_, records));
  EXPECT_EQ(records.size(), 1u);
}

TEST_F(BasicFile, AHugeCountInASmallFileAllocatesNothing) {
  for (const std::int64_t count : {std::int64_t{1000000000}, std::int64_t{INT32_MAX}}) {
    WriteBytes(File(), BasicFileBytes(2, count));
    std::vector<BasicRecord> records;
    const FileFault fault = LoadDataFile(BasicModule(), File(), option_, records);
    EXPECT_EQ(fault.Error, FileError::Damaged);
    EXPECT_EQ(fault.Stated, count);
    EXPECT_EQ(records.size(), 2u);
    EXPECT_EQ(records.capacity(), 2u);
  }
}

TEST_F(BasicFile, ANoteOfAnyBytesIsWrittenAsItWasRead) {
  std::string note;
  for (int i = 0; i < 256; ++i) note += static_cast<char>(255 - i);
  const std::string bytes = HeaderBytes(11) + BasicOptionBytes(1) + BasicRecordBytes(1, note);
  WriteBytes(File(), bytes);
  std::vector<BasicRecord> records;
  ASSERT_FALSE(LoadDataFile(BasicModule(), File(), option_, records));
  ASSERT_FALSE(SaveDataFile(BasicModule(), File(), option_, 1, [&](std::int32_t) { return records[0]; }));
  EXPECT_EQ(ReadBytes(File()), bytes);
}

TEST_F(BasicFile, ThousandsOfRecordsComeBack) {
  int number = 0;
  ASSERT_TRUE(CreateBasicFile(File(), number, {"1", "2", 3000}));
  for (int i = 0; i < 3000; ++i)
    WriteBasicRecord(number, BasicRow(i, std::string(static_cast<std::size_t>(i % 257), 'n')), i);
  CloseBasicFile(number);
  std::vector<BasicRecord> records;
  ASSERT_FALSE(LoadDataFile(BasicModule(), File(), option_, records));
  ASSERT_EQ(records.size(), 3000u);
  for (int i = 0; i < 3000; ++i) {
    ASSERT_EQ(records[static_cast<std::size_t>(i)].SampleEnergy, i);
    ASSERT_EQ(records[static_cast<std::size_t>(i)].Note.size(), static_cast<std::size_t>(i % 257));
  }
}

}  // namespace
}  // namespace spectrane
