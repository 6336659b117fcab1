#pragma once

#include <QRect>

class QWidget;

namespace spectrane {

class LayoutStore;

/// Place and size of the main window in its normal state, from one start to the next; what it is while
/// maximised or minimised does not count.
class FramePlace {
 public:
  static constexpr QSize kFirstSize{1120, 720};

  /// Both outlive this object.
  FramePlace(QWidget& window, LayoutStore& layout) : window_(window), layout_(layout) {}

  /// Puts the window, of that size, where it was the last time, wholly on a screen.
  void Restore(QSize size);
  /// The window has moved or has another size.
  void Moved();
  void Resized();
  void Store();
  /// The size of a first start, in a corner of its screen.
  void Reset();
  QSize Size() const { return normal_.size(); }

 private:
  bool Counts() const;
  QRect OnScreen(QSize size) const;

  QWidget& window_;
  LayoutStore& layout_;
  QRect normal_;
};

}  // namespace spectrane
