#include <QThread>

#include <csignal>

#include <chrono>
#include <random>

#include "base/setting.h"
#include "cli/processes.h"
#include "files/basicfile.h"
#include "modes/timescan/timescansettings.h"

namespace spectrane::testing_processes {
namespace {

constexpr int kPatienceMs = 30000;
constexpr int kNewKinetics = 105;
constexpr int kSaveIt = 110;
constexpr int kNewReadings = 121;
constexpr int kConnectNow = 302;
constexpr int kStart = 304;
constexpr int kBlank = 315;

/// The real program with an operator inside, the simulator beside it, and the power switch.
class Crash : public SimulatorProcess {
 protected:
  void SetUp() override { QDir().mkpath(QString::fromStdString(Path("home"))); }
  void TearDown() override {
    Kill();
    SimulatorProcess::TearDown();
  }
  void StartProgram() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("SPECTRANE_HOME"), QString::fromStdString(Path("home")));
    environment.insert(QStringLiteral("SPECTRANE_PORTS"), QString::fromStdString(Ports));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "TMPDIR"})
      environment.insert(QLatin1String(name), QString::fromStdString(Path("home")));
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    program_.setProcessEnvironment(environment);
    program_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program_.start(QStringLiteral(SPECTRANE_BIN "/spectrane-operated"), QStringList());
    ASSERT_TRUE(program_.waitForStarted(5000));
  }
  void Kill() {
    if (program_.state() == QProcess::NotRunning) return;
    program_.kill();
    program_.waitForFinished(5000);
  }
  /// What the operator answers.
  QString Say(const QString& line) {
    program_.write(line.toUtf8() + '\n');
    while (!program_.canReadLine()) {
      if (!program_.waitForReadyRead(kPatienceMs)) return {};
    }
    return QString::fromUtf8(program_.readLine()).trimmed();
  }
  /// Says it again and again until the answer is as wanted.
  template <typename Wanted>
  QString SayUntil(const QString& line, Wanted wanted) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kPatienceMs);
    QString answer;
    do {
      answer = Say(line);
      if (wanted(answer)) return answer;
      QThread::msleep(10);
    } while (program_.state() == QProcess::Running && std::chrono::steady_clock::now() < end);
    ADD_FAILURE() << "no answer as wanted to " << line.toStdString() << ": " << answer.toStdString();
    return answer;
  }
  void Do(int command) {
    SayUntil(QStringLiteral("do %1").arg(command),
             [](const QString& answer) { return answer == QStringLiteral("done"); });
  }
  void CloseDialog() {
    SayUntil(QStringLiteral("close"), [](const QString& answer) { return answer == QStringLiteral("done"); });
  }
  QString BoxText() {
    return SayUntil(QStringLiteral("box"), [](const QString& answer) { return answer.contains(u' '); });
  }
  /// Answers the question of a start, and waits for what follows: the document, or the New File guide.
  void AnswerBox(const char* button) {
    EXPECT_EQ(Say(QStringLiteral("answer ") + QLatin1String(button)), QStringLiteral("done"));
    if (button == std::string("Yes")) {
      SayUntil(QStringLiteral("state"), [](const QString& answer) { return answer.startsWith(u'1'); });
    } else {
      SayUntil(QStringLiteral("box"), [](const QString& answer) { return answer == QStringLiteral("none"); });
      CloseDialog();
    }
  }
  /// Windows, caption, modified, records, file, connected.
  QStringList State() { return Say(QStringLiteral("state")).split(u'|'); }
  int Records() { return State().value(3).toInt(); }
  void AwaitRecords(int count) {
    SayUntil(QStringLiteral("state"),
             [count](const QString& answer) { return answer.section(u'|', 3, 3).toInt() >= count; });
  }
  void ConnectInstrument() {
    // By itself after a while, or by the command where no box is open.
    SayUntil(QStringLiteral("state"), [this](const QString& answer) {
      const bool connected = answer.endsWith(QStringLiteral("|1"));
      if (!connected) Say(QStringLiteral("do %1").arg(kConnectNow));
      return connected;
    });
  }
  void NewReadings() {
    CloseDialog();  // the New File guide
    ConnectInstrument();
    Do(kNewReadings);
    CloseDialog();  // its options
    Do(kBlank);
  }
  void Measure() {
    const int before = Records();
    Do(kStart);
    AwaitRecords(before + 1);
  }
  /// A start, the question that it asks, and how many records it names.
  int StartWithQuestion(const QString& name) {
    StartProgram();
    const QString text = BoxText();
    const QString begin =
        QStringLiteral("The program ended before this was saved:||") + name + QStringLiteral(", ");
    EXPECT_TRUE(text.startsWith(begin)) << text.toStdString();
    return text.mid(begin.size()).section(u' ', 0, 0).toInt();
  }
  std::vector<BasicRecord> RowsOf(const std::string& name) {
    BasicOption option;
    std::vector<BasicRecord> rows;
    EXPECT_FALSE(LoadDataFile(BasicModule(), Path(name), option, rows));
    return rows;
  }
  qsizetype JournalCount() const {
    return QDir(QString::fromStdString(Path("home/journal"))).entryList(QDir::Files).size();
  }

  QProcess program_;
};

