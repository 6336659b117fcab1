#pragma once

#include <QThread>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "cli/processes.h"

namespace spectrane::testing_processes {

inline constexpr int kPatienceMs = 30000;
inline constexpr int kNewKinetics = 105;
inline constexpr int kSaveIt = 110;
inline constexpr int kNewReadings = 121;
inline constexpr int kConnectNow = 302;
inline constexpr int kStart = 304;
inline constexpr int kBlank = 315;

/// The real program with an operator inside, the simulator beside it, and the power switch.
class OperatedProgram : public SimulatorProcess {
 protected:
  void SetUp() override { QDir().mkpath(QString::fromStdString(Path("home"))); }
  void TearDown() override {
    Kill();
    SimulatorProcess::TearDown();
  }
  /// `more`: variables of its environment that are not as usual.
  void StartProgram(const std::vector<std::pair<const char*, QString>>& more = {}) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("SPECTRANE_HOME"), QString::fromStdString(Path("home")));
    environment.insert(QStringLiteral("SPECTRANE_PORTS"), QString::fromStdString(Ports));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "TMPDIR"})
      environment.insert(QLatin1String(name), QString::fromStdString(Path("home")));
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    for (const auto& [name, value] : more) environment.insert(QLatin1String(name), value);
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
  qsizetype JournalCount() const {
    return QDir(QString::fromStdString(Path("home/journal"))).entryList(QDir::Files).size();
  }

  QProcess program_;
};

}  // namespace spectrane::testing_processes
