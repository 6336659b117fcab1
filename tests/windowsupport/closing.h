#pragma once

#include <QCoreApplication>
#include <QPointer>

#include "app/ground/documentwindow.h"

namespace spectrane::testing_windows {

/// A close that had to wait for the end of a run comes from the message loop.
inline void LetItClose(const QPointer<DocumentWindow>& window) {
  for (int i = 0; i < 10 && window; ++i) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

}  // namespace spectrane::testing_windows
