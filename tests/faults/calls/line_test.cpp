// What the line and its lock come to when the system refuses a call of theirs.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <ostream>

#include "base/basesupport.h"
#include "faults/failingcalls/failingcalls.h"
#include "link/exclusion.h"
#include "link/lockfiles.h"
#include "link/ptyline.h"
#include "link/serialport.h"

namespace spectrane::testing_faults {
namespace {

using failing_calls::Arm;
using failing_calls::Call;
using failing_calls::Disarm;
using failing_calls::Happened;
using failing_calls::Plan;
using testing_link::PtyLine;

/// Bytes that come within a second, up to `size` of them.
std::string ReadSome(SerialPort& port, std::size_t size) {
  std::string bytes;
  for (int i = 0; i < 10 && bytes.size() < size && port.IsOpen(); ++i) bytes += port.Read(100);
  return bytes;
}

class LineCalls : public testing::Test {
 protected:
  ~LineCalls() override { Disarm(); }
  /// Opens the line; from then on its calls are counted.
  void OpenWith(const Plan& plan) {
    Arm("/dev/pts", plan);
    ASSERT_TRUE(Port.Open(Line.Path)) << Port.LastReason();
  }
  PtyLine Line{[](PtyLine& line, const std::string& command) { line.Send(command + "\r\n1\r\n>"); }};
  SerialPort Port;
};

TEST_F(LineCalls, S15_AnInterruptedWaitGoesOn) {
  OpenWith({Call::Wait, 1, EINTR});
  ASSERT_TRUE(Port.Write("getwl\r", 1000));
  EXPECT_EQ(ReadSome(Port, 11), "getwl\r\n1\r\n>");
  EXPECT_TRUE(Happened());
}

TEST_F(LineCalls, AWaitThatFailsIsALineThatIsGone) {
  OpenWith({Call::Wait, 1, EIO});
  EXPECT_EQ(Port.Read(100), "");
  EXPECT_FALSE(Port.IsOpen());
  EXPECT_EQ(Port.LastFault(), PortFault::Other);
  EXPECT_EQ(Port.LastReason(), "the line is gone: Input/output error");
}

TEST_F(LineCalls, AReadingThatFailsIsALineThatIsGone) {
  OpenWith({Call::Read, 1, EIO});
  ASSERT_TRUE(Port.Write("getwl\r", 1000));
  EXPECT_EQ(ReadSome(Port, 11), "");
  EXPECT_TRUE(Happened());
  EXPECT_FALSE(Port.IsOpen());
  EXPECT_EQ(Port.LastReason(), "the line is gone: Input/output error");
}

TEST_F(LineCalls, S15_AReadingThatIsInterruptedOrFindsNothingComesAgain) {
  for (const int code : {EINTR, EAGAIN}) {
    OpenWith({Call::Read, 1, code});
    ASSERT_TRUE(Port.Write("getwl\r", 1000));
    EXPECT_EQ(ReadSome(Port, 11), "getwl\r\n1\r\n>");
    EXPECT_TRUE(Happened());
  }
}

TEST_F(LineCalls, AWriteThatFindsNoRoomWaitsForIt) {
  OpenWith({Call::Write, 1, EAGAIN});
  ASSERT_TRUE(Port.Write("getwl\r", 1000));
  EXPECT_TRUE(Happened());
  EXPECT_EQ(ReadSome(Port, 11), "getwl\r\n1\r\n>");
}

TEST_F(LineCalls, S15_AWriteThatIsInterruptedGoesOn) {
  OpenWith({Call::Write, 1, EINTR});
  ASSERT_TRUE(Port.Write("getwl\r", 1000));
  EXPECT_TRUE(Happened());
  EXPECT_EQ(ReadSome(Port, 11), "getwl\r\n1\r\n>");
}

TEST_F(LineCalls, AWriteThatFailsIsALineThatIsGone) {
  OpenWith({Call::Write, 1, EIO});
  EXPECT_FALSE(Port.Write("getwl\r", 1000));
  EXPECT_FALSE(Port.IsOpen());
  EXPECT_EQ(Port.LastReason(), "the line is gone: Input/output error");
}

TEST_F(LineCalls, ADeviceThatGoesBetweenLookAndOpenIsMissing) {
  Arm("/dev/pts", {Call::Open, 1, ENODEV});
  EXPECT_FALSE(Port.Open(Line.Path));
  EXPECT_TRUE(Happened());
  EXPECT_EQ(Port.LastFault(), PortFault::Missing);
  EXPECT_TRUE(Port.LastReason().starts_with(Line.Path + ": ")) << Port.LastReason();
  EXPECT_TRUE(Port.Open(Line.Path));
}

// ---- The lock ----

class LockCalls : public testing::Test {
 protected:
  ~LockCalls() override { Disarm(); }
  /// The folder that the lock's file is put into on this machine.
  std::string First() const { return ::access(kLockFolders[0].c_str(), W_OK) == 0 ? "/run/lock" : "/tmp"; }
  std::string FirstFile() const { return First() + "/" + tidy_.Name; }
  std::unique_ptr<Exclusion> Turn() const { return MakeNamedExclusion(tidy_.Name); }

 private:
  const testing_link::TidyLock tidy_{testing_link::OwnLockName("call")};
};

TEST_F(LockCalls, S15_AnInterruptedWaitForTheTurnGoesOn) {
  Arm(First().c_str(), {Call::Lock, 1, EINTR});
  const auto turn = Turn();
  EXPECT_TRUE(turn->Acquire());
  EXPECT_TRUE(Happened());
  EXPECT_EQ(failing_calls::CountOf(Call::Lock), 2);
}

TEST_F(LockCalls, S07_ALockThatTheSystemRefusesIsToldAndTriedAnewTheNextTime) {
  Arm(First().c_str(), {Call::Lock, 1, ENOLCK});
  const auto turn = Turn();
  EXPECT_FALSE(turn->Acquire());
  EXPECT_TRUE(turn->Reason().ends_with(": No locks available")) << turn->Reason();
  EXPECT_TRUE(turn->Acquire());
}

TEST_F(LockCalls, AFileThatCannotBeLookedAtIsOpenedAnew) {
  Arm(First().c_str(), {Call::Length, 1, EIO});
  const auto turn = Turn();
  EXPECT_TRUE(turn->Acquire());
  EXPECT_TRUE(Happened());
  EXPECT_EQ(failing_calls::CountOf(Call::Close), 1);
}

// In a sticky folder another user's file opens for reading alone; all still meet at it.
TEST_F(LockCalls, AFileThatMayOnlyBeReadServes) {
  WriteBytes(FirstFile(), "");
  Arm(First().c_str(), {Call::Open, 1, EACCES});
  const auto turn = Turn();
  EXPECT_TRUE(turn->Acquire());
  EXPECT_TRUE(Happened());
  // flock() belongs to the open file, whatever it was opened for.
  const int other = ::open(FirstFile().c_str(), O_RDWR | O_CLOEXEC);
  EXPECT_NE(::flock(other, LOCK_EX | LOCK_NB), 0) << "another program would go on the line";
  ::close(other);
}

TEST_F(LockCalls, WhereTheFirstFolderTakesNoFileTheNextOneServes) {
  if (First() != "/run/lock") GTEST_SKIP() << "one folder only";
  Arm("/run/lock", {Call::Open, 1, EROFS, true});
  const auto turn = Turn();
  EXPECT_TRUE(turn->Acquire());
  EXPECT_FALSE(std::filesystem::exists(FirstFile()));
}

}  // namespace
}  // namespace spectrane::testing_faults
