#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

#include <functional>

#include "simulator/console.h"

namespace spectrane {

/// The console for scripts: a local socket, one command a line, each answered by its lines and a last one
/// "ok" or "error: …".
class ControlServer : public QObject {
  Q_OBJECT

 public:
  explicit ControlServer(Console& console, QObject* parent = nullptr);
  ~ControlServer() override;

  /// A socket left over by a dead program is replaced; one that answers, and any other file, is not. False:
  /// `reason`.
  bool Listen(const QString& path, QString& reason);

 signals:
  void QuitWanted();

 private:
  void Accept();
  void Serve(class QLocalSocket* socket);

  Console& console_;
  QLocalServer server_;
  int peers_ = 0;
};

}  // namespace spectrane
