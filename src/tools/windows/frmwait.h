#pragma once

#include <QPointer>
#include <QWidget>

#include "app/ground/mainwindow.h"

namespace spectrane {

/// The plain box that asks to wait while the instrument keeps the program busy. It is on the screen when the
/// constructor returns and gone with the object; the person cannot close it, and the focus is back where it
/// was afterwards.
class FrmWait : public QWidget {
  Q_OBJECT

 public:
  /// Yields, to all but the person's input, until the box is painted.
  explicit FrmWait(MainWindow& frame);
  ~FrmWait() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void PlaceOver(const QWidget& frame);
  void WaitUntilPainted();

  QPointer<QWidget> activeBefore_;
};

}  // namespace spectrane
