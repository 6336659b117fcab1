#include "output/curvepicture.h"

#include <QFontMetricsF>
#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>

#include "output/clogfont.h"
#include "output/curvemarks.h"
#include "output/curvetrace.h"

namespace spectrane {
namespace {

// All lengths are twips; a point of type is 20 of them.
constexpr double kScaleType = 200;
constexpr double kErrorType = 220;
constexpr double kErrorLeft = 100;
constexpr double kThinLine = 15;
constexpr double kInnerTick = 90;
constexpr double kLabelLeft = 50;
constexpr double kLabelBelow = 60;
constexpr double kTitleDown = 400;
constexpr double kUprightEdge = 60;
constexpr double kCaptionUp = 80;

/// No device is larger; places beyond would not fit the integers of the toolkit [units of the surface].
constexpr double kWidestSurface = 1e6;

bool HasSize(const QRectF& surface) {
  const auto good = [](double length) { return length > 0 && length < kWidestSurface; };
  return good(surface.width()) && good(surface.height());
}

/// Paints one picture; the painter's units are dots of the device from the surface's corner.
class CurveSketch {
 public:
  CurveSketch(QPainter& painter, const QRectF& surface, const CurveView& view,
              const CurvePictureOptions& options);
  ~CurveSketch() { painter_.restore(); }
  CurveSketch(const CurveSketch&) = delete;
  CurveSketch& operator=(const CurveSketch&) = delete;

  const CurveGeometry& Geometry() const { return geometry_; }
  void Error();
  void Scale();
  void Curves();
  void Marks();
  /// Returns the dots touched.
  QRect Segments(const CurveLine& line, std::size_t first);
  QRectF OnSurface(const QRect& dots) const;

 private:
  QFont Type(double twips) const;
  int At(double twips) const { return static_cast<int>(std::floor(twips * dotsPerTwip_ + 0.5)); }
  void Frame();
  void Across(const QFontMetricsF& metrics);
  void Upward(const QFontMetricsF& metrics);
  void GridLine(const QLine& line);
  void PrintVerticalText(const QString& text, const QFontMetricsF& metrics);
  bool HasRoomForCurves() const;
  bool OnPixels() const;

