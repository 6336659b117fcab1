#pragma once

#include <QPointer>

class QWidget;

namespace spectrane {

/// Keeps keyboard and mouse from a window while the instrument answers. Its dialogs stay open for what is
/// typed into them.
class InputLock {
 public:
  /// The window outlives this object.
  explicit InputLock(QWidget& window) : window_(window) {}

  bool IsOn() const { return on_; }
  void Take();
  /// Gives what had the focus before; null where that is gone. The caller puts the focus somewhere.
  QWidget* Release();

 private:
  QWidget& window_;
  bool on_ = false;
  QPointer<QWidget> focusBefore_;
};

}  // namespace spectrane
