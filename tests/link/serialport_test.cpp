#include "link/serialport.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include "base/basesupport.h"
#include "base/childprocess.h"
#include "base/clock.h"
#include "link/exclusion.h"
#include "link/messageloop.h"
#include "link/portlist.h"
#include "link/portnames.h"
#include "link/ptyline.h"
#include "link/sci.h"

namespace spectrane::testing_link {
namespace {

using std::chrono::milliseconds;

void AnswerGetwl(PtyLine& line, const std::string& command) {
  line.Send(command + "\r\n546.0\r\n>");
}

double CpuSeconds() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) * 1e-6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

class SinglePort : public SerialPortList {
 public:
  explicit SinglePort(std::string path) : path_(std::move(path)) {}
  std::string Path(int) const override { return path_; }

 private:
  std::string path_;
};

class SerialLine : public ::testing::Test {
 protected:
  void Open(PtyLine& line) {
    ports_ = std::make_unique<SinglePort>(line.Path);
    Sci = std::make_unique<SCI>(*ports_, clock_, loop_, turn_);
    int number = 1;
    ASSERT_TRUE(Sci->OpenPort(number)) << Sci->LastOpenReason();
  }
  std::unique_ptr<SCI> Sci;

 private:
  std::unique_ptr<SinglePort> ports_;
  SteadyClock clock_;
  QtMessageLoop loop_;
  NoExclusion turn_;
};

TEST_F(SerialLine, ExchangeOverAPseudoTerminal) {
  PtyLine line(AnswerGetwl);
  Open(line);
  std::string reply;
  EXPECT_TRUE(Sci->Exchange("getwl", reply, 3));
  EXPECT_EQ(reply, "getwl\r\n546.0\r\n>");
}

TEST_F(SerialLine, EverySplitPointOfAReply) {
  std::size_t split = 0;
  const std::string whole = "getwl\r\n546.0\r\n>";
  PtyLine line([&](PtyLine& end, const std::string&) {
    const std::size_t at = split;  // the caller goes on to the next one as soon as the prompt is there
    end.Send(whole.substr(0, at));
    std::this_thread::sleep_for(milliseconds(5));
    end.Send(whole.substr(at));
  });
  Open(line);
  for (split = 0; split <= whole.size(); ++split) {
    std::string reply;
    EXPECT_TRUE(Sci->Exchange("getwl", reply, 3)) << split;
    EXPECT_EQ(reply, whole) << split;
  }
}

TEST_F(SerialLine, WaitingForASlowReplyTakesNoProcessorTime) {
  PtyLine line([](PtyLine& end, const std::string& command) {
    std::this_thread::sleep_for(milliseconds(1000));
    AnswerGetwl(end, command);
  });
  Open(line);
  const double before = CpuSeconds();
  std::string reply;
  EXPECT_TRUE(Sci->Exchange("getwl", reply, 3));
  EXPECT_LT(CpuSeconds() - before, 0.3) << "a second of waiting must not spin";
}

TEST_F(SerialLine, HangUpInMidReplyFailsAtOnceAndClosesTheDevice) {
  PtyLine line([](PtyLine& end, const std::string&) {
    end.Send("adjus");
    end.HangUp();
  });
  Open(line);
  QElapsedTimer clock;
  clock.start();
  std::string reply;
  EXPECT_FALSE(Sci->Exchange("adjustwl", reply, 180));
  EXPECT_LT(clock.elapsed(), 1000);
  EXPECT_EQ(Sci->LastEnd(), ExchangeEnd::HungUp);
  EXPECT_FALSE(Sci->IsPortOpen());
  clock.restart();
  EXPECT_FALSE(Sci->Exchange("getwl", reply, 3));
  EXPECT_LT(clock.elapsed(), 100);
}

TEST_F(SerialLine, HangUpWhileIdleClosesTheDeviceAndLeavesTheProcessorIdle) {
  PtyLine line(AnswerGetwl);
  Open(line);
  line.HangUp();
  // Within a second of the hang-up it is idle.
  Sci->PauseMs(1000);
  EXPECT_FALSE(Sci->IsPortOpen());
  const double before = CpuSeconds();
  Sci->PauseMs(500);
  EXPECT_LT(CpuSeconds() - before, 0.05);
}

TEST_F(SerialLine, AFarEndThatReadsNothingEndsAtTheTimeOut) {
  const int master = posix_openpt(O_RDWR | O_NOCTTY);
  grantpt(master);
  unlockpt(master);
  SerialPort port;
  ASSERT_TRUE(port.Open(ptsname(master)));
  QElapsedTimer clock;
  clock.start();
  EXPECT_FALSE(port.Write(std::string(1 << 20, 'x'), 300));
  EXPECT_GE(clock.elapsed(), 300);
  EXPECT_LT(clock.elapsed(), 1500);
  EXPECT_TRUE(port.IsOpen()) << "nobody pulled the cable";
  EXPECT_EQ(port.LastFault(), PortFault::None) << port.LastReason();
  close(master);
}

TEST_F(SerialLine, AFarEndThatReadsLateGetsEverything) {
  const int master = posix_openpt(O_RDWR | O_NOCTTY);
  grantpt(master);
  unlockpt(master);
  SerialPort port;
  ASSERT_TRUE(port.Open(ptsname(master)));
  constexpr std::size_t kMany = std::size_t{1} << 18;
  std::size_t seen = 0;
  std::thread reader([&] {
    std::this_thread::sleep_for(milliseconds(100));
    char buffer[65536];
    while (seen < kMany) {
      const ssize_t count = read(master, buffer, sizeof buffer);
      if (count <= 0) break;
      seen += static_cast<std::size_t>(count);
    }
  });
  const bool written = port.Write(std::string(kMany, 'x'), 5000);
  if (!written) port.Close();
  reader.join();
  EXPECT_TRUE(written);
  EXPECT_EQ(seen, kMany);
  close(master);
}

TEST_F(SerialLine, OutputThatStuckIsNotSentLater) {
  const int master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
  grantpt(master);
  unlockpt(master);
  SerialPort port;
  ASSERT_TRUE(port.Open(ptsname(master)));
  EXPECT_FALSE(port.Write(std::string(1 << 20, 'x'), 100));
  std::string seen;
  for (int quiet = 0; quiet < 20;) {
    char buffer[65536];
    const ssize_t count = read(master, buffer, sizeof buffer);
    if (count > 0) {
      seen.append(buffer, static_cast<std::size_t>(count));
      quiet = 0;
    } else {
      ++quiet;
      QCoreApplication::processEvents();
      std::this_thread::sleep_for(milliseconds(5));
    }
  }
  EXPECT_LT(seen.size(), std::size_t{1} << 19);
  close(master);
}

TEST_F(SerialLine, WhatNobodyAskedForIsThrownAwayWhileTheLoopRuns) {
  PtyLine line;
  SerialPort port;
  ASSERT_TRUE(port.Open(line.Path));
  for (int i = 0; i < 20; ++i) {
    line.Send(std::string(1000, 'x'));
    QCoreApplication::processEvents();
  }
  QElapsedTimer clock;
  clock.start();
  while (clock.elapsed() < 200) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
  EXPECT_EQ(port.Read(50), "");
  line.Send("answer");
  std::string reply;
  for (int i = 0; i < 20 && reply.size() < 6; ++i) reply += port.Read(100);
  EXPECT_EQ(reply, "answer");
}

TEST_F(SerialLine, ABannerThatNobodyAskedForIsNotReadWhetherTheLoopRanOrNot) {
  for (const bool loop : {false, true}) {
    PtyLine line(AnswerGetwl);
    Open(line);
    line.Send("\r\nSimulated instrument\r\nready.\r\n>");
    std::this_thread::sleep_for(milliseconds(50));
    if (loop) Sci->PauseMs(50);
    std::string reply;
    EXPECT_TRUE(Sci->Exchange("getwl", reply, 3)) << loop;
    EXPECT_EQ(reply, "getwl\r\n546.0\r\n>") << loop;
    EXPECT_EQ(Sci->Restarts(), 0) << loop;
  }
}

TEST(SerialPortOpen, APortThatIsNotOpenDoesNothing) {
  SerialPort port;
  port.DiscardInput();
  EXPECT_FALSE(port.Write("getwl\r", 100));
  EXPECT_EQ(port.Read(100), "");
  EXPECT_FALSE(port.Close());
  PtyLine line;
  ASSERT_TRUE(port.Open(line.Path));
  EXPECT_TRUE(port.Close());
  EXPECT_FALSE(port.Close());
  EXPECT_FALSE(port.Write("getwl\r", 100));
}

TEST(SerialPortOpen, MissingDevice) {
  SerialPort port;
  EXPECT_FALSE(port.Open("/dev/no-such-device"));
  EXPECT_EQ(port.LastFault(), PortFault::Missing);
  EXPECT_NE(port.LastReason().find("/dev/no-such-device"), std::string::npos);
  EXPECT_FALSE(port.IsOpen());
}

TEST(SerialPortOpen, NotASerialDevice) {
  SerialPort port;
  EXPECT_FALSE(port.Open("/dev/null"));
  EXPECT_EQ(port.LastFault(), PortFault::Other);
}

TEST(SerialPortOpen, InUseByAnotherProgramUnderAnotherName) {
  PtyLine line(AnswerGetwl);
  const std::filesystem::path link =
      std::filesystem::path(::testing::TempDir()) / ("spectrane_port_" + std::to_string(getpid()));
  std::filesystem::remove(link);
  std::filesystem::create_symlink(line.Path, link);
  SerialPort winner;
  ASSERT_TRUE(winner.Open(line.Path));
  SerialPort loser;
  EXPECT_FALSE(loser.Open(link.string()));
  EXPECT_EQ(loser.LastFault(), PortFault::InUse);
  EXPECT_TRUE(winner.Write("getwl\r", 1000));
  std::string reply;
  for (int i = 0; i < 20 && !reply.ends_with(">"); ++i) reply += winner.Read(100);
  EXPECT_EQ(reply, "getwl\r\n546.0\r\n>") << "the winner loses no byte";
  std::filesystem::remove(link);
}

TEST(ExamineDevice, AGroupWithoutANameIsNotNamed) {
  if (geteuid() != 0) GTEST_SKIP() << "needs root to give a file away";
  const TemporaryFolder folder;
  WriteBytes(folder.Path("device"), "");
  chmod(folder.Path("device").c_str(), 0600);
  ASSERT_EQ(chown(folder.Path("device").c_str(), 0, 54321), 0);
  EXPECT_TRUE(InChild([&folder] {
    std::string reason;
    return setgid(65534) == 0 && setuid(65534) == 0 &&
           ExamineDevice(folder.Path("device"), reason) == PortFault::NoRights &&
           reason == folder.Path("device") + ": no right to read and write the device";
  }));
}

TEST(ExamineDevice, AFolderThatMayNotBeEnteredIsARightThatIsMissing) {
  if (geteuid() != 0) GTEST_SKIP() << "needs root to become somebody else";
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path("closed"));
  chmod(folder.Path("closed").c_str(), 0700);
  EXPECT_TRUE(InChild([&folder] {
    std::string reason;
    return setgid(65534) == 0 && setuid(65534) == 0 &&
           ExamineDevice(folder.Path("closed/device"), reason) == PortFault::NoRights &&
           reason == folder.Path("closed/device") + ": Permission denied";
  }));
}

