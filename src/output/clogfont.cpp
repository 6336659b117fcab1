#include "output/clogfont.h"

#include <QFontMetricsF>
#include <QPainter>

namespace spectrane {

void CLogFont::Print(QPainter& painter, const QPointF& middle, const QString& text) const {
  painter.save();
  painter.setFont(font_);
  painter.translate(middle);
  painter.rotate(-degrees_);
  painter.drawText(QPointF(-QFontMetricsF(font_).horizontalAdvance(text) / 2, 0), text);
  painter.restore();
}

}  // namespace spectrane
