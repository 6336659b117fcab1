#include "simulator/devicetransport.h"

namespace spectrane {

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

void DeviceTransport::Send(const QByteArray& bytes) {
  if (port_.isOpen()) port_.write(bytes);
}

}  // namespace spectrane
