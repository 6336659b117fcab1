#pragma once

#include "windowsupport/windowfixture.h"

namespace spectrane::testing_windows {

/// InDialog() for a dialog that comes up after a while: in the middle of a run.
inline void WhenDialogComes(const char* name, const std::function<void(QWidget&)>& act) {
  auto* const look = new QTimer(qApp);
  QObject::connect(look, &QTimer::timeout, look, [look, name, act] {
    if (!QApplication::activeModalWidget()) return;
    look->stop();
    look->deleteLater();
    InDialog(name, act);
  });
  look->start(1);
}

}  // namespace spectrane::testing_windows
