#include "app/ground/guardedapplication.h"

#include <cstdio>
#include <stdexcept>

namespace spectrane {

bool GuardedApplication::notify(QObject* receiver, QEvent* event) {
  const auto tell = [this](const std::exception& fault) {
    OnFault ? OnFault(fault) : static_cast<void>(std::fprintf(stderr, "spectrane: %s\n", fault.what()));
    return false;
  };
  try {
    return QApplication::notify(receiver, event);
  } catch (const std::exception& fault) {
    return tell(fault);
  } catch (...) {
    return tell(std::runtime_error("an unknown fault"));
  }
}

}  // namespace spectrane
