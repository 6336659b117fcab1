#include "app/ground/colourbutton.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QPointer>

#include "app/ground/mainwindow.h"

namespace spectrane {

ColourButton::ColourButton(MainWindow& frame, const QString& title, QWidget* parent)
    : QPushButton(parent), frame_(frame), title_(title) {
  ensurePolished();
  const int side = fontMetrics().height();
  setIconSize({side * 2, side});
  connect(this, &QPushButton::clicked, this, [this] {
    const QPointer<ColourButton> self(this);
    const QColor chosen = frame_.Boxes().AskColour(colour_, title_);
    if (self && chosen.isValid()) SetColour(chosen);
  });
}

void ColourButton::SetColour(const QColor& colour) {
  colour_ = colour;
  // The colour is told in words too.
  setAccessibleDescription(colour.name());
  setToolTip(colour.name());
  const qreal ratio = devicePixelRatioF();
  QPixmap filled(iconSize() * ratio);
  filled.setDevicePixelRatio(ratio);
  filled.fill(colour);
  QPainter painter(&filled);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(QRectF(0.5, 0.5, iconSize().width() - 1.0, iconSize().height() - 1.0));
  painter.end();
  setIcon(filled);
}

}  // namespace spectrane