  QPainter& painter_;
  QRectF surface_;
  const CurveView& view_;
  const CurvePictureOptions& options_;
  double twipsPerUnit_;
  double dotsPerTwip_ = 1;
  CurveGeometry geometry_;
  /// A thin line, in whole dots.
  int line_ = 1;
};

CurveSketch::CurveSketch(QPainter& painter, const QRectF& surface, const CurveView& view,
                         const CurvePictureOptions& options)
    : painter_(painter),
      surface_(surface),
      view_(view),
      options_(options),
      twipsPerUnit_(options.TwipsPerUnit > 0 ? options.TwipsPerUnit : CurvePictureOptions().TwipsPerUnit),
      geometry_(GeometryOf(view, surface.size(), twipsPerUnit_)) {
  painter_.save();
  const double dotsPerUnit = std::sqrt(std::abs(painter_.deviceTransform().determinant()));
  const double scale = std::isfinite(dotsPerUnit) && dotsPerUnit > 0 ? dotsPerUnit : 1;
  dotsPerTwip_ = scale / twipsPerUnit_;
  line_ = std::max(1, At(kThinLine));
  painter_.translate(surface.topLeft());
  painter_.scale(1 / scale, 1 / scale);
  // Whole dots of the picture are whole dots of the device.
  const QTransform device = painter_.deviceTransform();
  if (device.type() <= QTransform::TxScale && device.m11() > 0 && device.m22() > 0)
    painter_.translate(std::round(device.dx()) - device.dx(), std::round(device.dy()) - device.dy());
  painter_.setRenderHint(QPainter::Antialiasing, false);
}

QFont CurveSketch::Type(double twips) const {
  QFont font = options_.Font;
  font.setPixelSize(std::max(1, At(twips)));
  return font;
}

bool CurveSketch::OnPixels() const {
  return painter_.paintEngine() != nullptr && painter_.paintEngine()->type() == QPaintEngine::Raster;
}

void CurveSketch::Error() {
  const QFont font = Type(kErrorType);
  const QFontMetricsF metrics(font);
  painter_.setFont(font);
  painter_.setPen(Qt::red);
  const double middle = geometry_.Size().height() / 2 * dotsPerTwip_;
  painter_.drawText(QPointF(At(kErrorLeft), middle + metrics.capHeight() / 2), QStringLiteral("Error!."));
}

void CurveSketch::Frame() {
  const QRectF area = geometry_.Area();
  const int left = At(area.left()) - line_;
  const int top = At(area.top()) - line_;
  const int width = At(area.right()) + line_ - left;
  const int height = At(area.bottom()) + line_ - top;
  const int thick = 2 * line_;
  const QColor& colour = view_.Colours.Scale;
  painter_.fillRect(left, top, width, thick, colour);
  painter_.fillRect(left, top + height - thick, width, thick, colour);
  painter_.fillRect(left, top, thick, height, colour);
  painter_.fillRect(left + width - thick, top, thick, height, colour);
}

void CurveSketch::GridLine(const QLine& line) {
  QPen pen(view_.Colours.Scale, line_, Qt::SolidLine, Qt::FlatCap);
  pen.setDashPattern({1, 2});
  painter_.setPen(pen);
  painter_.drawLine(line);
  painter_.setPen(view_.Colours.Scale);
}

void CurveSketch::Upward(const QFontMetricsF& metrics) {
  const QRectF area = geometry_.Area();
  const std::string_view pattern =
      view_.Y.TickPattern.empty() ? TickPattern(view_.Y.Kind) : view_.Y.TickPattern;
  const int left = At(area.left());
  const int tick = At(kInnerTick);
  const double titleEnd = At(kUprightEdge) + metrics.height();
  double free = geometry_.Size().height() * dotsPerTwip_;
  for (const double value : TickValues(view_.Y.Kind, geometry_.Scale().Y)) {
    const int y = At(geometry_.YAt(value));
    if (view_.Grid) GridLine({left, y, At(area.right()), y});
    painter_.fillRect(left, y - line_ / 2, tick, line_, view_.Colours.Scale);
    const QString number = QString::fromStdString(TickText(value, pattern));
    // Figures have no descenders: they are centred on their own height.
    const double base = y + line_ / 2.0 + metrics.capHeight() / 2;
    const double x = At(area.left() - kLabelLeft) - metrics.horizontalAdvance(number);
    if (base > free || x < titleEnd) continue;
    painter_.drawText(QPointF(x, base), number);
    free = base - metrics.height();
  }
}

void CurveSketch::Across(const QFontMetricsF& metrics) {
  const QRectF area = geometry_.Area();
  const std::string_view pattern =
      view_.X.TickPattern.empty() ? TickPattern(view_.X.Kind) : view_.X.TickPattern;
  const int bottom = At(area.bottom());
  const int tick = At(kInnerTick);
  const double end = geometry_.Size().width() * dotsPerTwip_;
  double free = 0;
  for (const double value : TickValues(view_.X.Kind, geometry_.Scale().X)) {
    const int x = At(geometry_.XAt(value));
    if (view_.Grid) GridLine({x, At(area.top()), x, bottom});
    painter_.fillRect(x - line_ / 2, bottom - tick, line_, tick, view_.Colours.Scale);
    const QString number = QString::fromStdString(TickText(value, pattern));
    const double width = metrics.horizontalAdvance(number);
    const double left = x + line_ / 2.0 - width / 2;
    if (left < free || left + width > end) continue;
    painter_.drawText(QPointF(left, At(area.bottom() + kLabelBelow) + metrics.ascent()), number);
    free = left + width + metrics.horizontalAdvance(u'0') / 2;
  }
}

void CurveSketch::PrintVerticalText(const QString& text, const QFontMetricsF& metrics) {
  const double middle = At(geometry_.Area().center().y());
  CLogFont(painter_.font(), 90).Print(painter_, {At(kUprightEdge) + metrics.ascent(), middle}, text);
}

void CurveSketch::Scale() {
  const QFont font = Type(kScaleType);
  const QFontMetricsF metrics(font);
  painter_.setFont(font);
  painter_.setPen(view_.Colours.Scale);
  const QRectF area = geometry_.Area();
  if (geometry_.Drawable()) {
    Upward(metrics);
    Across(metrics);
  }
  Frame();
  const double width = geometry_.Size().width() * dotsPerTwip_;
  const QString across = metrics.elidedText(view_.X.Title, Qt::ElideRight, width - 2 * At(kUprightEdge));
  painter_.drawText(QPointF(At(area.center().x()) - metrics.horizontalAdvance(across) / 2,
                            At(area.bottom() + kTitleDown) + metrics.ascent()),
                    across);
  const double height = geometry_.Size().height() * dotsPerTwip_;
  PrintVerticalText(metrics.elidedText(view_.Y.Title, Qt::ElideRight, height), metrics);
  if (!view_.Caption.isEmpty()) {
    painter_.drawText(QPointF(At(area.left()), At(area.top() - kCaptionUp)),
                      metrics.elidedText(view_.Caption, Qt::ElideRight, width - At(area.left())));
  }
}

bool CurveSketch::HasRoomForCurves() const {
  const bool narrow = geometry_.Size().width() < view_.Room.Width;
  const bool low = geometry_.Size().height() < view_.Room.Height;
  return geometry_.Drawable() && !(view_.Room.Either ? narrow || low : narrow && low);
}

QRect CurveSketch::Segments(const CurveLine& line, std::size_t first) {
  if (!line.Visible || !HasRoomForCurves()) return {};
  const CurveDots dots(geometry_, dotsPerTwip_);
  QRect touched;
  if (!OnPixels() || line.Pattern != Qt::SolidLine) {
    painter_.setRenderHint(QPainter::Antialiasing, !OnPixels());
    painter_.setPen(QPen(line.Colour, line_, line.Pattern, Qt::FlatCap, Qt::RoundJoin));
    for (const QPolygon& chain : ChainsOf(line, dots, first)) {
      painter_.drawPolyline(chain);
      touched |= chain.boundingRect();
    }
    painter_.setRenderHint(QPainter::Antialiasing, false);
  } else {
    CurveTrace trace = TraceOf(line, dots, first);
    painter_.setPen(QPen(line.Colour, line_));
    painter_.drawLines(trace.Crossings.data(), static_cast<int>(trace.Crossings.size()));
    for (QRect& run : trace.Runs) {
      run = QRect(run.left() - line_ / 2, run.top() - line_ / 2, line_, run.height() + line_ - 1);
      touched |= run;
    }
    for (const QLine& crossing : trace.Crossings) touched |= QRect(crossing.p1(), crossing.p2()).normalized();
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(line.Colour);
    painter_.drawRects(trace.Runs.data(), static_cast<int>(trace.Runs.size()));
  }
  return touched.isNull() ? touched : touched.adjusted(-line_, -line_, line_, line_);
}

void CurveSketch::Curves() {
  for (const CurveLine& line : view_.Lines) Segments(line, 1);
}

void CurveSketch::Marks() {
  if (!HasRoomForCurves()) return;
  PaintMarks(painter_, view_, geometry_, CurveDots(geometry_, dotsPerTwip_), Type(kScaleType), line_);
}

QRectF CurveSketch::OnSurface(const QRect& dots) const {
  const double unitsPerDot = 1 / (dotsPerTwip_ * twipsPerUnit_);
  return {surface_.topLeft() + QPointF(dots.topLeft()) * unitsPerDot, QSizeF(dots.size()) * unitsPerDot};
}

}  // namespace

CurveGeometry GeometryOf(const CurveView& view, const QSizeF& surface, double twipsPerUnit) {
  return {surface * twipsPerUnit, view.Margins, view.Scale};
}

void PaintCurve(QPainter& painter, const QRectF& surface, const CurveView& view,
                const CurvePictureOptions& options) {
  if (!HasSize(surface)) return;
  painter.save();
  painter.setClipRect(surface, Qt::IntersectClip);
  painter.fillRect(surface, view.Colours.Paper);
  {
    CurveSketch sketch(painter, surface, view, options);
    if (sketch.Geometry().TooSmall()) {
      sketch.Error();
    } else {
      sketch.Scale();
      sketch.Curves();
      sketch.Marks();
    }
  }
  painter.restore();
}

QImage CurveImage(const CurveView& view, const QSize& size, const CurvePictureOptions& options, double dots) {
  QImage image((QSizeF(size) * dots).toSize(), QImage::Format_RGB32);
  if (image.isNull()) return image;
  image.setDevicePixelRatio(dots);
  image.fill(view.Colours.Paper);
  QPainter painter(&image);
  PaintCurve(painter, QRectF(QPointF(), QSizeF(size)), view, options);
  return image;
}

QRectF PaintSegments(QPainter& painter, const QRectF& surface, const CurveView& view, std::size_t line,
                     std::size_t first, const CurvePictureOptions& options) {
  if (!HasSize(surface) || line >= view.Lines.size()) return {};
  CurveSketch sketch(painter, surface, view, options);
  const QRect dots = sketch.Segments(view.Lines[line], first);
  return dots.isNull() ? QRectF() : sketch.OnSurface(dots);
}

}  // namespace spectrane
