#include "output/windows/piccurve.h"

#include <QEvent>
#include <QPainter>

namespace spectrane {

PicCurve::PicCurve(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("PicCurve"));
  setAccessibleName(QStringLiteral("Curve"));
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  // The picture covers all of it.
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize PicCurve::sizeHint() const {
  return {720, 440};
}

QSize PicCurve::minimumSizeHint() const {
  return {200, 150};
}

void PicCurve::Forget() {
  picture_ = QPixmap();
  update();
}

void PicCurve::SetView(CurveView view) {
  view_ = std::move(view);
  Forget();
}

void PicCurve::SetScale(const CurveScale& scale) {
  view_.Scale = scale;
  Forget();
}

void PicCurve::SetMarks(std::vector<PointMark> marks) {
  view_.Marks = std::move(marks);
  Forget();
}

void PicCurve::Extend(std::size_t line, std::span<const double> x, std::span<const double> y) {
  if (line >= view_.Lines.size()) return;
  const std::size_t first = view_.Lines[line].Count();
  view_.Lines[line].X = x;
  view_.Lines[line].Y = y;
  if (picture_.isNull()) return;
  CurvePictureOptions options;
  options.Font = font();
  QPainter painter(&picture_);
  const QRectF touched = PaintSegments(painter, rect(), view_, line, first, options);
  if (!touched.isNull()) update(touched.toAlignedRect());
}

CurveGeometry PicCurve::Geometry() const {
  return GeometryOf(view_, size(), CurvePictureOptions().TwipsPerUnit);
}

void PicCurve::SetZoomSelecting(bool on) {
  if (on == zoomSelecting_) return;
  zoomSelecting_ = on;
  HideCursor();
  emit ZoomSelectingChanged(on);
}

void PicCurve::HideCursor() {
  cursor_.reset();
  update();
}

void PicCurve::paintEvent(QPaintEvent* /*event*/) {
  const double dots = devicePixelRatioF();
  const QSize size = (QSizeF(this->size()) * dots).toSize();
  if (picture_.size() != size || picture_.devicePixelRatio() != dots) {
    picture_ = QPixmap(size);
    picture_.setDevicePixelRatio(dots);
    CurvePictureOptions options;
    options.Font = font();
    QPainter painter(&picture_);
    PaintCurve(painter, rect(), view_, options);
  }
  QPainter(this).drawPixmap(0, 0, picture_);
}

void PicCurve::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) Forget();
  QWidget::changeEvent(event);
}

}  // namespace spectrane
