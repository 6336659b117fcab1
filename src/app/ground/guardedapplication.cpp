#include "app/ground/guardedapplication.h"

#include <cstdio>
#include <stdexcept>

#include "app/ground/readablehints.h"

namespace spectrane {

GuardedApplication::GuardedApplication(int& argc, char** argv) : QApplication(argc, argv) {
  setPalette(WithReadableHints(palette()));
}

bool GuardedApplication::event(QEvent* event) {
  const bool handled = QApplication::event(event);
  if (event->type() == QEvent::ApplicationPaletteChange) {
    // Once more only when it has changed: this is the change of it as well.
    const QPalette readable = WithReadableHints(palette());
    if (readable.color(QPalette::PlaceholderText) != palette().color(QPalette::PlaceholderText))
      setPalette(readable);
  }
  return handled;
}

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
