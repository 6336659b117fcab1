#include "link/messageloop.h"

#include <algorithm>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

namespace spectrane {

void QtMessageLoop::RunOnce() {
  if (QCoreApplication::instance()) QCoreApplication::processEvents();
}

void QtMessageLoop::RunUntil(const Clock& clock, std::int64_t deadlineMs) {
  if (!QCoreApplication::instance()) {
    const std::int64_t rest = deadlineMs - clock.NowMs();
    if (rest > 0) QThread::msleep(static_cast<unsigned long>(rest));
    return;
  }
  for (;;) {
    const std::int64_t rest = deadlineMs - clock.NowMs();
    if (rest <= 0) break;
    // A timer of the loop's own wakes it; events of others only end the sleep early.
    QTimer wake;
    wake.setTimerType(Qt::PreciseTimer);
    wake.setSingleShot(true);
    wake.start(static_cast<int>(std::min<std::int64_t>(rest, 60'000)));
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  QCoreApplication::processEvents();
}

}  // namespace spectrane
