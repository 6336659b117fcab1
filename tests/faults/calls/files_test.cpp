// What a data file, a journal and the settings come to when the system refuses a call of theirs.

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <ostream>

#include "faults/failingcalls/failingcalls.h"
#include "files/filesupport.h"
#include "files/journalfile.h"
#include "files/journalkeeper.h"

namespace spectrane::testing_faults {
namespace {

using failing_calls::Arm;
using failing_calls::Call;
using failing_calls::Disarm;
using failing_calls::Happened;
using failing_calls::Plan;

/// Nothing fails any more when the test ends, however it ends.
class CallFaults : public testing::Test {
 protected:
  ~CallFaults() override { Disarm(); }
  std::string File() const { return folder_.Path("a"); }
  void ArmFolder(const Plan& plan) const { Arm(folder_.Path().c_str(), plan); }
  TemporaryFolder folder_;
};

struct RefusedReading {
  const char* Name;
  Plan Refused;
  FileError Error;
  const char* Reason;
};
std::ostream& operator<<(std::ostream& out, const RefusedReading& row) {
  return out << row.Name;
}

class DataFileReading : public CallFaults, public testing::WithParamInterface<RefusedReading> {};

TEST_P(DataFileReading, ARefusedCallIsToldAndNothingIsTakenForARecord) {
  WriteBytes(File(), BasicFileBytes(2, 2));
  ArmFolder(GetParam().Refused);
  BasicOption option;
  option.Version = "as it was";
  std::vector<BasicRecord> records(7);
  const FileFault fault = LoadDataFile(BasicModule(), File(), option, records);
  EXPECT_TRUE(Happened());
  EXPECT_EQ(fault.Error, GetParam().Error);
  EXPECT_EQ(fault.Reason, GetParam().Reason);
  EXPECT_TRUE(records.empty());
  EXPECT_EQ(option.Version, "as it was");
  Disarm();
  EXPECT_FALSE(LoadDataFile(BasicModule(), File(), option, records));
  EXPECT_EQ(records.size(), 2u);
}

// Two opens: for reading and writing, and for reading alone.
INSTANTIATE_TEST_SUITE_P(
    Calls, DataFileReading,
    testing::Values(
        RefusedReading{"Open", {Call::Open, 1, EMFILE, true}, FileError::InputOutput, "Too many open files"},
        RefusedReading{"Stream", {Call::Stream, 1, ENOMEM}, FileError::InputOutput, "Cannot allocate memory"},
        RefusedReading{"Seek", {Call::Seek, 1, EIO, true}, FileError::InputOutput, "Input/output error"},
        RefusedReading{"Read", {Call::Read, 1, EIO, true}, FileError::InputOutput, "Input/output error"},
        RefusedReading{"Length", {Call::Length, 1, EIO, true}, FileError::Damaged, ""}),
    NameOfRow<RefusedReading>);

// A part that the document must not take for the whole: it is told, so that nothing of it is saved over the
// file.
TEST_F(CallFaults, D01_AReadingThatFailsInTheMiddleGivesWhatCameBeforeAndIsTold) {
  WriteBytes(File(), BasicFileBytes(2000, 2000));
  BasicOption option;
  std::vector<BasicRecord> records;
  ArmFolder({});
  {
    ClosedAtEnd file;
    ASSERT_TRUE(BasicModule().Open(File(), file.Number, option));
  }
  const int ahead = failing_calls::CountOf(Call::Read);
  ArmFolder({Call::Read, ahead + 1, EIO, true});
  const FileFault fault = LoadDataFile(BasicModule(), File(), option, records);
  EXPECT_TRUE(Happened());
  EXPECT_EQ(fault.Error, FileError::InputOutput);
  EXPECT_EQ(fault.Reason, "Input/output error");
  // One reading ahead is 262144 bytes: header and options are 492 of them, a record has 276.
  ASSERT_EQ(records.size(), 948u);
  EXPECT_EQ(records[0].Note, "row 0");
  EXPECT_EQ(records[947].Note, "row 947");
}

TEST_F(CallFaults, AFileThatCannotBeOpenedForWritingIsRead) {
  WriteBytes(File(), BasicFileBytes(2, 2));
  ArmFolder({Call::Open, 1, EACCES});
  BasicOption option;
  std::vector<BasicRecord> records;
  EXPECT_FALSE(LoadDataFile(BasicModule(), File(), option, records));
  EXPECT_TRUE(Happened());
  EXPECT_EQ(records.size(), 2u);
}

struct RefusedSave {
  const char* Name;
  Plan Refused;
  const char* Reason;
};
std::ostream& operator<<(std::ostream& out, const RefusedSave& row) {
  return out << row.Name;
}

class DataFileSave : public CallFaults, public testing::WithParamInterface<RefusedSave> {};

TEST_P(DataFileSave, ARefusedCallIsToldAndTheOldFileStays) {
  WriteBytes(File(), "old");
  ArmFolder(GetParam().Refused);
  const FileFault fault =
      SaveDataFile(BasicModule(), File(), BasicOption(), 2, [](std::int32_t) { return BasicRecord(); });
  EXPECT_TRUE(Happened());
  EXPECT_EQ(fault.Error, FileError::InputOutput);
  EXPECT_EQ(fault.Reason, GetParam().Reason);
  EXPECT_EQ(ReadBytes(File()), "old");
  EXPECT_EQ(NamesIn(folder_.Path()), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, DataFileSave,
    testing::Values(RefusedSave{"Stream", {Call::Stream, 1, ENOMEM}, "Cannot allocate memory"},
                    RefusedSave{"Seek", {Call::Seek, 1, EIO, true}, "Input/output error"},
                    RefusedSave{"Write", {Call::Write, 1, ENOSPC}, "No space left on device"},
                    RefusedSave{"Close", {Call::Close, 1, EIO}, "Input/output error"}),
    NameOfRow<RefusedSave>);

// ---- Journals ----

class JournalFaults : public CallFaults {
 protected:
  /// A journal file that says "begun", with a fault still to come.
  std::unique_ptr<JournalFile> Begun(const Plan& plan) {
    ArmFolder(plan);
    std::string reason;
    auto file = JournalFile::Create(File(), reason);
    EXPECT_NE(file, nullptr) << reason;
    EXPECT_TRUE(file->Append("begun", reason)) << reason;
    return file;
  }
};

TEST_F(JournalFaults, AFileThatCannotBeKeptFromOthersIsNotBegun) {
  ArmFolder({Call::Lock, 1, ENOLCK});
  std::string reason;
  EXPECT_EQ(JournalFile::Create(File(), reason), nullptr);
  EXPECT_EQ(reason, "No locks available");
  EXPECT_EQ(NamesIn(folder_.Path()), 0u);
}

TEST_F(JournalFaults, AFileThatCannotBeLockedOrLookedAtIsNotTakenAndStays) {
  WriteBytes(File(), "of somebody");
  for (const Plan& plan :
       {Plan{Call::Open, 1, EACCES}, Plan{Call::Lock, 1, EWOULDBLOCK}, Plan{Call::Length, 1, EIO}}) {
    ArmFolder(plan);
    EXPECT_EQ(JournalFile::Take(File()), nullptr);
    EXPECT_TRUE(Happened());
    Disarm();
    const auto taken = JournalFile::Take(File());
    ASSERT_NE(taken, nullptr);
    EXPECT_EQ(taken->Read(100), "of somebody");
  }
}

TEST_F(JournalFaults, AnInterruptedCallIsRepeated) {
  const auto written = Begun({Call::Write, 2, EINTR});
  std::string reason;
  EXPECT_TRUE(written->Append(" and gone on", reason));
  EXPECT_TRUE(Happened());
  EXPECT_EQ(ReadBytes(File()), "begun and gone on");
  written->Remove();
  const auto read = Begun({Call::Read, 1, EINTR});
  EXPECT_EQ(read->Read(100), "begun");
  EXPECT_TRUE(Happened());
}

TEST_F(JournalFaults, AReadingThatFailsGivesNothing) {
  EXPECT_EQ(Begun({Call::Read, 1, EIO})->Read(100), "");
  EXPECT_TRUE(Happened());
}

TEST_F(JournalFaults, AFileThatWasCutMeanwhileGivesWhatItHas) {
  const auto file = Begun({});
  std::filesystem::resize_file(File(), 2);
  EXPECT_EQ(file->Read(100), "be");
}

TEST_F(JournalFaults, D10_AWriteThatEndsInTheMiddleIsTakenBack) {
  const auto file = Begun({Call::Write, 2, failing_calls::kShort});
  std::string reason;
  EXPECT_FALSE(file->Append("twelve bytes", reason));
  EXPECT_EQ(reason, "No space left on device");
  EXPECT_EQ(ReadBytes(File()), "begun");
  EXPECT_EQ(file->Size(), 5u);
}

TEST_F(JournalFaults, D10_AWriteThatFailsLeavesTheFileAsItWas) {
  const auto file = Begun({Call::Write, 2, EIO});
  std::string reason;
  EXPECT_FALSE(file->Append("lost", reason));
  EXPECT_EQ(reason, "Input/output error");
  EXPECT_TRUE(file->Append(", next", reason));
  EXPECT_EQ(ReadBytes(File()), "begun, next");
}

TEST_F(JournalFaults, D10_AJournalThatCannotBeBegunLeavesNoFile) {
  JournalImage image;
  image.Head.FileType = 11;
  image.Head.RecordSize = 276;
  JournalKeeper keeper(folder_.Path());
  ArmFolder({Call::Write, 1, ENOSPC});
  EXPECT_FALSE(keeper.Keep(image, 0, false));
  EXPECT_EQ(keeper.LastFault(), "No space left on device");
  EXPECT_EQ(NamesIn(folder_.Path()), 0u);
  EXPECT_TRUE(keeper.Keep(image, 0, false));
}

TEST_F(JournalFaults, D10_AFileThatCannotBeWrittenAnewStays) {
  JournalImage image;
  image.Head.FileType = 11;
  image.Head.RecordSize = 65536;
  image.Count = 100;
  unsigned char value = 0;
  image.Encode = [&value](std::int32_t, unsigned char* bytes) { bytes[0] = value; };
  JournalKeeper keeper(folder_.Path());
  ArmFolder({Call::Sync, 1, EIO});
  for (; value < 4; ++value) ASSERT_TRUE(keeper.Keep(image, 0, false));
  const std::size_t before = keeper.Size();
  // 6.5 MB count, more than 19 MB stand there: written anew when nothing is measured, once the disk plays its
  // part.
  EXPECT_TRUE(keeper.Keep(image, 0, true));
  EXPECT_TRUE(Happened());
  EXPECT_GE(keeper.Size(), before);
  EXPECT_EQ(NamesIn(folder_.Path()), 1u);
  EXPECT_TRUE(keeper.Keep(image, 0, true));
  EXPECT_LT(keeper.Size(), before / 2);
  EXPECT_EQ(NamesIn(folder_.Path()), 1u);
}

TEST_F(JournalFaults, ACutOrASyncThatFailsIsTold) {
  const auto cut = Begun({Call::Cut, 1, EIO});
  EXPECT_FALSE(cut->CutTo(2));
  EXPECT_EQ(ReadBytes(File()), "begun");
  EXPECT_EQ(cut->Size(), 2u) << "what comes next is written over what could not be cut";
  std::string reason;
  EXPECT_TRUE(cut->Append("at", reason)) << reason;
  EXPECT_EQ(ReadBytes(File()), "beatn");
  EXPECT_TRUE(cut->CutTo(2));
  EXPECT_EQ(ReadBytes(File()), "be");
  cut->Remove();
  const auto synced = Begun({Call::Sync, 1, EIO});
  EXPECT_FALSE(synced->Sync());
  EXPECT_TRUE(synced->Sync());
}

}  // namespace
}  // namespace spectrane::testing_faults
