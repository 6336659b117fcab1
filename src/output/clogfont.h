#pragma once

#include <QFont>
#include <QPointF>

class QPainter;
class QString;

namespace spectrane {

/// Type that is written at an angle.
class CLogFont {
 public:
  /// Counterclockwise; 90 runs upward.
  CLogFont(const QFont& font, double degrees) : font_(font), degrees_(degrees) {}

  /// `middle` is the middle of the text's base line. Pen and font of the painter come back as they were.
  void Print(QPainter& painter, const QPointF& middle, const QString& text) const;

 private:
  QFont font_;
  double degrees_;
};

}  // namespace spectrane
