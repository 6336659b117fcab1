// The one implementation behind all kinds, shown on a kind with spare bytes, arrays and a limit of its own.

#include "files/datafile.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <new>

#include "files/file.h"
#include "files/filesupport.h"

namespace spectrane {
namespace {

struct Option {
  std::array<std::int32_t, 2> Pair{};
  std::int32_t Count = 0;
};
struct Record {
  std::int32_t Number = 0;
  std::string Name;
};
constexpr LayoutField kOption[] = {Field<&Option::Pair>("Pair", 0, 8), Field<&Option::Count>("Count", 8, 4)};
constexpr LayoutField kRecord[] = {Field<&Record::Number>("Number", 0, 4),
                                   Field<&Record::Name>("Name", 4, 3)};
constexpr FileModule<Option, Record> kModule = {
    {"tst", 9, BlockOf<Option, kOption, 12>(), 118, BlockOf<Record, kRecord, 7>(), 1000},
    [](const Option& option) -> std::int64_t { return option.Count; },
    [](Option& option, std::int32_t count) { option.Count = count; },
};
static_assert(KindHolds(kModule));

std::string HeadBytes(std::int64_t count) {
  return HeaderBytes(9) + Long(5) + Long(6) + Long(count);
}

class DataFile : public testing::Test {
 protected:
  std::string File() const { return folder_.Path("a.tst"); }
  FileFault Load() { return LoadDataFile(kModule, File(), option_, records_); }
  TemporaryFolder folder_;
  Option option_;
  std::vector<Record> records_;
};

TEST_F(DataFile, SpareBytesAreWrittenAsZeros) {
  NumberAtEnd file;
  ASSERT_TRUE(kModule.Create(File(), file.Number, {{5, 6}, 0}));
  CloseDataFile(file.Number);
  EXPECT_EQ(ReadBytes(File()), HeadBytes(0) + std::string(2, '\0'));
}

TEST_F(DataFile, AFileWithoutItsSpareBytesIsOpened) {
  WriteBytes(File(), HeadBytes(0));
  EXPECT_FALSE(Load());
  EXPECT_EQ(option_.Pair[1], 6);
  EXPECT_TRUE(records_.empty());
}

TEST_F(DataFile, RecordsStandBehindTheSpareBytes) {
  WriteBytes(File(), HeadBytes(2) + "##" + Long(1) + "a  " + Long(2) + "bc ");
  EXPECT_FALSE(Load());
  ASSERT_EQ(records_.size(), 2u);
  EXPECT_EQ(records_[0].Name, "a");
  EXPECT_EQ(records_[1].Number, 2);
}

TEST_F(DataFile, ARecordFarBehindTheEndExtendsTheFile) {
  NumberAtEnd file;
  ASSERT_TRUE(kModule.Create(File(), file.Number, {{5, 6}, 3}));
  EXPECT_TRUE(kModule.Write(file.Number, {7, "x"}, 2));
  EXPECT_EQ(RecordsInFile(kModule, file.Number), 3);
  CloseDataFile(file.Number);
  EXPECT_EQ(ReadBytes(File()), HeadBytes(3) + std::string(2 + 14, '\0') + Long(7) + "x  ");
}

TEST_F(DataFile, TheLargestIndexIsReckonedInSixtyFourBits) {
  NumberAtEnd file;
  ASSERT_TRUE(kModule.Create(File(), file.Number, {}));
  Record record{3, "old"};
  EXPECT_FALSE(kModule.Read(file.Number, record, std::numeric_limits<std::int32_t>::max()));
  EXPECT_FALSE(kModule.Read(file.Number, record, 700000000));
  EXPECT_FALSE(kModule.Read(file.Number, record, -1));
  EXPECT_EQ(record.Name, "old");
  EXPECT_TRUE(kModule.Write(file.Number, record, 700000000));
  EXPECT_EQ(FileLength(file.Number), 118 + 7 * (700000000LL + 1));
  CloseDataFile(file.Number);
  EXPECT_FALSE(FaultOf(file.Number));
}

TEST_F(DataFile, ANegativeIndexNeverReachesTheOptionBlock) {
  NumberAtEnd file;
  ASSERT_TRUE(kModule.Create(File(), file.Number, {{5, 6}, 0}));
  CloseDataFile(file.Number);
  const std::string before = ReadBytes(File());
  ASSERT_FALSE(before.empty());
  Option option;
  ASSERT_TRUE(kModule.Open(File(), file.Number, option));
  EXPECT_TRUE(kModule.Write(file.Number, {7, "x"}, -1));
  CloseDataFile(file.Number);
  EXPECT_TRUE(FaultOf(file.Number));
  EXPECT_EQ(ReadBytes(File()), before);
}

struct CountRow {
  const char* Name;
  std::int64_t Stated;
  int Held;
  FileError Error;
  std::size_t Read;
};

class DataFileCount : public DataFile, public testing::WithParamInterface<CountRow> {};

TEST_P(DataFileCount, IsCheckedAgainstTheLength) {
  const CountRow& row = GetParam();
  std::string bytes = HeadBytes(row.Stated) + "##";
  for (int i = 0; i < row.Held; ++i) bytes += Long(i) + "n  ";
  WriteBytes(File(), bytes + "tail");
  const FileFault fault = Load();
  EXPECT_EQ(fault.Error, row.Error);
  EXPECT_EQ(records_.size(), row.Read);
  EXPECT_LE(records_.capacity(), static_cast<std::size_t>(row.Held));
  EXPECT_EQ(option_.Count, row.Stated);
}

INSTANTIATE_TEST_SUITE_P(Stated, DataFileCount,
                         testing::Values(CountRow{"AsManyAsHeld", 3, 3, FileError::None, 3},
                                         CountRow{"FewerThanHeld", 2, 3, FileError::None, 2},
                                         CountRow{"NoneOfThree", 0, 3, FileError::None, 0},
                                         CountRow{"OneMoreThanHeld", 4, 3, FileError::Damaged, 3},
                                         CountRow{"MinusOne", -1, 3, FileError::Damaged, 0},
                                         CountRow{"Smallest", INT32_MIN, 3, FileError::Damaged, 0},
                                         CountRow{"TheLimit", 1000, 1001, FileError::None, 1000},
                                         CountRow{"AboveTheLimit", 1001, 1001, FileError::TooBig, 0},
                                         CountRow{"Largest", INT32_MAX, 3, FileError::TooBig, 0}),
                         NameOfRow<CountRow>);

TEST_F(DataFile, TheFaultTellsWhereTheFileEnds) {
  WriteBytes(File(), HeadBytes(2) + "##" + Long(1) + "a  " + Long(2) + "bc");
  const FileFault fault = Load();
  EXPECT_EQ(fault.Error, FileError::Damaged);
  EXPECT_EQ(fault.Offset, 131);
  EXPECT_EQ(fault.Stated, 2);
  EXPECT_EQ(fault.Held, 1);
}

TEST_F(DataFile, LoadingClosesTheFile) {
  for (const std::string& bytes : {HeadBytes(0), HeadBytes(7), HeaderBytes(8), std::string("no")}) {
    WriteBytes(File(), bytes);
    Load();
    EXPECT_EQ(FreeFileNumber(), 1);
    EXPECT_FALSE(IsOpenFileNumber(1));
  }
}

/// Permission bits of the temporary file in `folder` while a file there is saved.
std::filesystem::perms BitsWhileSaving(const std::string& folder, const std::string& path) {
  auto bits = std::filesystem::perms::unknown;
  const FileFault fault = SaveDataFile(kModule, path, {{5, 6}, 0}, 1, [&](std::int32_t) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().extension() == ".tmp") bits = entry.status().permissions();
    }
    return Record{1, "n"};
  });
  EXPECT_FALSE(fault);
  return bits;
}

