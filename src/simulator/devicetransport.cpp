#include "simulator/devicetransport.h"

namespace spectrane {

#ifdef _WIN32

namespace {

/// How often the line is asked for bytes [ms]: below what a reading takes.
constexpr int kPollMs = 2;
/// How long a reply may wait for the line [ms].
constexpr int kSendMs = 2000;

}  // namespace

DeviceTransport::DeviceTransport(const QString& device, QObject* parent)
    : Transport(parent), device_(device) {
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, &DeviceTransport::Poll);
}

bool DeviceTransport::Open(QString& reason) {
  HangUp();
  if (port_.Open(device_.toStdString())) {
    timer_.start(kPollMs);
    return true;
  }
  reason = QString::fromStdString(port_.LastReason());
  return false;
}

void DeviceTransport::HangUp() {
  timer_.stop();
  port_.Close();
}

bool DeviceTransport::IsOpen() const {
  return port_.IsOpen();
}

void DeviceTransport::Send(const QByteArray& bytes) {
  if (port_.IsOpen()) port_.Write({bytes.constData(), static_cast<std::size_t>(bytes.size())}, kSendMs);
}

void DeviceTransport::Poll() {
  const std::string bytes = port_.Read(0);
  if (!bytes.empty()) emit Received(QByteArray::fromStdString(bytes));
  if (port_.IsOpen() || !timer_.isActive()) return;
  timer_.stop();
  emit Lost();
}

#else

DeviceTransport::DeviceTransport(const QString& device, QObject* parent)
    : Transport(parent), device_(device) {
  connect(&port_, &QSerialPort::readyRead, this, [this] { emit Received(port_.readAll()); });
  connect(&port_, &QSerialPort::errorOccurred, this, [this](QSerialPort::SerialPortError error) {
    const bool broken = error == QSerialPort::ReadError || error == QSerialPort::WriteError ||
                        error == QSerialPort::ResourceError;
    if (!broken || !port_.isOpen()) return;
    // A device that went away reports the same error without end until it is closed.
    port_.close();
    emit Lost();
  });
}

bool DeviceTransport::Open(QString& reason) {
  HangUp();
  port_.setPortName(device_);
  const bool configured = port_.setBaudRate(QSerialPort::Baud115200) &&
                          port_.setDataBits(QSerialPort::Data8) && port_.setParity(QSerialPort::NoParity) &&
                          port_.setStopBits(QSerialPort::OneStop) &&
                          port_.setFlowControl(QSerialPort::NoFlowControl);
  if (configured && port_.open(QIODevice::ReadWrite)) return true;
  reason = device_ + QStringLiteral(": ") + port_.errorString();
  return false;
}

void DeviceTransport::HangUp() {
  if (port_.isOpen()) port_.close();
}

bool DeviceTransport::IsOpen() const {
  return port_.isOpen();
}

void DeviceTransport::Send(const QByteArray& bytes) {
  if (port_.isOpen()) port_.write(bytes);
}

#endif

}  // namespace spectrane
