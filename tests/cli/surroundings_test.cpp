// The real programs as processes where their surroundings are not as they should be. The names begin with the
// row of the catalogue in docs/reliability.md.

#include <signal.h>
#include <sys/mount.h>
#include <sys/types.h>
#include <unistd.h>

#include <sstream>
#include <thread>

#include <QElapsedTimer>
#include <QThread>

#include "cli/processes.h"
#include "files/filesupport.h"
#include "link/sci.h"
#include "simulator/escapedtext.h"

namespace spectrane::testing_processes {
namespace {

/// The one port that leads to the simulator.
class SimulatorPort : public SerialPortList {
 public:
  explicit SimulatorPort(std::string path) : path_(std::move(path)) {}
  std::string Path(int) const override { return path_; }

 private:
  std::string path_;
};

class Surroundings : public SimulatorProcess {
 protected:
  /// What the simulator answered, as its log has it, in order.
  std::vector<std::string> Answers() const {
    std::vector<std::string> answers;
    std::istringstream lines(Content("log"));
    for (std::string line; std::getline(lines, line);) {
      const std::size_t from = line.find("\"\t\"");
      if (line.starts_with('#') || from == std::string::npos) continue;
      answers.push_back(Unescape(line.substr(from + 3, line.size() - from - 4)).value_or("unreadable"));
    }
    return answers;
  }

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

/// Takes a file system away at the end, also where programs still use it.
struct Unmounted {
  std::string Folder;
  ~Unmounted() { ::umount2(Folder.c_str(), MNT_DETACH); }
};

TEST_F(Surroundings, N01_WithAFolderForTemporaryFilesThatIsFullItMeasures) {
  StartSimulator({"--instant"});
  const std::string full = Path("full");
  ASSERT_TRUE(QDir().mkpath(QString::fromStdString(full)));
  if (::mount("tmpfs", full.c_str(), "tmpfs", 0, "size=4k,nr_inodes=2") != 0)
    GTEST_SKIP() << "mount is not permitted";
  const Unmounted atTheEnd{full};
  WriteBytes(full + "/file", std::string(4096, 'x'));
  StartWindows({{"TMPDIR", full}, {"XDG_RUNTIME_DIR", ""}});
  ExpectMeasuring();
  // Nothing had room there, neither bytes nor a name.
  const QStringList names =
      QDir(QString::fromStdString(full)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
  EXPECT_EQ(names, QStringList(QStringLiteral("file")));
}

/// The batch command among folders of which some are read-only for it alone.
class LockFolders : public Surroundings {
 protected:
  void SetUp() override {
    if (std::system((Apart() + " sh -c '" + kUsualFolder + "' 2>/dev/null").c_str()) != 0)
      GTEST_SKIP() << "mount is not permitted";
  }

  void StartBatchIn(const std::string& shell, QProcess& process, const std::vector<std::string>& words) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("SPECTRANE_HOME"), QString::fromStdString(Path("")));
    environment.insert(QStringLiteral("SPECTRANE_PORTS"), QString::fromStdString(Ports));
    process.setProcessEnvironment(environment);
    const std::string line = "exec " + Apart() + " sh -c '" + shell + " && exec \"$0\" \"$@\"' \"$0\" \"$@\"";
    process.start(QStringLiteral("/bin/sh"),
                  QStringList{QStringLiteral("-c"), QString::fromStdString(line), Program("spectrane-cli")} +
                      Arguments(words));
    EXPECT_TRUE(process.waitForStarted(5000));
  }
  Outcome BatchIn(const std::string& shell, const std::vector<std::string>& words) {
    QProcess process;
    StartBatchIn(shell, process, words);
    return Finish(process);
  }

  static inline const std::string kUsualFolder = "mount -t tmpfs -o ro tmpfs /run/lock";
  static inline const std::string kEachFolder =
      kUsualFolder +
      " && for f in /tmp /var/tmp; do mount --bind $f $f && mount -o remount,ro,bind $f || exit 99; done";

 private:
  static std::string Apart() { return ::geteuid() == 0 ? "unshare -m" : "unshare -rm"; }
};

TEST_F(LockFolders, S07_ALockThatCannotBeMadeInItsUsualPlaceIsMadeInAnother) {
  StartSimulator({"--instant"});
  const Outcome probe = BatchIn(kUsualFolder, {"instrument", "probe"});
  EXPECT_EQ(probe.Status, 0) << probe.Err;
  QProcess holder;
  StartBatchIn(kUsualFolder, holder,
               {"instrument", "measure", "--wavelength", "546", "--count", "1", "--out", Path("never.bas")});
  holder.setReadChannel(QProcess::StandardError);
  QByteArray seen;
  while (!seen.contains("Please input") && holder.waitForReadyRead(20000))
    seen += holder.readAllStandardError();
  ExpectRefusal(BatchIn(kUsualFolder, {"instrument", "probe"}), "in use");
  Finish(holder);
}

TEST_F(LockFolders, S07_WithoutAnyPlaceForALockThatIsToldAndNothingIsSent) {
  StartSimulator({"--instant"});
  const Outcome probe = BatchIn(kEachFolder, {"instrument", "probe"});
  ExpectRefusal(probe, "cannot be opened");
  EXPECT_NE(probe.Err.find("creating lock file"), std::string::npos) << probe.Err;
  EXPECT_EQ(probe.Err.find("no answer of an instrument"), std::string::npos) << probe.Err;
  EXPECT_EQ(probe.Err.find("in use"), std::string::npos) << probe.Err;
  EXPECT_EQ(Requests(), std::vector<std::string>());
}

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
  StartSimulator({"--instant"});  // with its noise no answer is like another one
  SteadyClock time;
  QtMessageLoop loop;
  NoExclusion turn;
  SimulatorPort ports(Path("line"));
  SCI line(ports, time, loop, turn);
  int number = 1;
  ASSERT_TRUE(line.OpenPort(number));
  const auto simulator = static_cast<pid_t>(SimulatorNumber());
  std::string reply;
  ASSERT_TRUE(line.Exchange("ge 3", reply, 10));
  ASSERT_EQ(::kill(simulator, SIGSTOP), 0);
  for (const char* request : {"ge 3", "ge 3", "ge 2"}) {
    const std::int64_t before = time.NowMs();
    EXPECT_FALSE(line.Exchange(request, reply, 1)) << request;
    EXPECT_EQ(line.LastEnd(), ExchangeEnd::TimedOut) << request;
    EXPECT_GE(time.NowMs() - before, 1000) << request;
    EXPECT_EQ(reply, "") << request;
  }
  std::thread waker([simulator] {
    QThread::msleep(300);
    ::kill(simulator, SIGCONT);
  });
  // On the same line, with all that piled up in front of it.
  EXPECT_TRUE(line.Exchange("ge 3", reply, 10)) << DescribeEnd(line.LastEnd());
  waker.join();
  const std::vector<std::string> answers = Answers();
  ASSERT_EQ(answers.size(), 5u);
  EXPECT_EQ(reply, answers.back());
  EXPECT_NE(reply, answers[1]);
  EXPECT_NE(reply, answers[2]);
}

}  // namespace
}  // namespace spectrane::testing_processes
