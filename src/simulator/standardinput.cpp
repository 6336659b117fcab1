#include "simulator/standardinput.h"

#ifdef _WIN32
#include <io.h>
#include <stdio.h>

#include <iostream>
#include <string>
#include <thread>
#else
#include <unistd.h>

#include <cerrno>
#include <QSocketNotifier>
#endif

namespace spectrane {

#ifdef _WIN32

StandardInput::StandardInput(QObject* parent) : QObject(parent) {
  // Consoles and pipes cannot be waited for like sockets here; the thread ends with the process.
  std::thread([this] {
    std::string line;
    while (std::getline(std::cin, line)) {
      QMetaObject::invokeMethod(this,
                                [this, text = QByteArray::fromStdString(line)] { emit LineRead(text); });
    }
    QMetaObject::invokeMethod(this, [this] { emit Ended(); });
  }).detach();
}

bool StandardInput::IsTerminal() {
  return _isatty(_fileno(stdin)) != 0;
}

void StandardInput::ReadSome() {}

#else

StandardInput::StandardInput(QObject* parent) : QObject(parent) {
  auto* notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
  notifier_ = notifier;
  connect(notifier, &QSocketNotifier::activated, this, [this] { ReadSome(); });
}

bool StandardInput::IsTerminal() {
  return isatty(STDIN_FILENO) != 0;
}

void StandardInput::ReadSome() {
  char bytes[1024];
  const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
  if (count > 0) buffer_.append(bytes, static_cast<qsizetype>(count));
  for (qsizetype end = buffer_.indexOf('\n'); end >= 0; end = buffer_.indexOf('\n')) {
    const QByteArray line = buffer_.left(end);
    buffer_.remove(0, end + 1);
    emit LineRead(line);
  }
  if (count > 0) return;
  // At its end a pipe stays readable for ever.
  static_cast<QSocketNotifier*>(notifier_)->setEnabled(false);
  if (!buffer_.isEmpty()) emit LineRead(std::exchange(buffer_, {}));
  emit Ended();
}

#endif

}  // namespace spectrane
