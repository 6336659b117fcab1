#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

namespace spectrane {

/// The wire at the instrument's side.
class Transport : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// False: nothing is open and `reason` says why.
  virtual bool Open(QString& reason) = 0;
  /// Breaks the line, as a pulled cable does; nothing happens when it is not open.
  virtual void HangUp() = 0;
  virtual bool IsOpen() const = 0;
  /// Where a program finds the instrument.
  virtual QString Name() const = 0;
  /// Sends in order; what the far end does not take at once waits.
  virtual void Send(const QByteArray& bytes) = 0;

 signals:
  void Received(const QByteArray& bytes);
  /// The line broke without `HangUp`.
  void Lost();
};

}  // namespace spectrane
