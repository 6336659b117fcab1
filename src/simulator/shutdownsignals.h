#pragma once

#include <QObject>

namespace spectrane {

/// Turns the system's wish to end the program (SIGTERM, SIGINT, SIGHUP; Ctrl+C or a closing console on
/// Windows) into a Qt signal in the event loop, and makes writing to a closed pipe an ordinary error. One
/// object a process.
class ShutdownSignals : public QObject {
  Q_OBJECT

 public:
  explicit ShutdownSignals(QObject* parent = nullptr);

 signals:
  void Wanted();
};

}  // namespace spectrane
