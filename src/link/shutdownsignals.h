#pragma once

#include <QObject>

#include <functional>

namespace spectrane {

/// Turns the system's wish to end the program (SIGTERM, SIGINT, SIGHUP; Ctrl+C or a closing console on
/// Windows) into a call in the event loop, and makes writing to a closed pipe an ordinary error. One object a
/// process.
class ShutdownSignals : public QObject {
 public:
  explicit ShutdownSignals(std::function<void()> wanted);
  ~ShutdownSignals() override;

 private:
  std::function<void()> wanted_;
};

}  // namespace spectrane
