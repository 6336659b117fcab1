#include "simulator/controlserver.h"

#include <QLocalSocket>

#include <filesystem>

namespace spectrane {
namespace {

constexpr qint64 MaximumLine = 4096;
constexpr int MaximumPeers = 16;
constexpr int ProbeMs = 500;

/// True when something that is no socket has the path.
bool ForeignFile(const QString& path) {
#ifdef _WIN32
  Q_UNUSED(path);
  return false;  // names of pipes, not files
#else
  std::error_code error;
  const auto status = std::filesystem::symlink_status(path.toStdString(), error);
  return std::filesystem::exists(status) && !std::filesystem::is_socket(status);
#endif
}

}  // namespace

ControlServer::ControlServer(Console& console, QObject* parent) : QObject(parent), console_(console) {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&server_, &QLocalServer::newConnection, this, [this] { Accept(); });
}

ControlServer::~ControlServer() {
  server_.close();
}

bool ControlServer::Listen(const QString& path, QString& reason) {
  if (ForeignFile(path)) {
    reason = path + QStringLiteral(": exists and is no socket");
    return false;
  }
  QLocalSocket probe;
  probe.connectToServer(path);
  if (probe.waitForConnected(ProbeMs)) {
    reason = path + QStringLiteral(": in use by another program");
    return false;
  }
  QLocalServer::removeServer(path);
  if (server_.listen(path)) return true;
  reason = path + QStringLiteral(": ") + server_.errorString();
  return false;
}

void ControlServer::Accept() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    if (peers_ >= MaximumPeers) {
      socket->abort();
      socket->deleteLater();
      continue;
    }
    ++peers_;
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] { Serve(socket); });
    connect(socket, &QLocalSocket::disconnected, this, [this, socket] {
      --peers_;
      socket->deleteLater();
    });
    Serve(socket);
  }
}

void ControlServer::Serve(QLocalSocket* socket) {
  while (socket->canReadLine()) {
    const QByteArray line = socket->readLine(MaximumLine + 1);
    const ConsoleAnswer answer = console_.Execute(line.toStdString());
    socket->write(QByteArray::fromStdString(answer.Text()));
    socket->flush();
    if (answer.Quit) emit QuitWanted();
  }
  if (socket->bytesAvailable() > MaximumLine) socket->abort();
}

}  // namespace spectrane