TEST_F(DataFile, WhatReplacesAPrivateFileIsPrivateFromItsFirstByte) {
  using std::filesystem::perms;
  const mode_t before = ::umask(022);
  const perms all = perms{0644};
  EXPECT_EQ(BitsWhileSaving(folder_.Path(), File()), all) << "a new file";
  EXPECT_EQ(std::filesystem::status(File()).permissions(), all);
  for (const perms bits : {perms{0600}, perms{0640}, perms{0604}}) {
    std::filesystem::permissions(File(), bits);
    EXPECT_EQ(BitsWhileSaving(folder_.Path(), File()), perms{0600});
    EXPECT_EQ(std::filesystem::status(File()).permissions(), bits);
  }
  std::filesystem::permissions(File(), perms{0664});
  EXPECT_EQ(BitsWhileSaving(folder_.Path(), File()), all);
  EXPECT_EQ(std::filesystem::status(File()).permissions(), perms{0664});
  ::umask(before);
}

FileFault Save(const std::string& path, std::int32_t count, bool* lost = nullptr,
               const std::string& name = "n") {
  return SaveDataFile(
      kModule, path, {{5, 6}, 999}, count,
      [&](std::int32_t i) {
        return Record{i, name};
      },
      lost);
}

TEST_F(DataFile, SavingReplacesTheWholeFileAndStatesTheCount) {
  WriteBytes(File(), std::string(5000, 'o'));
  EXPECT_FALSE(Save(File(), 2));
  EXPECT_EQ(ReadBytes(File()), HeadBytes(2) + std::string(2, '\0') + Long(0) + "n  " + Long(1) + "n  ");
}

TEST_F(DataFile, SavingTellsOfLostCharacters) {
  bool lost = false;
  EXPECT_FALSE(Save(File(), 1, &lost));
  EXPECT_FALSE(lost);
  EXPECT_FALSE(Save(File(), 1, &lost, "\u6BD4"));
  EXPECT_TRUE(lost);
  EXPECT_EQ(ReadBytes(File()).substr(122), "?  ");
}

