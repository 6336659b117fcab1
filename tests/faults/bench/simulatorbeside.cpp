#include "faults/bench/simulatorbeside.h"

#include <signal.h>

#include <csignal>

#include <QFile>
#include <QLocalSocket>

#include <utility>

namespace spectrane::campaign {
namespace {

constexpr int kPatienceMs = 10000;

}  // namespace

SimulatorBeside::SimulatorBeside(QString program, QString folder)
    : program_(std::move(program)), folder_(std::move(folder)) {
  process_.setStandardInputFile(QProcess::nullDevice());
  process_.setProcessChannelMode(QProcess::MergedChannels);
}

SimulatorBeside::~SimulatorBeside() {
  End();
}

QString SimulatorBeside::LogPath() const {
  return folder_ + QStringLiteral("/log-%1").arg(starts_);
}

bool SimulatorBeside::Start(const std::vector<std::string>& options) {
  Kill();
  ++starts_;
  QStringList arguments = {
      QStringLiteral("--headless"),         QStringLiteral("--link"), Line(),   QStringLiteral("--control"),
      folder_ + QStringLiteral("/control"), QStringLiteral("--log"),  LogPath()};
  for (const std::string& option : options) arguments << QString::fromStdString(option);
  process_.start(program_, arguments);
  while (!process_.canReadLine()) {
    if (process_.state() == QProcess::NotRunning || !process_.waitForReadyRead(kPatienceMs)) return false;
  }
  id_ = process_.processId();
  return process_.readLine().startsWith("ready ");
}

void SimulatorBeside::KillFromOutside() const {
  ::kill(static_cast<pid_t>(id_), SIGKILL);
}

void SimulatorBeside::Kill() {
  if (process_.state() == QProcess::NotRunning) return;
  process_.kill();
  process_.waitForFinished(kPatienceMs);
}

void SimulatorBeside::End() {
  if (process_.state() == QProcess::NotRunning) return;
  process_.terminate();
  if (!process_.waitForFinished(kPatienceMs)) Kill();
}

QByteArray SimulatorBeside::Ask(const std::string& command) {
  QLocalSocket socket;
  socket.connectToServer(folder_ + QStringLiteral("/control"));
  if (!socket.waitForConnected(kPatienceMs)) return {};
  socket.write(QByteArray::fromStdString(command + "\n"));
  QByteArray answer;
  while (!answer.endsWith("ok\n") && !answer.contains("error:") && socket.waitForReadyRead(kPatienceMs)) {
    answer += socket.readAll();
  }
  return answer;
}

}  // namespace spectrane::campaign
