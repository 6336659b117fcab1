#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>

#include <chrono>
#include <functional>
#include <thread>

namespace spectrane {

/// Runs the event loop until the condition holds; false when it did not within the time.
inline bool WaitFor(const std::function<bool()>& condition, int timeoutMs = 3000) {
  QElapsedTimer watch;
  watch.start();
  while (!condition()) {
    if (watch.elapsed() > timeoutMs) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    std::this_thread::sleep_for(std::chrono::microseconds(500));
  }
  return true;
}

}  // namespace spectrane
