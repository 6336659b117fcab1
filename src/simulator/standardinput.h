#pragma once

#include <QByteArray>
#include <QObject>

namespace spectrane {

/// Lines of the standard input as they come, without waiting for them.
class StandardInput : public QObject {
  Q_OBJECT

 public:
  explicit StandardInput(QObject* parent = nullptr);

  static bool IsTerminal();

 signals:
  void LineRead(const QByteArray& line);
  void Ended();

 private:
  void ReadSome();

  QByteArray buffer_;
  QObject* notifier_ = nullptr;
};

}  // namespace spectrane
