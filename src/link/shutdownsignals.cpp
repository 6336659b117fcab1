#include "link/shutdownsignals.h"

#include <utility>

#ifdef _WIN32
#include "base/windowsheader.h"
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
std::function<void()> work;

BOOL WINAPI OnConsoleEvent(DWORD) {
  if (receiver == nullptr) return FALSE;
  // Not in the thread of the event loop.
  QMetaObject::invokeMethod(
      receiver, [] { work(); }, Qt::QueuedConnection);
  return TRUE;
}
}  // namespace

ShutdownSignals::ShutdownSignals(std::function<void()> wanted) : wanted_(std::move(wanted)) {
  work = wanted_;
  receiver = this;
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

ShutdownSignals::~ShutdownSignals() {
  SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
  receiver = nullptr;
}

#else

namespace {
int wakeUp[2] = {-1, -1};

// Nothing but write() is allowed in a signal handler; the event loop reads the other end.
void OnSignal(int) {
  const char byte = 1;
  [[maybe_unused]] const ssize_t written = write(wakeUp[1], &byte, 1);
}

void AnswerSignals(void (*answer)(int)) {
  struct sigaction action {};
  action.sa_handler = answer;
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) sigaction(number, &action, nullptr);
}
}  // namespace

ShutdownSignals::ShutdownSignals(std::function<void()> wanted) : wanted_(std::move(wanted)) {
  if (pipe(wakeUp) != 0) return;
  for (const int end : wakeUp) {
    fcntl(end, F_SETFD, FD_CLOEXEC);
    fcntl(end, F_SETFL, O_NONBLOCK);
  }
  auto* notifier = new QSocketNotifier(wakeUp[0], QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    char byte = 0;
    if (read(wakeUp[0], &byte, 1) == 1) wanted_();
  });
  AnswerSignals(OnSignal);
  signal(SIGPIPE, SIG_IGN);
}

ShutdownSignals::~ShutdownSignals() {
  // From here on nobody reads: a signal ends the program as it would any other.
  AnswerSignals(SIG_DFL);
  for (int& end : wakeUp) {
    if (end >= 0) close(std::exchange(end, -1));
  }
}

#endif

}  // namespace spectrane
