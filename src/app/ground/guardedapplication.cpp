#include "app/ground/guardedapplication.h"

namespace spectrane {

bool GuardedApplication::notify(QObject* receiver, QEvent* event) {
  try {
    return QApplication::notify(receiver, event);
  } catch (const std::exception& fault) {
    if (!OnFault) throw;
    OnFault(fault);
  }
  return true;
}

}  // namespace spectrane
