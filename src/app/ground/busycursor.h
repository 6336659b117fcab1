#pragma once

#include <QWidget>

namespace spectrane {

/// The cursor of a wait, over this window only: the commands of the main window stay in reach.
class BusyCursor {
 public:
  explicit BusyCursor(QWidget& window) : window_(window) { window_.setCursor(Qt::BusyCursor); }
  ~BusyCursor() { window_.unsetCursor(); }
  BusyCursor(const BusyCursor&) = delete;
  BusyCursor& operator=(const BusyCursor&) = delete;

 private:
  QWidget& window_;
};

}  // namespace spectrane
