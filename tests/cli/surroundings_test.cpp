// The real programs as processes where their surroundings are not as they should be. The names begin with the
// row of the catalogue in docs/reliability.md.

#include <signal.h>
#include <sys/types.h>

#include <QElapsedTimer>
#include <QThread>

#include "cli/processes.h"
#include "files/filesupport.h"

namespace spectrane::testing_processes {
namespace {

class Surroundings : public SimulatorProcess {
 protected:
  /// Variables of the window program: an empty value removes one.
  using Variables = std::vector<std::pair<const char*, std::string>>;

  void TearDown() override {
    program_.kill();
    program_.waitForFinished(5000);
    SimulatorProcess::TearDown();
  }

  /// Starts the program with windows, without a screen, behind `shell` (commands that end in "; ").
  void StartWindows(const Variables& variables, const std::string& shell = {}) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const auto put = [&environment](const char* name, const std::string& value) {
      const QString key = QString::fromLatin1(name);
      value.empty() ? environment.remove(key) : environment.insert(key, QString::fromStdString(value));
    };
    put("QT_QPA_PLATFORM", "offscreen");
    put("SPECTRANE_PORTS", Ports);
    for (const char* name : {"HOME", "SPECTRANE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                             "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
      put(name, Path("home"));
    }
    QDir().mkpath(QString::fromStdString(Path("home")));
    for (const auto& [name, value] : variables) put(name, value);
    program_.setProcessEnvironment(environment);
    program_.setProcessChannelMode(QProcess::MergedChannels);
    program_.setStandardOutputFile(QString::fromStdString(Path("words")));
    program_.start(QStringLiteral("/bin/sh"),
                   {QStringLiteral("-c"), QString::fromStdString(shell) + QStringLiteral("exec \"$0\""),
                    Program("spectrane")});
    ASSERT_TRUE(program_.waitForStarted(5000));
  }

  /// The program comes up, connects by itself two seconds later, and its live reading runs.
  void ExpectMeasuring() {
    QElapsedTimer clock;
    clock.start();
    bool reads = false;
    while (!reads && clock.elapsed() < 30'000 && program_.state() == QProcess::Running) {
      program_.waitForFinished(100);
      const std::vector<std::string> requests = Requests();
      reads = std::count(requests.begin(), requests.end(), "ge 10") >= 2;
    }
    EXPECT_TRUE(reads) << Content("words");
    EXPECT_EQ(program_.state(), QProcess::Running) << Content("words");
  }

  QProcess program_;
};

TEST_F(Surroundings, N01_WithoutAHomeARuntimeFolderOrAFolderForTemporaryFilesItStarts) {
  StartSimulator({"--instant"});
  QFile inTheWay(QString::fromStdString(Path("file")));
  ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
  StartWindows({{"SPECTRANE_HOME", Path("file")},
                {"HOME", ""},
                {"XDG_RUNTIME_DIR", ""},
                {"TMPDIR", Path("no/such/folder")}});
  ExpectMeasuring();
  EXPECT_TRUE(QFileInfo(inTheWay).isFile());
}

TEST_F(Surroundings, N02_ThirtyTwoFilesAreEnoughToMeasure) {
  StartSimulator({"--instant"});
  StartWindows({}, "ulimit -n 32; ");
  ExpectMeasuring();
}

#if !defined(__SANITIZE_ADDRESS__)
TEST_F(Surroundings, N02_AFileForWhichThereIsNoMemoryIsRefused) {
  constexpr int kRows = 2'000'000;
  const std::size_t row = BasicRecordBytes(0, "").size();
  WriteBytes(Path("large.bas"), BasicFileBytes(1, kRows));
  std::filesystem::resize_file(Path("large.bas"), BasicFileBytes(0, 0).size() + kRows * row);
  QProcess process;
  process.start(
      QStringLiteral("/bin/sh"),
      {QStringLiteral("-c"), QStringLiteral("ulimit -v 400000; exec \"$0\" \"$@\""), Program("spectrane-cli"),
       QStringLiteral("dump"), QString::fromStdString(Path("large.bas"))});
  ASSERT_TRUE(process.waitForStarted(5000));
  ExpectRefusal(Finish(process), "not enough memory");
}
#endif

TEST_F(Surroundings, N05_WithoutFontsOrABusAndAtTwiceTheScaleItRuns) {
  StartSimulator({"--instant"});
  QFile fonts(QString::fromStdString(Path("fonts.conf")));
  ASSERT_TRUE(fonts.open(QIODevice::WriteOnly));
  fonts.write("<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig></fontconfig>");
  fonts.close();
  StartWindows({{"FONTCONFIG_FILE", Path("fonts.conf")},
                {"QT_SCALE_FACTOR", "2"},
                {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + Path("no-bus")},
                {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + Path("no-bus")},
                {"LC_ALL", "tr_TR.UTF-8"}});
  ExpectMeasuring();
}

// Stopped by a person or by the lid of a computer: right afterwards, or told.
TEST_F(Surroundings, S15_AProgramThatWasStoppedAnswersRightOrSaysThatItCannot) {
  StartSimulator({"--instant", "--noise", "0"});
  for (const unsigned long after : {10ul, 40ul, 80ul, 160ul}) {
    QProcess process;
    StartBatch(process, {"instrument", "send", "getwl", "--timeout", "1"});
    QThread::msleep(after);
    const auto number = static_cast<pid_t>(process.processId());
    ::kill(number, SIGSTOP);
    QThread::msleep(1200);
    ::kill(number, SIGCONT);
    const Outcome outcome = Finish(process);
    if (outcome.Status == 0) {
      EXPECT_EQ(outcome.AsJson(), Json::parse(R"({"ok":true,"lines":["546.0"]})"));
    } else {
      EXPECT_EQ(outcome.Status, 1) << after;
      EXPECT_EQ(outcome.Out, "") << after;
    }
    const Outcome next = Batch({"instrument", "send", "getwl"});
    EXPECT_EQ(next.AsJson(), Json::parse(R"({"ok":true,"lines":["546.0"]})")) << next.Err;
  }
}

TEST_F(Surroundings, S15_AnInstrumentThatStoodStillIsATimeOutAndItsLateAnswerNoReading) {
  StartSimulator({"--instant", "--noise", "0"});
  const auto number = static_cast<pid_t>(SimulatorNumber());
  QProcess process;
  StartBatch(process, {"instrument", "send", "ge 3", "--timeout", "1"});
  while (Requests().empty()) QThread::msleep(1);
  ::kill(number, SIGSTOP);
  const Outcome stopped = Finish(process);
  ::kill(number, SIGCONT);
  if (stopped.Status != 0) {
    EXPECT_EQ(stopped.Status, 1);
    EXPECT_EQ(stopped.Out, "");
  }
  QThread::msleep(200);
  const Outcome next = Batch({"instrument", "send", "getwl"});
  EXPECT_EQ(next.AsJson(), Json::parse(R"({"ok":true,"lines":["546.0"]})")) << next.Err;
}

}  // namespace
}  // namespace spectrane::testing_processes
