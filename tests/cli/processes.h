#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <string>
#include <vector>

namespace spectrane::testing_processes {

using Json = nlohmann::ordered_json;

struct Outcome {
  int Status = -1;
  std::string Out;
  std::string Err;

  Json AsJson() const { return Json::parse(Out, nullptr, false); }
};

inline QStringList Arguments(const std::vector<std::string>& words) {
  QStringList list;
  for (const std::string& word : words) list << QString::fromStdString(word);
  return list;
}

/// The real simulator as a separate program on a pseudo-terminal, and the real batch command beside it, both
/// in a folder of their own.
class SimulatorProcess : public ::testing::Test {
 protected:
  void StartSimulator(std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"--headless", "--link", Path("line"), "--log", Path("log"), "--control",
                                     Path("control")});
    simulator_.setProgram(Program("spectrane-simulator"));
    simulator_.setArguments(Arguments(options));
    simulator_.setStandardInputFile(QProcess::nullDevice());
    simulator_.setProcessChannelMode(QProcess::MergedChannels);
    simulator_.start();
    ASSERT_TRUE(simulator_.waitForStarted(5000));
    while (!simulator_.canReadLine()) ASSERT_TRUE(simulator_.waitForReadyRead(10000));
    ASSERT_TRUE(simulator_.readLine().startsWith("ready "));
    Ports = Path("line");
  }
  void TearDown() override { StopSimulator(); }
  void StopSimulator() {
    if (simulator_.state() == QProcess::NotRunning) return;
    simulator_.terminate();
    if (!simulator_.waitForFinished(5000)) simulator_.kill();
    simulator_.waitForFinished(5000);
  }

  /// The answer to a command of the simulator's prompt; empty when there is none.
  QByteArray Ask(const std::string& command) {
    QLocalSocket socket;
    socket.connectToServer(QString::fromStdString(Path("control")));
    if (!socket.waitForConnected(5000)) return {};
    socket.write(QByteArray::fromStdString(command + "\n"));
    QByteArray answer;
    while (!answer.endsWith("ok\n") && !answer.contains("error:") && socket.waitForReadyRead(5000)) {
      answer += socket.readAll();
    }
    return answer;
  }
  /// True when a command was answered by "ok".
  bool Tell(const std::string& command) { return Ask(command).endsWith("ok\n"); }
  /// A value of the simulated instrument's own state.
  std::string StateOf(const std::string& name) {
    for (const QByteArray& line : Ask("state").split('\n')) {
      const QByteArray start = QByteArray::fromStdString(name + "=");
      if (line.startsWith(start)) return line.mid(start.size()).toStdString();
    }
    return "no such value";
  }

  /// Starts the batch command; its end is awaited by Finish().
  void StartBatch(QProcess& process, const std::vector<std::string>& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("SPECTRANE_HOME"), folder_.path());
    environment.insert(QStringLiteral("SPECTRANE_PORTS"), QString::fromStdString(Ports));
    process.setProcessEnvironment(environment);
    process.start(Program("spectrane-cli"), Arguments(arguments));
    EXPECT_TRUE(process.waitForStarted(5000));
  }
  static Outcome Finish(QProcess& process, int timeoutMs = 60000) {
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(timeoutMs));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
  }
  Outcome Batch(const std::vector<std::string>& arguments) {
    QProcess process;
    StartBatch(process, arguments);
    return Finish(process);
  }

  std::string Path(const std::string& name) const {
    return folder_.filePath(QString::fromStdString(name)).toStdString();
  }
  bool Exists(const std::string& name) const { return QFile::exists(QString::fromStdString(Path(name))); }
  std::string Content(const std::string& name) const {
    QFile file(QString::fromStdString(Path(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
  }
  /// The texts of all requests that the simulator logged, in order.
  std::vector<std::string> Requests() const {
    std::vector<std::string> requests;
    std::istringstream lines(Content("log"));
    for (std::string line; std::getline(lines, line);) {
      const std::size_t from = line.find('"');
      const std::size_t to = line.find("\"\t", from);
      if (line.starts_with('#') || from == std::string::npos || to == std::string::npos) continue;
      requests.push_back(line.substr(from + 1, to - from - 1));
    }
    return requests;
  }

  qint64 SimulatorNumber() const { return simulator_.processId(); }
  static QString Program(const char* name) {
    return QStringLiteral(SPECTRANE_BIN "/") + QString::fromUtf8(name);
  }

  /// SPECTRANE_PORTS of the batch command.
  std::string Ports = ":";

 private:
  QTemporaryDir folder_;
  QProcess simulator_;
};

/// "One line" is the contract of a refusal.
inline void ExpectRefusal(const Outcome& outcome, const std::string& words) {
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_EQ(outcome.Out, "");
  EXPECT_NE(outcome.Err.find(words), std::string::npos) << outcome.Err;
  EXPECT_EQ(std::count(outcome.Err.begin(), outcome.Err.end(), '\n'), 1) << outcome.Err;
}

}  // namespace spectrane::testing_processes