TEST_F(Crash, D15_KilledAgainAndAgainWhileItMeasuresNoRowIsLost) {
  StartSimulator({"--speed", "20"});
  StartProgram();
  NewReadings();
  Measure();
  Do(kSaveIt);
  SayUntil(QStringLiteral("name ") + QString::fromStdString(Path("first.bas")),
           [](const QString& answer) { return answer == QStringLiteral("done"); });
  SayUntil(QStringLiteral("state"),
           [](const QString& answer) { return answer.section(u'|', 2, 2) == QStringLiteral("0"); });
  const std::string file = Content("first.bas");
  ASSERT_FALSE(file.empty());
  EXPECT_EQ(JournalCount(), 0);
  Measure();

  std::mt19937 random(20261121);
  int sure = Records();
  for (int kill = 0; kill < 4; ++kill) {
    // Somewhere in the next reading, or after it.
    Do(kStart);
    QThread::msleep(std::uniform_int_distribution<unsigned>(0, 120)(random));
    sure = std::max(sure, kill == 2 ? Records() : 0);
    Kill();
    ASSERT_EQ(Content("first.bas"), file) << kill;
    const int named = StartWithQuestion(QString::fromStdString(Path("first.bas")));
    EXPECT_GE(named, sure) << kill;
    EXPECT_LE(named, sure + 1) << kill;
    AnswerBox("Yes");
    const QStringList state = State();
    EXPECT_EQ(state.value(0), QStringLiteral("1"));
    EXPECT_EQ(state.value(1), QStringLiteral("first.bas"));
    EXPECT_EQ(state.value(2), QStringLiteral("1")) << "modified";
    EXPECT_EQ(state.value(3).toInt(), named);
    EXPECT_EQ(state.value(4).toStdString(), Path("first.bas"));
    sure = named;
    ConnectInstrument();
    Do(kBlank);
  }
  ASSERT_EQ(Content("first.bas"), file);
  Measure();
  Do(kSaveIt);
  SayUntil(QStringLiteral("state"),
           [](const QString& answer) { return answer.section(u'|', 2, 2) == QStringLiteral("0"); });
  EXPECT_EQ(JournalCount(), 0);
  const std::vector<BasicRecord> rows = RowsOf("first.bas");
  EXPECT_EQ(rows.size(), static_cast<std::size_t>(sure) + 1);
  const std::string log = Content("log");
  for (const BasicRecord& row : rows)
    EXPECT_NE(log.find(std::to_string(row.SampleEnergy)), std::string::npos) << "not of the instrument";
}

TEST_F(Crash, D15_ATimeScanComesBackUpToItsLastSecondAndANoIsForGood) {
  Setting(Path("home")).PutSetting(kTimeScanSection, "End Second", "100");
  StartSimulator({"--instant"});
  StartProgram();
  CloseDialog();
  ConnectInstrument();
  Do(kNewKinetics);
  CloseDialog();
  Do(kBlank);
  Do(kStart);
  AwaitRecords(2);
  const int seen = Records();
  Kill();
  const int named = StartWithQuestion(QStringLiteral("Kinetics 1"));
  EXPECT_GE(named, seen);
  EXPECT_LE(named, seen + 2);
  AnswerBox("Yes");
  EXPECT_EQ(Records(), named);
  // Killed with what came back on show.
  Kill();
  EXPECT_EQ(StartWithQuestion(QStringLiteral("Kinetics 1")), named);
  AnswerBox("No");
  EXPECT_EQ(JournalCount(), 0);
  Kill();
  StartProgram();
  CloseDialog();
  EXPECT_EQ(Say(QStringLiteral("box")), QStringLiteral("none"));
  EXPECT_EQ(State().value(0), QStringLiteral("0"));
}

#ifndef _WIN32

TEST_F(Crash, N04_AtTheEndOfTheSessionNothingIsAskedAndNothingLost) {
  StartSimulator({"--instant"});
  for (const int number : {SIGTERM, SIGHUP}) {
    StartProgram();
    const bool first = number == SIGTERM;
    if (first) {
      NewReadings();
      Measure();
      Measure();
    } else {
      // In the middle of its question.
      BoxText();
      ConnectInstrument();
    }
    QFile::remove(QString::fromStdString(Path("home/config.ini")));
    ::kill(static_cast<pid_t>(program_.processId()), number);
    ASSERT_TRUE(program_.waitForFinished(10000));
    EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program_.exitCode(), 0);
    EXPECT_EQ(Requests().back(), "quit") << number;
    EXPECT_NE(Content("home/config.ini").find("Windows Width"), std::string::npos) << number;
    EXPECT_EQ(JournalCount(), 1) << number;
  }
  EXPECT_EQ(StartWithQuestion(QStringLiteral("Photometry 1")), 2);
  AnswerBox("Yes");
  EXPECT_EQ(Records(), 2);
}

TEST_F(Crash, N04_ARunThatIsUnderWayEndsFirst) {
  Setting(Path("home")).PutSetting(kTimeScanSection, "End Second", "100");
  StartSimulator({"--instant"});
  StartProgram();
  CloseDialog();
  ConnectInstrument();
  Do(kNewKinetics);
  CloseDialog();
  Do(kBlank);
  Do(kStart);
  AwaitRecords(2);
  ::kill(static_cast<pid_t>(program_.processId()), SIGTERM);
  ASSERT_TRUE(program_.waitForFinished(10000));
  EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(Requests().back(), "quit");
  EXPECT_GE(StartWithQuestion(QStringLiteral("Kinetics 1")), 1);
}

#endif

}  // namespace
}  // namespace spectrane::testing_processes
