#include "simulator/shutdownsignals.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#endif

namespace spectrane {

#ifdef _WIN32

namespace {
ShutdownSignals* receiver = nullptr;

BOOL WINAPI OnConsoleEvent(DWORD) {
  if (receiver == nullptr) return FALSE;
  QMetaObject::invokeMethod(receiver, [] { emit receiver->Wanted(); });
  return TRUE;
}
}  // namespace

ShutdownSignals::ShutdownSignals(QObject* parent) : QObject(parent) {
  receiver = this;
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

#else

namespace {
int wakeUp[2] = {-1, -1};

// Nothing but write() is allowed in a signal handler; the event loop reads the other end.
void OnSignal(int) {
  const char byte = 1;
  [[maybe_unused]] const ssize_t written = write(wakeUp[1], &byte, 1);
}
}  // namespace

ShutdownSignals::ShutdownSignals(QObject* parent) : QObject(parent) {
  if (pipe(wakeUp) != 0) return;
  for (const int end : wakeUp) {
    fcntl(end, F_SETFD, FD_CLOEXEC);
    fcntl(end, F_SETFL, O_NONBLOCK);
  }
  auto* notifier = new QSocketNotifier(wakeUp[0], QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    char byte = 0;
    if (read(wakeUp[0], &byte, 1) == 1) emit Wanted();
  });
  struct sigaction action {};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) sigaction(number, &action, nullptr);
  signal(SIGPIPE, SIG_IGN);
}

#endif

}  // namespace spectrane
