#include "output/windows/piccurve.h"

#include <QLabel>
#include <QPainter>
#include <QPaintEvent>
#include <QStyleOption>

#include <algorithm>
#include <cmath>

#include "base/numbers.h"
#include "output/quantitationplot.h"

namespace spectrane {
namespace {

/// From the pointer to the labels [pixels].
constexpr int kLabelAway = 10;

QLabel* CursorLabel(QWidget* parent, const char* name, const char* accessibleName) {
  auto* const label = new QLabel(parent);
  label->setObjectName(QLatin1String(name));
  label->setAccessibleName(QLatin1String(accessibleName));
  label->setBackgroundRole(QPalette::ToolTipBase);
  label->setForegroundRole(QPalette::ToolTipText);
  label->setAutoFillBackground(true);
  label->setMargin(2);
  label->setAttribute(Qt::WA_TransparentForMouseEvents);
  label->hide();
  return label;
}

QString NumberOn(const CurveAxis& axis, double value) {
  const std::string_view pattern = axis.CursorPattern.empty() ? TickPattern(axis.Kind) : axis.CursorPattern;
  return QString::fromStdString(Format(value, pattern));
}

QString RangeWords(const CurveAxis& axis, const AxisRange& range) {
  return QStringLiteral("%1 %2 to %3")
      .arg(axis.Title.trimmed(), NumberOn(axis, range.Low), NumberOn(axis, range.High))
      .trimmed();
}

}  // namespace

PicCurve::PicCurve(QWidget* parent)
    : QWidget(parent),
      wavelengthLabel_(CursorLabel(this, "WavelengthLabel", "Value across at the cursor")),
      testDataLabel_(CursorLabel(this, "TestDataLabel", "Value upward at the cursor")) {
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

CurvePictureOptions PicCurve::Options() const {
  CurvePictureOptions options;
  options.Font = font();
  return options;
}

void PicCurve::Forget() {
  picture_ = QPixmap();
  update();
}

void PicCurve::Describe() {
  QStringList words{RangeWords(view_.X, view_.Scale.X), RangeWords(view_.Y, view_.Scale.Y)};
  for (const CurveLine& line : view_.Lines) {
    if (!line.Visible) continue;
    const QString points = QStringLiteral("%1 points").arg(line.Count());
    words << (line.Name.isEmpty() ? points : line.Name + QStringLiteral(": ") + points);
  }
  const auto valleys = std::count_if(view_.Marks.begin(), view_.Marks.end(),
                                     [](const PointMark& mark) { return mark.Valley; });
  if (!view_.Marks.empty()) {
    const auto peaks = static_cast<std::ptrdiff_t>(view_.Marks.size()) - valleys;
    words << QStringLiteral("%1 peaks, %2 valleys").arg(peaks).arg(valleys);
  }
  setAccessibleDescription(words.join(u'\n'));
}

void PicCurve::SetView(CurveView view) {
  view_ = std::move(view);
  HideCursor();
  // Another point may stand in its place now.
  Point({});
  Describe();
  Forget();
}

void PicCurve::SetScale(const CurveScale& scale) {
  view_.Scale = scale;
  if (walked_ && Shown(*walked_)) {
    StandOn(*walked_);
  } else {
    HideCursor();
  }
  Describe();
  Forget();
}

void PicCurve::SetMarks(std::vector<PointMark> marks) {
  view_.Marks = std::move(marks);
  Describe();
  Forget();
}

void PicCurve::Extend(std::size_t line, std::span<const double> x, std::span<const double> y) {
  if (line >= view_.Lines.size()) return;
  const std::size_t first = view_.Lines[line].Count();
  view_.Lines[line].X = x;
  view_.Lines[line].Y = y;
  if (picture_.isNull()) return;
  QPainter painter(&picture_);
  const QRectF touched = PaintSegments(painter, rect(), view_, line, first, Options());
  if (!touched.isNull()) update(touched.toAlignedRect());
}

CurveGeometry PicCurve::Geometry() const {
  return GeometryOf(view_, size(), kScreenTwips);
}

QImage PicCurve::Image() const {
  return CurveImage(view_, size(), Options(), devicePixelRatioF());
}

void PicCurve::SetZoomSelecting(bool on) {
  if (on == zoomSelecting_) return;
  zoomSelecting_ = on;
  corner_.reset();
  HideCursor();
  if (on) {
    setCursor(Qt::CrossCursor);
  } else {
    unsetCursor();
  }
  emit ZoomSelectingChanged(on);
}

void PicCurve::HideCursor() {
  if (cursor_) update();
  cursor_.reset();
  walked_.reset();
  wavelengthLabel_->hide();
  testDataLabel_->hide();
}

void PicCurve::ShowCursor(const QPointF& twips, double x, double y) {
  cursor_ = twips;
  wavelengthLabel_->setText(NumberOn(view_.X, x));
  testDataLabel_->setText(NumberOn(view_.Y, y));
  PlaceLabels();
  update();
}

void PicCurve::PlaceLabels() {
  wavelengthLabel_->adjustSize();
  testDataLabel_->adjustSize();
  const QPoint at = (*cursor_ / kScreenTwips).toPoint();
  const int widest = std::max(wavelengthLabel_->width(), testDataLabel_->width());
  const int height = wavelengthLabel_->height() + testDataLabel_->height();
  const bool leftward = at.x() + kLabelAway + widest > width();
  const int top =
      at.y() + kLabelAway + height > this->height() ? at.y() - kLabelAway - height : at.y() + kLabelAway;
  const auto place = [&](QLabel* label, int y) {
    const int x = leftward ? at.x() - kLabelAway - label->width() : at.x() + kLabelAway;
    label->move(std::max(x, 0), std::max(y, 0));
    label->show();
  };
  place(wavelengthLabel_, top);
  place(testDataLabel_, std::max(top, 0) + wavelengthLabel_->height());
}

void PicCurve::paintEvent(QPaintEvent* /*event*/) {
  const double dots = devicePixelRatioF();
  const QSize size = (QSizeF(this->size()) * dots).toSize();
  if (picture_.size() != size || picture_.devicePixelRatio() != dots) {
    picture_ = QPixmap(size);
    picture_.setDevicePixelRatio(dots);
    QPainter painter(&picture_);
    PaintCurve(painter, rect(), view_, Options());
  }
  QPainter painter(this);
  painter.drawPixmap(0, 0, picture_);
  if (cursor_) {
    const QPointF at = *cursor_ / kScreenTwips;
    const QRectF area = Geometry().Area();
    const QRectF plot(area.topLeft() / kScreenTwips, area.size() / kScreenTwips);
    painter.fillRect(QRectF(plot.left(), std::round(at.y()), plot.width(), 1), view_.Colours.Mark);
    painter.fillRect(QRectF(std::round(at.x()), plot.top(), 1, plot.height()), view_.Colours.Mark);
  }
  if (corner_) {
    painter.setCompositionMode(QPainter::CompositionMode_Difference);
    painter.setPen(QPen(Qt::white, 1));
    painter.drawRect(QRectF(*corner_, otherCorner_).normalized());
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  }
  if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.backgroundColor = view_.Colours.Paper;
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
  }
}

void PicCurve::resizeEvent(QResizeEvent* event) {
  // The place on the screen is another one now.
  if (walked_ && Shown(*walked_)) {
    StandOn(*walked_);
  } else {
    HideCursor();
  }
  QWidget::resizeEvent(event);
}

void PicCurve::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) Forget();
  QWidget::changeEvent(event);
}

}  // namespace spectrane
