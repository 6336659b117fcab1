#include "link/serialport.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QSerialPort>

#ifndef _WIN32
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace spectrane {
namespace {

QString ResolvedName(const std::string& path) {
  const QString name = QString::fromStdString(path);
#ifdef _WIN32
  return name;  // a device name, no file
#else
  const QString resolved = QFileInfo(name).canonicalFilePath();
  return resolved.isEmpty() ? name : resolved;
#endif
}

bool LockFolderWritable() {
#ifdef _WIN32
  return true;
#else
  return access("/run/lock", W_OK) == 0 || access("/var/lock", W_OK) == 0;
#endif
}

}  // namespace

PortFault ExamineDevice(const std::string& path, std::string& reason) {
#ifdef _WIN32
  static_cast<void>(path);
  static_cast<void>(reason);
  return PortFault::None;
#else
  struct stat about = {};
  if (stat(path.c_str(), &about) != 0) {
    const int error = errno;
    reason = path + ": " + std::strerror(error);
    return error == EACCES ? PortFault::NoRights : PortFault::Missing;
  }
  if (access(path.c_str(), R_OK | W_OK) == 0) return PortFault::None;
  reason = path + ": no right to read and write the device";
  const QString group = QFileInfo(QString::fromStdString(path)).group();
  if (!group.isEmpty()) reason += "; its group is \"" + group.toStdString() + "\"";
  return PortFault::NoRights;
#endif
}

SerialPort::SerialPort() : port_(std::make_unique<QSerialPort>()) {
  QObject::connect(port_.get(), &QSerialPort::errorOccurred, port_.get(),
                   [this](QSerialPort::SerialPortError) { OnError(); });
  // What comes while the message loop runs was not asked for: it must not pile up.
  QObject::connect(port_.get(), &QSerialPort::readyRead, port_.get(), [this] {
    if (!exchanging_) port_->readAll();
  });
}

SerialPort::~SerialPort() = default;

bool SerialPort::Open(const std::string& path) {
  Close();
  SetFault(PortFault::None, {});
  const QString name = ResolvedName(path);
  std::string reason;
  const PortFault fault = ExamineDevice(name.toStdString(), reason);
  if (fault != PortFault::None) {
    SetFault(fault, reason);
    return false;
  }
  opening_ = true;  // errors raised inside open() are told by its result
  port_->setPortName(name);
  // A closed port notes these down; open() fails when the device does not take one.
  port_->setBaudRate(QSerialPort::Baud115200);
  port_->setDataBits(QSerialPort::Data8);
  port_->setParity(QSerialPort::NoParity);
  port_->setStopBits(QSerialPort::OneStop);
  port_->setFlowControl(QSerialPort::NoFlowControl);
  const bool opened = port_->open(QIODevice::ReadWrite);
  opening_ = false;
  return opened || OpenFailed(path);
}

bool SerialPort::OpenFailed(const std::string& path) {
  const std::string words = port_->errorString().toStdString();
  switch (port_->error()) {
    case QSerialPort::DeviceNotFoundError:
      SetFault(PortFault::Missing, path + ": " + words);
      break;
    case QSerialPort::PermissionError:
      // The rights were there a moment ago: another program holds the device, or its lock cannot be made.
      SetFault(LockFolderWritable() ? PortFault::InUse : PortFault::Other, path + ": " + words);
      break;
    default:
      SetFault(PortFault::Other, path + ": " + words);
  }
  return false;
}

bool SerialPort::Close() {
  if (!port_->isOpen()) return false;
  port_->close();
  return true;
}

bool SerialPort::IsOpen() const {
  return port_->isOpen();
}

void SerialPort::DiscardInput() {
  if (port_->isOpen()) port_->clear(QSerialPort::Input);
}

bool SerialPort::Write(std::string_view bytes, int timeoutMs) {
  if (!port_->isOpen()) return false;
  const std::string_view rest = bytes.substr(WriteAtOnce(bytes));
  return rest.empty() || WriteInTime(rest, timeoutMs);
}

bool SerialPort::WriteInTime(std::string_view bytes, int timeoutMs) {
  const QScopedValueRollback<bool> inExchange(exchanging_, true);
  QElapsedTimer clock;
  clock.start();
  if (port_->write(bytes.data(), static_cast<qint64>(bytes.size())) != static_cast<qint64>(bytes.size())) {
    return false;
  }
  port_->flush();
  while (port_->isOpen() && port_->bytesToWrite() > 0) {
    const qint64 rest = timeoutMs - clock.elapsed();
    if (rest <= 0 || !port_->waitForBytesWritten(static_cast<int>(rest))) break;
  }
  if (!port_->isOpen()) return false;
  if (port_->bytesToWrite() == 0) return true;
  port_->clear(QSerialPort::Output);
  return false;
}

#ifdef _WIN32

std::size_t SerialPort::WriteAtOnce(std::string_view) {
  return 0;
}

std::string SerialPort::Read(int timeoutMs) {
  const QScopedValueRollback<bool> inExchange(exchanging_, true);
  if (port_->isOpen() && port_->bytesAvailable() == 0) port_->waitForReadyRead(std::max(timeoutMs, 0));
  if (!port_->isOpen()) return {};
  return port_->readAll().toStdString();
}

#else

// Reading and writing go to the device itself where nothing is buffered before it: the way through the
// buffers and signals of QSerialPort takes a third of the time that an exchange takes beside the wire.

std::size_t SerialPort::WriteAtOnce(std::string_view bytes) {
  if (port_->bytesToWrite() > 0) return 0;
  const ssize_t count = write(port_->handle(), bytes.data(), bytes.size());
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

std::string SerialPort::Read(int timeoutMs) {
  if (!port_->isOpen()) return {};
  if (port_->bytesAvailable() > 0) return port_->readAll().toStdString();
  QDeadlineTimer deadline(std::max(timeoutMs, 0));
  pollfd wait = {port_->handle(), POLLIN, 0};
  int ready = poll(&wait, 1, std::max(timeoutMs, 0));
  while (ready < 0 && errno == EINTR) ready = poll(&wait, 1, static_cast<int>(deadline.remainingTime()));
  if (ready == 0) return {};
  char buffer[4096];
  const ssize_t count = ready > 0 ? read(port_->handle(), buffer, sizeof buffer) : -1;
  if (count > 0) return std::string(buffer, static_cast<std::size_t>(count));
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return {};
  LineGone(count == 0 ? "end of the line" : std::strerror(errno));
  return {};
}

#endif

void SerialPort::LineGone(const std::string& words) {
  SetFault(PortFault::Other, "the line is gone: " + words);
  port_->close();
}

// The far end went away: without a close the device would report it again and again without end.
void SerialPort::OnError() {
  if (opening_ || !port_->isOpen()) return;
  switch (port_->error()) {
    case QSerialPort::NoError:
    case QSerialPort::TimeoutError:
    case QSerialPort::UnsupportedOperationError:
      return;
    default:
      LineGone(port_->errorString().toStdString());
  }
}

}  // namespace spectrane
