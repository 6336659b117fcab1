#pragma once

#ifdef _WIN32
#include <QTimer>

#include "link/win32port.h"
#else
#include <QSerialPort>
#endif

#include "simulator/transport.h"

namespace spectrane {

/// A real serial device, 115200 baud 8N1: the simulated instrument at the far end of a cable.
class DeviceTransport : public Transport {
  Q_OBJECT

 public:
  explicit DeviceTransport(const QString& device, QObject* parent = nullptr);

  bool Open(QString& reason) override;
  void HangUp() override;
  bool IsOpen() const override;
  QString Name() const override { return device_; }
  void Send(const QByteArray& bytes) override;

 private:
  QString device_;
#ifdef _WIN32
  void Poll();

  Win32Port port_;
  QTimer timer_;
#else
  QSerialPort port_;
#endif
};

}  // namespace spectrane
