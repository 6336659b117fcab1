#pragma once

#include <QPixmap>
#include <QWidget>

#include <optional>

#include "base/displayformats.h"
#include "modes/quantitation/quantitationdocument.h"
#include "output/quantitationplot.h"

namespace spectrane {

/// The curve of a quantitation, with a read-out under the pointer. White paper in every palette: what is seen
/// is what is printed and copied.
class QuaLinePic : public QWidget {
  Q_OBJECT

 public:
  /// Both must outlive the widget. Redraw() shows what has changed in them.
  QuaLinePic(const QuantitationDocument& document, const DisplayFormats& formats, QWidget* parent = nullptr);

  void Redraw();
  /// Stresses the standard of that row of the table, from 0; -1 for none.
  void ShowSelected(std::int32_t row);
  std::int32_t SelectedRow() const { return selectedRow_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  /// The pointer is over the plot, at this absorbance and concentration.
  void PointedAt(double absorbance, double concentration);
  /// It has left the plot.
  void PointedAway();
  /// The mark of that row of the table was clicked.
  void MarkChosen(std::int32_t row);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  /// The plot of a curve or of rejected standards; nothing while a hint is shown in its place.
  std::optional<QuantitationPlot> Plot() const;
  /// The mark under the place, or the nearest of several.
  std::optional<CurveMark> MarkAt(const QPointF& place) const;
  QString MarkWords(const CurveMark& mark) const;
  QString TipAt(const QPointF& place) const;
  /// The next paint paints anew.
  void Forget();
  void PointAway();
  void Describe();

  const QuantitationDocument& document_;
  const DisplayFormats& formats_;
  std::int32_t selectedRow_ = -1;
  bool pointed_ = false;
  /// The finished picture; null when it has to be painted anew.
  QPixmap picture_;
};

}  // namespace spectrane
