#ifndef _WIN32

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <QLocalServer>
#include <QLocalSocket>

#include <filesystem>
#include <fstream>

#include "simulator/devicetransport.h"
#include "simulator/ptytransport.h"
#include "simulator/simulatorprogram.h"
#include "simulator/waitfor.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// A program's end of the line: a plain descriptor, so that nothing but the simulator makes the terminal raw.
class Client {
 public:
  explicit Client(const std::string& path) : fd_(open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK)) {}
  ~Client() {
    if (fd_ >= 0) close(fd_);
  }
  bool IsOpen() const { return fd_ >= 0; }

  std::string Ask(const std::string& command) {
    const std::string text = command + "\r";
    EXPECT_EQ(write(fd_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    std::string reply;
    WaitFor([&] {
      char bytes[512];
      const ssize_t count = read(fd_, bytes, sizeof bytes);
      if (count > 0) reply.append(bytes, static_cast<std::size_t>(count));
      const bool gone = count == 0 || (count < 0 && errno != EAGAIN);
      if (gone) reply += "<gone>";
      return gone || reply.ends_with('>');
    });
    return reply;
  }

 private:
  int fd_;
};

class SimulatorProgramTest : public testing::Test {
 protected:
  void SetUp() override {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = fs::path(testing::TempDir()) / ("spectrane-sim-" + std::string(test->name()));
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    options_.Instrument.Instant = true;
    options_.Instrument.Noise = 0.0;
    options_.Link = (folder_ / "tty").string();
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string Control(const std::string& command) {
    QLocalSocket socket;
    socket.connectToServer(QString::fromStdString(options_.ControlPath));
    socket.write(QByteArray::fromStdString(command + "\n"));
    std::string answer;
    WaitFor([&] {
      answer += socket.readAll().toStdString();
      return answer.ends_with("ok\n") || answer.find("error: ") != std::string::npos;
    });
    return answer;
  }

  fs::path folder_;
  ProgramOptions options_;
};

TEST_F(SimulatorProgramTest, AnswersOnTheLinkAndRemovesItAtTheEnd) {
  {
    SimulatorProgram program(options_);
    ASSERT_FALSE(program.Start());
    ASSERT_TRUE(fs::is_symlink(options_.Link));
    Client client(options_.Link);
    EXPECT_EQ(client.Ask("check"), "check\r\nInvalid Command.\r\n>");
    EXPECT_EQ(client.Ask("getwl"), "getwl\r\n546.0\r\n>");
  }
  EXPECT_FALSE(fs::exists(fs::symlink_status(options_.Link)));
}

TEST_F(SimulatorProgramTest, SurvivesAClientThatComesAndGoes) {
  SimulatorProgram program(options_);
  ASSERT_FALSE(program.Start());
  for (int i = 0; i < 3; ++i) {
    Client client(options_.Link);
    ASSERT_TRUE(client.IsOpen());
    EXPECT_EQ(client.Ask("getd2"), "getd2\r\n1\r\n>") << i;
  }
}

TEST_F(SimulatorProgramTest, ReplacesALinkButNoFile) {
  fs::create_symlink("/nonexistent", options_.Link);
  {
    SimulatorProgram program(options_);
    EXPECT_FALSE(program.Start());
    EXPECT_NE(fs::read_symlink(options_.Link), "/nonexistent");
  }
  std::ofstream(options_.Link) << "precious";
  SimulatorProgram program(options_);
  const auto wrong = program.Start();
  ASSERT_TRUE(wrong);
  EXPECT_THAT(*wrong, HasSubstr("no symbolic link"));
  EXPECT_EQ(fs::file_size(options_.Link), 8U);
}

TEST_F(SimulatorProgramTest, HangUpIsSeenByTheClientAndTheLineComesBack) {
  options_.ReopenSeconds = 0.05;
  const std::string script = (folder_ / "faults").string();
  std::ofstream(script) << "getwl 2 hang-up 3\n";
  options_.FaultFile = script;
  SimulatorProgram program(options_);
  ASSERT_FALSE(program.Start());
  {
    Client client(options_.Link);
    EXPECT_EQ(client.Ask("getwl"), "getwl\r\n546.0\r\n>");
    EXPECT_THAT(client.Ask("getwl"), HasSubstr("<gone>"));
    EXPECT_FALSE(fs::exists(fs::symlink_status(options_.Link)));
  }
  ASSERT_TRUE(WaitFor([&] { return fs::exists(options_.Link); }));
  Client again(options_.Link);
  EXPECT_EQ(again.Ask("getwl"), "getwl\r\n546.0\r\n>");
}

TEST_F(SimulatorProgramTest, ControlSocketChangesTheBeamAndTheLogTellsAll) {
  options_.ControlPath = (folder_ / "control").string();
  options_.LogFile = (folder_ / "log").string();
  {
    SimulatorProgram program(options_);
    ASSERT_FALSE(program.Start());
    Client client(options_.Link);
    EXPECT_EQ(client.Ask("sa 3"), "sa 3\r\n>");
    EXPECT_EQ(Control("beam closed"), "ok\n");
    EXPECT_EQ(client.Ask("ge 1"), "ge 1\r\n60\r\n>");
    EXPECT_THAT(Control("state"), HasSubstr("beam=closed\n"));
    EXPECT_THAT(Control("nonsense"), HasSubstr("error: unknown command"));
  }
  EXPECT_FALSE(fs::exists(options_.ControlPath));
  std::ifstream file(options_.LogFile);
  std::vector<ExchangeRecord> records;
  for (std::string line; std::getline(file, line);) {
    if (const auto record = ParseLogLine(line)) records.push_back(*record);
  }
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[1].Request, "ge 1");
  EXPECT_EQ(records[1].Answer, "ge 1\r\n60\r\n>");
}

TEST_F(SimulatorProgramTest, UnplugAndPlugOverTheControlSocket) {
  options_.ControlPath = (folder_ / "control").string();
  SimulatorProgram program(options_);
  ASSERT_FALSE(program.Start());
  EXPECT_EQ(Control("unplug"), "ok\n");
  EXPECT_FALSE(fs::exists(fs::symlink_status(options_.Link)));
  EXPECT_EQ(Control("plug"), "ok\n");
  EXPECT_EQ(Client(options_.Link).Ask("getd2"), "getd2\r\n1\r\n>");
}

TEST_F(SimulatorProgramTest, ControlPathInUseIsRefusedAndAFileIsLeftAlone) {
  options_.ControlPath = (folder_ / "control").string();
  std::ofstream(options_.ControlPath) << "precious";
  {
    SimulatorProgram program(options_);
    const auto wrong = program.Start();
    ASSERT_TRUE(wrong);
    EXPECT_THAT(*wrong, HasSubstr("no socket"));
    EXPECT_EQ(fs::file_size(options_.ControlPath), 8U);
  }
  fs::remove(options_.ControlPath);
  QLocalServer other;
  ASSERT_TRUE(other.listen(QString::fromStdString(options_.ControlPath)));
  SimulatorProgram program(options_);
  const auto wrong = program.Start();
  ASSERT_TRUE(wrong);
  EXPECT_THAT(*wrong, HasSubstr("in use"));
}

TEST_F(SimulatorProgramTest, WrongFilesAreNamed) {
  options_.FaultFile = (folder_ / "missing").string();
  EXPECT_THAT(SimulatorProgram(options_).Start().value_or(""), HasSubstr("missing: cannot be read"));
  std::ofstream(options_.FaultFile) << "ge 1 cut\nge one cut\n";
  EXPECT_THAT(SimulatorProgram(options_).Start().value_or(""), HasSubstr("line 2"));
  options_.FaultFile.clear();
  options_.LogFile = (folder_ / "no" / "log").string();
  EXPECT_THAT(SimulatorProgram(options_).Start().value_or(""), HasSubstr("cannot be written"));
}

TEST_F(SimulatorProgramTest, CellsComeFromTheCommandLine) {
  options_.Instrument.Sampler = true;
  options_.Cells = {{2, "closed"}};
  SimulatorProgram program(options_);
  ASSERT_FALSE(program.Start());
  Client client(options_.Link);
  EXPECT_EQ(client.Ask("setsampler 2"), "setsampler 2\r\n>");
  EXPECT_EQ(client.Ask("ge 1"), "ge 1\r\n52\r\n>");
}

TEST(DeviceTransport, AnswersOnASerialDevice) {
  // The slave of another pseudo-terminal stands for the serial device at the far end of a cable.
  PtyTransport cable{QString()};
  QString reason;
  ASSERT_TRUE(cable.Open(reason)) << reason.toStdString();
  ProgramOptions options;
  options.Instrument.Instant = true;
  options.Device = cable.Name().toStdString();
  SimulatorProgram program(options);
  ASSERT_FALSE(program.Start());
  std::string reply;
  QObject::connect(&cable, &Transport::Received, &cable,
                   [&](const QByteArray& bytes) { reply += bytes.toStdString(); });
  cable.Send("getwl\r");
  EXPECT_TRUE(WaitFor([&] { return reply == "getwl\r\n546.0\r\n>"; })) << reply;
}

TEST(DeviceTransport, MissingDeviceIsReported) {
  ProgramOptions options;
  options.Device = "/nonexistent/tty";
  EXPECT_THAT(SimulatorProgram(options).Start().value_or(""), HasSubstr("/nonexistent/tty: "));
}

TEST(DeviceTransport, ClosesALineThatBroke) {
  PtyTransport cable{QString()};
  QString reason;
  ASSERT_TRUE(cable.Open(reason)) << reason.toStdString();
  DeviceTransport device(cable.Name());
  ASSERT_TRUE(device.Open(reason)) << reason.toStdString();
  int lost = 0;
  QObject::connect(&device, &Transport::Lost, &device, [&] { ++lost; });
  cable.HangUp();
  EXPECT_TRUE(WaitFor([&] { return lost > 0; }));
  EXPECT_FALSE(device.IsOpen());
  WaitFor([] { return false; }, 100);
  EXPECT_EQ(lost, 1);
}

}  // namespace
}  // namespace spectrane

#endif
