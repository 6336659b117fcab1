#pragma once

#include <deque>
#include <map>
#include <memory>
#include <QByteArray>
#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

class QLocalSocket;

namespace spectrane {

/// Takes files that other copies of the program hand over (handovermessage.h has the form). Of all copies
/// that a user runs in one session, one owns the name under which it can be reached. Peers are held to one
/// message of 4 KiB in 2 seconds, eight at a time; whoever does not keep to it is dropped.
class HandoverServer : public QObject {
  Q_OBJECT

 public:
  explicit HandoverServer(QObject* parent = nullptr);
  ~HandoverServer() override;

  /// Tries to own the name; a name left behind by a copy that crashed is taken over. May be called again at
  /// any time, also to follow an owner that has ended. False: another copy owns it, or there is no place for
  /// it; the program works without.
  bool Listen();
  bool Listening() const { return server_.isListening(); }

 signals:
  /// Absolute path of the file; whether it exists is not known. Comes from the event loop, one at a time: the
  /// next one waits until the receivers have returned. They decide when to open.
  void PathReceived(const QString& path);

 private:
  void Welcome();
  void ReadFrom(QLocalSocket* peer);
  void Drop(QLocalSocket* peer);
  void DeliverLater();
  void Deliver();

  QLocalServer server_;
  std::unique_ptr<QLockFile> lock_;
  struct Peer {
    /// What it has sent so far.
    QByteArray Bytes;
    /// Its message was taken; it is up to the peer to end the connection.
    bool Answered = false;
  };
  /// The sockets are owned by `server_`.
  std::map<QLocalSocket*, Peer> peers_;
  std::deque<QString> paths_;
  bool delivering_ = false;
};

/// Hands a file over to the copy that owns the name. True: it has taken the path. False, within `timeoutMs`:
/// there is none, it does not answer, or the path cannot be handed over. Blocks, without running the event
/// loop.
bool SendToRunningCopy(const QString& path, int timeoutMs = 500);

}  // namespace spectrane