// Every program that opens the device notes that in /run/lock; where that cannot be done nobody else has the
// device.
TEST(SerialPortOpen, ALockThatCannotBeMadeIsNotAnotherProgram) {
  const PtyLine line;
  const bool tried = geteuid() == 0 && InChild([] { return unshare(CLONE_NEWNS) == 0; });
  if (!tried) GTEST_SKIP() << "needs a view of the folders of its own";
  EXPECT_TRUE(InChild([&line] {
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
      return false;
    for (const char* folder : {"/run/lock", "/var/lock", "/tmp", "/var/tmp"}) {
      if (access(folder, W_OK) == 0 && mount("tmpfs", folder, "tmpfs", MS_RDONLY, nullptr) != 0) return false;
    }
    SerialPort port;
    return !port.Open(line.Path) && port.LastFault() == PortFault::Other;
  }));
}

TEST(ExamineDevice, NamesTheGroupThatOwnsADeviceWithoutRights) {
  if (geteuid() == 0) {
    // Root passes every access test: ask as somebody else, in a process of its own.
    const std::filesystem::path device =
        std::filesystem::path(::testing::TempDir()) / ("spectrane_barred_" + std::to_string(getpid()));
    close(open(device.c_str(), O_CREAT | O_RDWR, 0600));
    chmod(device.c_str(), 0600);
    const pid_t child = fork();
    if (child == 0) {
      if (setgid(65534) != 0 || setuid(65534) != 0) _exit(9);
      std::string reason;
      const bool right = ExamineDevice(device.string(), reason) == PortFault::NoRights &&
                         reason.find("group is \"root\"") != std::string::npos;
      _exit(right ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    std::filesystem::remove(device);
    return;
  }
  std::string reason;
  EXPECT_EQ(ExamineDevice("/dev/mem", reason), PortFault::NoRights);
  EXPECT_NE(reason.find("group is \""), std::string::npos);
}

TEST(PortPaths, EntriesOfTheList) {
  using Paths = std::vector<std::string>;
  EXPECT_EQ(SplitPortPaths("", ':'), Paths{});
  EXPECT_EQ(SplitPortPaths(":", ':'), (Paths{"", ""}));
  EXPECT_EQ(SplitPortPaths("/dev/a", ':'), Paths{"/dev/a"});
  EXPECT_EQ(SplitPortPaths("/dev/a::/dev/c", ':'), (Paths{"/dev/a", "", "/dev/c"}));
}

TEST(PortPaths, TheNumberAtTheEndOfANameOrdersThem) {
  const std::vector<std::string> ordered = {"/dev/ttyS0",   "/dev/ttyS2",   "/dev/ttyS9", "/dev/ttyS10",
                                            "/dev/ttyS11",  "/dev/ttyS100", "/dev/ttyU",  "/dev/ttyUSB0",
                                            "/dev/ttyUSB3", "/dev/ttyUSB20"};
  for (std::size_t a = 0; a < ordered.size(); ++a) {
    for (std::size_t b = 0; b < ordered.size(); ++b) {
      EXPECT_EQ(PortNameBefore(ordered[a], ordered[b]), a < b) << ordered[a] << " and " << ordered[b];
    }
  }
}

TEST(PortPaths, WithoutTheEnvironmentTheyAreTheMachines) {
  qunsetenv("SPECTRANE_PORTS");
  const SerialPortList ports;
  int number = 1;
  for (; !ports.Path(number).empty(); ++number) EXPECT_TRUE(ports.Path(number).starts_with("/dev/"));
  EXPECT_EQ(ports.Path(number + 1), "") << "nothing behind the last one";
}

TEST(PortPaths, NumbersComeFromTheEnvironment) {
  qputenv("SPECTRANE_PORTS", "/dev/a::/dev/c");
  const SerialPortList ports;
  EXPECT_EQ(ports.Path(1), "/dev/a");
  EXPECT_EQ(ports.Path(2), "");
  EXPECT_EQ(ports.Path(3), "/dev/c");
  EXPECT_EQ(ports.Path(4), "");
  EXPECT_EQ(ports.Path(0), "");
  EXPECT_EQ(ports.Path(-1), "");
  qputenv("SPECTRANE_PORTS", ":");
  EXPECT_EQ(SerialPortList().Path(1), "") << "no port at all";
  qunsetenv("SPECTRANE_PORTS");
}

TEST(QtMessageLoop, PauseYieldsSleepsAndEndsInTime) {
  SteadyClock clock;
  QtMessageLoop loop;
  NoExclusion turn;
  SinglePort ports("");
  SCI sci(ports, clock, loop, turn);
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&ticks] { ++ticks; });
  timer.start(20);
  const double cpu = CpuSeconds();
  const std::int64_t start = clock.NowMs();
  sci.PauseMs(400);
  const std::int64_t took = clock.NowMs() - start;
  EXPECT_GE(took, 400);
  EXPECT_LT(took, 900);
  EXPECT_GE(ticks, 5) << "timers fire during a pause";
  EXPECT_LT(CpuSeconds() - cpu, 0.2);
}

// The batch command has none.
TEST(QtMessageLoop, WithoutAnApplicationItOnlySleeps) {
  EXPECT_TRUE(InChild([] {
    QCoreApplication::instance()->~QCoreApplication();
    SteadyClock clock;
    QtMessageLoop loop;
    loop.RunOnce();
    const std::int64_t start = clock.NowMs();
    loop.RunUntil(clock, start - 1000);
    const std::int64_t past = clock.NowMs();
    loop.RunUntil(clock, past + 50);
    return past - start < 50 && clock.NowMs() - past >= 50;
  }));
}

}  // namespace
}  // namespace spectrane::testing_link
