#include "app/frameplace.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>

#include <algorithm>

#include "app/ground/layoutstore.h"

namespace spectrane {
namespace {

/// So much of a window must be on a screen [px].
constexpr int kVisible = 80;
/// At the sides and below a window [px].
constexpr int kFrameWidth = 4;
/// From the corner of the screen to a window without a place of its own [px].
constexpr QPoint kFirstPlace(40, 40);
const QString kPlaceName = QStringLiteral("FrmMain/Place");

}  // namespace

QRect FramePlace::OnScreen(QSize size) const {
  const QByteArray stored = layout_.Bytes(kPlaceName);
  const QScreen* screen = QGuiApplication::primaryScreen();
  QRect place(QPoint(), size);
  if (const QList<QByteArray> parts = stored.split(','); parts.size() == 2) {
    place.moveTopLeft(QPoint(parts[0].toInt(), parts[1].toInt()));
    for (const QScreen* each : QGuiApplication::screens()) {
      const QRect shown = each->availableGeometry().intersected(place);
      if (shown.width() >= kVisible && shown.height() >= kVisible &&
          each->availableGeometry().top() <= place.top()) {
        screen = each;
      }
    }
  } else {
    place.moveCenter(screen->availableGeometry().center());
  }
  // The window's frame needs room as well, above all its title bar.
  const int title = window_.style()->pixelMetric(QStyle::PM_TitleBarHeight);
  const QRect area = screen->availableGeometry().adjusted(kFrameWidth, title, -kFrameWidth, -kFrameWidth);
  const QSize least = window_.minimumSizeHint().boundedTo(area.size());
  place.setSize(place.size().boundedTo(area.size()).expandedTo(least));
  place.moveLeft(std::clamp(place.left(), area.left(), area.right() - place.width() + 1));
  place.moveTop(std::clamp(place.top(), area.top(), area.bottom() - place.height() + 1));
  return place;
}

void FramePlace::Restore(QSize size) {
  normal_ = OnScreen(size);
  window_.setGeometry(normal_);
}

bool FramePlace::Counts() const {
  return window_.isVisible() && !window_.isMaximized() && !window_.isMinimized() && !window_.isFullScreen();
}

void FramePlace::Moved() {
  if (Counts()) normal_.moveTopLeft(window_.geometry().topLeft());
}

void FramePlace::Resized() {
  if (Counts()) normal_.setSize(window_.size());
}

void FramePlace::Store() {
  layout_.Store(kPlaceName, QByteArray::number(normal_.x()) + ',' + QByteArray::number(normal_.y()));
}

void FramePlace::Reset() {
  const QRect area = window_.screen()->availableGeometry();
  normal_ = QRect(area.topLeft() + kFirstPlace, kFirstSize);
  window_.resize(normal_.size().boundedTo(area.size()));
}

}  // namespace spectrane