TEST_F(DataFile, ASaveThatCannotBeWrittenKeepsTheOldFile) {
  WriteBytes(File(), "old");
  for (const rlim_t room : {0u, 50u, 110u, 119u, 3000u}) {
    const pid_t child = ::fork();
    if (child == 0) {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit limit{room, room};
      ::setrlimit(RLIMIT_FSIZE, &limit);
      const FileFault fault = Save(File(), 1000);
      ::_exit(fault.Error == FileError::InputOutput && fault.Reason == "File too large" ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << room;
    EXPECT_EQ(ReadBytes(File()), "old") << room;
    EXPECT_EQ(NamesIn(folder_.Path()), 1u) << room;
  }
}

TEST_F(DataFile, ASaveIntoAMissingFolderIsAFault) {
  EXPECT_EQ(Save(folder_.Path("none/a.tst"), 1).Error, FileError::InputOutput);
  EXPECT_EQ(Save(folder_.Path(), 1).Error, FileError::InputOutput);
  EXPECT_EQ(NamesIn(folder_.Path()), 0u);
}

TEST_F(DataFile, AFileCutShortAfterItWasOpenedGivesItsWholeRecords) {
  // Longer than what is read ahead, so that the end has to be read anew.
  constexpr std::int32_t kMany = 60000;
  std::string bytes = HeadBytes(1000) + "##";
  for (int i = 0; i < kMany; ++i) bytes += Long(i) + "n  ";
  WriteBytes(File(), bytes);
  ClosedAtEnd file;
  ASSERT_TRUE(kModule.Open(File(), file.Number, option_));
  std::filesystem::resize_file(File(), 118 + 7 * 50000 + 3);
  records_.resize(kMany);
  EXPECT_EQ(ReadDataRecords(kModule, file.Number, records_.data(), sizeof(Record), 0, kMany), 50000);
  EXPECT_EQ(records_[49999].Number, 49999);
  EXPECT_EQ(records_[50000].Number, 0);
  EXPECT_EQ(ReadDataRecords(kModule, file.Number, records_.data(), sizeof(Record), 50000, 1), 0)
      << "half a record";
  EXPECT_EQ(ReadDataRecords(kModule, file.Number, records_.data(), sizeof(Record), 49999, 1), 1);
  EXPECT_EQ(records_[0].Number, 49999);
}

TEST_F(DataFile, AnExceptionInASaveLeavesNoFileAndNoNumberOpen) {
  WriteBytes(File(), "old");
  EXPECT_THROW(static_cast<void>(SaveDataFile(kModule, File(), {}, 3,
                                              [](std::int32_t i) {
                                                if (i == 1) throw std::bad_alloc();
                                                return Record();
                                              })),
               std::bad_alloc);
  EXPECT_FALSE(IsOpenFileNumber(1));
  EXPECT_EQ(ReadBytes(File()), "old");
  EXPECT_EQ(NamesIn(folder_.Path()), 1u);
}

struct TypeRow {
  const char* Name;
  std::string Bytes;
  FileError Error;
};

class FileTypeOf : public DataFile, public testing::WithParamInterface<TypeRow> {};

TEST_P(FileTypeOf, IsReadFromTheHeader) {
  WriteBytes(File(), GetParam().Bytes);
  std::int32_t fileType = -99;
  FileFault fault;
  const bool known = GetFileType(File(), fileType, &fault);
  EXPECT_EQ(known, GetParam().Error == FileError::None);
  EXPECT_EQ(fault.Error, GetParam().Error);
  EXPECT_EQ(fileType, known ? 77 : -99);
  EXPECT_FALSE(IsOpenFileNumber(1));
}

INSTANTIATE_TEST_SUITE_P(
    Header, FileTypeOf,
    testing::Values(TypeRow{"AnyNumber", HeaderBytes(77), FileError::None},
                    TypeRow{"BlanksBeforeTheAuthor", HeaderBytes(77, "   Kestu"), FileError::None},
                    TypeRow{"WrongAuthor", HeaderBytes(77, "Kestv"), FileError::Foreign},
                    TypeRow{"AuthorInCapitals", HeaderBytes(77, "KESTU"), FileError::Foreign},
                    TypeRow{"AuthorWithMore", HeaderBytes(77, "Kestu 2"), FileError::Foreign},
                    TypeRow{"AuthorWithNul", HeaderBytes(77, std::string("Kestu\0", 6)), FileError::Foreign},
                    TypeRow{"BlankAuthor", HeaderBytes(77, ""), FileError::Foreign},
                    TypeRow{"WrongMagic", HeaderBytes(77, "Kestu", 0x12345679), FileError::Foreign},
                    TypeRow{"MagicOtherWayRound", HeaderBytes(77, "Kestu", 0x78563412), FileError::Foreign},
                    TypeRow{"Empty", "", FileError::Damaged},
                    TypeRow{"OneByteShort", HeaderBytes(77).substr(0, 103), FileError::Damaged}),
    NameOfRow<TypeRow>);

TEST_F(DataFile, TheTypeOfNoFileIsNotTouched) {
  std::int32_t fileType = -99;
  EXPECT_FALSE(GetFileType(folder_.Path("none"), fileType));
  EXPECT_FALSE(GetFileType(folder_.Path(), fileType));
  EXPECT_EQ(fileType, -99);
}

}  // namespace
}  // namespace spectrane
