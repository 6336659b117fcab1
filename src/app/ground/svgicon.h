#pragma once

#include <QIconEngine>
#include <QPixmap>
#include <QSize>
#include <QString>

#include "app/ground/drawing.h"

namespace spectrane {

/// The colours for a mode of the application's palette: full strength when normal, nearer to the text colour
/// under the pointer, one colour between text and ground when disabled.
IconColors ColorsFor(QIcon::Mode mode);

/// Icon painted from a drawing among the resources, at the exact size asked for. Nothing is read before the
/// first paint.
class SvgIconEngine : public QIconEngine {
 public:
  enum class Coloring {
    Palette,  ///< the four colours follow the palette
    Own       ///< shown as written, faded when disabled
  };

  /// `name` as Drawing() takes it.
  SvgIconEngine(QString name, Coloring coloring);

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
  /// `size` is in device pixels, as QIcon asks.
  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override;
  QIconEngine* clone() const override;
  QString key() const override;
  bool isNull() override;

 private:
  QString name_;
  Coloring coloring_;
};

}  // namespace spectrane
