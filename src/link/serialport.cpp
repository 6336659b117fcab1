#include "link/serialport.h"

#ifndef _WIN32

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QSerialPort>

namespace spectrane {
namespace {

QString ResolvedName(const std::string& path) {
  const QString name = QString::fromStdString(path);
  const QString resolved = QFileInfo(name).canonicalFilePath();
  return resolved.isEmpty() ? name : resolved;
}

/// One of the folders that QSerialPort looks through for its lock.
bool LockFolderWritable() {
  constexpr const char* kFolders[] = {"/var/lock", "/etc/locks", "/var/spool/locks", "/var/spool/uucp",
                                      "/tmp",      "/var/tmp",   "/run/lock"};
  return std::any_of(std::begin(kFolders), std::end(kFolders),
                     [](const char* folder) { return access(folder, R_OK | W_OK) == 0; });
}

}  // namespace

PortFault ExamineDevice(const std::string& path, std::string& reason) {
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
}

SerialPort::SerialPort() : port_(std::make_unique<QSerialPort>()) {
  QObject::connect(port_.get(), &QSerialPort::errorOccurred, port_.get(),
                   [this](QSerialPort::SerialPortError) { OnError(); });
  // What comes while the message loop runs was not asked for: it must not pile up.
  QObject::connect(port_.get(), &QSerialPort::readyRead, port_.get(), [this] { port_->readAll(); });
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
  if (!opened) NoteOpenFault(path);
  return opened;
}

void SerialPort::NoteOpenFault(const std::string& path) {
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

// Reading and writing go to the device itself: the way through the buffers and signals of QSerialPort takes a
// third of the time that an exchange takes beside the wire, and takes a device that is full for one that is
// gone.

bool SerialPort::Write(std::string_view bytes, int timeoutMs) {
  if (!port_->isOpen()) return false;
  const QDeadlineTimer deadline(std::max(timeoutMs, 0));
  while (!bytes.empty()) {
    const ssize_t count = write(port_->handle(), bytes.data(), bytes.size());
    if (count > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (count < 0 && errno != EAGAIN && errno != EINTR) {
      LineGone(std::strerror(errno));
      return false;
    } else if (WaitFor(POLLOUT, deadline) <= 0) {
      port_->clear(QSerialPort::Output);
      return false;
    }
  }
  return true;
}

std::string SerialPort::Read(int timeoutMs) {
  if (!port_->isOpen()) return {};
  if (port_->bytesAvailable() > 0) return port_->readAll().toStdString();
  const int ready = WaitFor(POLLIN, QDeadlineTimer(std::max(timeoutMs, 0)));
  if (ready == 0) return {};
  char buffer[4096];
  const ssize_t count = ready > 0 ? read(port_->handle(), buffer, sizeof buffer) : -1;
  if (count > 0) return std::string(buffer, static_cast<std::size_t>(count));
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return {};
  LineGone(count == 0 ? "end of the line" : std::strerror(errno));
  return {};
}

int SerialPort::WaitFor(short events, const QDeadlineTimer& deadline) const {
  pollfd wait = {port_->handle(), events, 0};
  int ready = 0;
  do {
    ready = poll(&wait, 1, static_cast<int>(deadline.remainingTime()));
  } while (ready < 0 && errno == EINTR);
  return ready;
}

void SerialPort::LineGone(const std::string& words) {
  SetFault(PortFault::Other, "the line is gone: " + words);
  port_->close();
}

// The far end went away: without a close the device would report it again and again without end.
void SerialPort::OnError() {
  if (opening_ || !port_->isOpen() || port_->error() == QSerialPort::NoError) return;
  LineGone(port_->errorString().toStdString());
}

}  // namespace spectrane

#endif
