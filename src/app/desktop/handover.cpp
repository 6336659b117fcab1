#include "app/desktop/handover.h"

#include <chrono>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QLocalSocket>
#include <QPointer>
#include <QTimer>

#include "app/desktop/handovermessage.h"
#include "app/desktop/handoverplace.h"

#ifdef _WIN32
#include "base/windowsheader.h"
#endif

namespace spectrane {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kMostPeers = 8;
/// Paths that wait for their receiver.
constexpr std::size_t kMostWaiting = 64;
constexpr auto kPeerTime = 2s;
constexpr int kProbeMs = 100;

/// A copy of the program answers under that name.
bool SomebodyListens(const QString& socketName) {
  QLocalSocket probe;
  probe.connectToServer(socketName);
  return probe.waitForConnected(kProbeMs);
}

/// The program just started by the user may show its window in front, and passes that right on.
void LetComeForward([[maybe_unused]] const QLocalSocket& owner) {
#ifdef _WIN32
  ULONG process = 0;
  if (GetNamedPipeServerProcessId(reinterpret_cast<HANDLE>(owner.socketDescriptor()), &process) != 0)
    AllowSetForegroundWindow(process);
#endif
}

int RemainingMs(const QDeadlineTimer& deadline) {
  return static_cast<int>(deadline.remainingTime());
}

/// The owner's answer came in time and was the right one.
bool Answered(QLocalSocket& owner, const QDeadlineTimer& deadline) {
  const QByteArray expected(kHandoverAnswer);
  QByteArray answer;
  while (answer.size() < expected.size()) {
    if (owner.bytesAvailable() == 0 && !owner.waitForReadyRead(RemainingMs(deadline))) return false;
    answer += owner.read(expected.size() - answer.size());
  }
  return answer == expected;
}

}  // namespace

HandoverServer::HandoverServer(QObject* parent) : QObject(parent) {
  // The folder keeps other users out as well, where the socket is a file.
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&server_, &QLocalServer::newConnection, this, &HandoverServer::Welcome);
}

HandoverServer::~HandoverServer() {
  for (const auto& entry : peers_) entry.first->disconnect(this);
  // Before the lock goes: closing takes the name away, by then perhaps another owner's.
  server_.close();
}

bool HandoverServer::Listen() {
  if (server_.isListening()) return true;
  const auto place = FindHandoverPlace();
  if (!place) return false;
  if (lock_ == nullptr) {
    // Looked at first: listening would take the name away even from an owner that lives.
    if (SomebodyListens(place->SocketName)) return false;
    auto lock = std::make_unique<QLockFile>(place->LockPath);
    // Held for the whole run: only the death of its holder makes it stale, not its age.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0)) return false;
    lock_ = std::move(lock);
  }
  if (server_.listen(place->SocketName)) return true;
  lock_.reset();
  return false;
}

void HandoverServer::Welcome() {
  while (QLocalSocket* const peer = server_.nextPendingConnection()) {
    if (peers_.size() >= kMostPeers) {
      peer->abort();
      peer->deleteLater();
      continue;
    }
    peers_.emplace(peer, Peer());
    peer->setReadBufferSize(kMostMessageBytes + 1);
    connect(peer, &QLocalSocket::readyRead, this, [this, peer] { ReadFrom(peer); });
    connect(peer, &QLocalSocket::disconnected, this, [this, peer] { Drop(peer); });
    // The clock runs from the connection on, however busily the peer sends.
    QTimer::singleShot(kPeerTime, peer, [this, peer] { Drop(peer); });
    // What came in before the slots were connected, from a peer that may even have gone.
    ReadFrom(peer);
  }
}

void HandoverServer::ReadFrom(QLocalSocket* peer) {
  const auto entry = peers_.find(peer);
  if (entry == peers_.end()) return;
  Peer& sent = entry->second;
  sent.Bytes += peer->read(kMostMessageBytes + 1 - sent.Bytes.size());
  QString path;
  const MessageState state = ReadHandoverMessage(sent.Bytes, path);
  const bool connected = peer->state() == QLocalSocket::ConnectedState;
  if (connected && (state == MessageState::Unfinished || (state == MessageState::Whole && sent.Answered)))
    return;
  if (state == MessageState::Whole && !sent.Answered && paths_.size() < kMostWaiting) {
    sent.Answered = true;
    paths_.push_back(path);
    DeliverLater();
    // Not closed from this side: where sockets are pipes, that would take back what was not read yet.
    peer->write(kHandoverAnswer);
    peer->flush();
    return;
  }
  Drop(peer);
}

void HandoverServer::Drop(QLocalSocket* peer) {
  if (peers_.erase(peer) == 0) return;
  peer->disconnect(this);
  peer->abort();
  peer->deleteLater();
}

void HandoverServer::DeliverLater() {
  QTimer::singleShot(0, this, &HandoverServer::Deliver);
}

void HandoverServer::Deliver() {
  if (delivering_ || paths_.empty()) return;
  const QString path = paths_.front();
  paths_.pop_front();
  delivering_ = true;
  const QPointer<HandoverServer> self(this);
  emit PathReceived(path);
  if (self == nullptr) return;
  delivering_ = false;
  if (!paths_.empty()) DeliverLater();
}

bool SendToRunningCopy(const QString& path, int timeoutMs) {
  if (path.isEmpty()) return false;
  const QByteArray message = HandoverMessage(QFileInfo(path).absoluteFilePath());
  const auto place = FindHandoverPlace();
  if (message.isEmpty() || !place) return false;

  const QDeadlineTimer deadline(timeoutMs);
  QLocalSocket owner;
  owner.connectToServer(place->SocketName);
  if (!owner.waitForConnected(timeoutMs)) return false;
  LetComeForward(owner);
  if (owner.write(message) != message.size()) return false;
  while (owner.bytesToWrite() > 0) {
    if (!owner.waitForBytesWritten(RemainingMs(deadline))) return false;
  }
  return Answered(owner, deadline);
}

}  // namespace spectrane
