#include "output/quantitationpicture.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

#include "base/language.h"
#include "modes/quantitation/curvefit.h"
#include "modes/quantitation/curveformula.h"
#include "output/plottexts.h"

namespace spectrane {
namespace {

// All lengths are twips; a point of type is 20 of them.
constexpr int kNumberType = 200;
constexpr int kEquationType = 240;
constexpr int kRaisedType = 160;
constexpr double kLine = 15;
constexpr double kCurveLine = 25;
constexpr double kCurveStep = 30;
constexpr double kTick = 60;
constexpr double kSmallTick = 35;
constexpr double kNumberGap = 40;
// Between the axis of absorbances and the top of its numbers, and from their line to that of the title.
constexpr double kNumbersBelow = 75;
constexpr double kTitleBelow = 235;
constexpr double kTitleEdge = 60;
// A cross reaches so far to the left of its point and above it, and so far to the right and below.
constexpr double kArmBefore = 45;
constexpr double kArmAfter = 60;
constexpr double kRing = 120;
constexpr double kEquationLeft = 600;
constexpr double kEquationDown = 2.2;
// The equation shrinks to this before it is cut.
constexpr double kSmallestEquation = 0.6;

constexpr double kHintMargin = 300;
constexpr double kHintGap = 80;

/// No device is larger; places beyond would not fit the integers of the toolkit [units of the surface].
constexpr double kLongestSurface = 1e6;

QString FromText(const std::string& text) {
  return QString::fromStdString(text);
}

QString ConcTitle(const QuaOption& qua) {
  const QString unit = FromText(qua.ConcUnit).simplified();
  const QString title = FromText(Text(kConcTitle)).trimmed();
  return unit.isEmpty() ? title : title + u'(' + unit + u')';
}

/// Paints one picture; the painter's units are twips from the surface's corner.
class Sketch {
 public:
  Sketch(QPainter& painter, const QuantitationPlot& plot, const QuaOption& qua, const DisplayFormats& formats,
         const QuantitationPictureOptions& options);

  void Scales();
  void Curve(bool accepted);
  void Marks();
  void Equation(const QColor& ink);
  void Remark(const QString& words);
  /// On the whole of the surface, its words above `bottom`.
  void Hint(const QuantitationHint& hint, double bottom);
  /// Upper edge of the equation's line.
  double EquationTop() const;

 private:
  QFont Type(int size) const;
  void Fill(const QRectF& rect, const QColor& colour) { painter_.fillRect(rect, colour); }
  void AbsScale(const QFontMetricsF& metrics);
  void ConcScale(const QFontMetricsF& metrics);
  void Titles(const QFontMetricsF& metrics);
  void Stress(const QPointF& at);

  QPainter& painter_;
  const QuantitationPlot& plot_;
  const QuaOption& qua_;
  const DisplayFormats& formats_;
  const QuantitationPictureOptions& options_;
  const QuantitationColours& colours_;
  /// kLine in whole dots of the device, so that all thin lines are equally thick.
  double line_ = kLine;
};

Sketch::Sketch(QPainter& painter, const QuantitationPlot& plot, const QuaOption& qua,
               const DisplayFormats& formats, const QuantitationPictureOptions& options)
    : painter_(painter),
      plot_(plot),
      qua_(qua),
      formats_(formats),
      options_(options),
      colours_(options.Colours) {
  const double dots = std::sqrt(std::abs(painter.deviceTransform().determinant()));
  if (dots > 0) line_ = std::max(1.0, std::round(kLine * dots)) / dots;
}

QFont Sketch::Type(int size) const {
  QFont font = options_.Font;
  font.setPixelSize(size);
  // Letters keep their distances at every scale.
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

void Sketch::Scales() {
  painter_.setRenderHint(QPainter::Antialiasing, false);
  painter_.setFont(Type(kNumberType));
  painter_.setPen(colours_.Ink);
  const QFontMetricsF metrics(painter_.font());
  AbsScale(metrics);
  ConcScale(metrics);
  Titles(metrics);
  const QRectF area = plot_.Area();
  Fill({area.left(), area.top(), area.width() + line_, line_}, colours_.Ink);
  Fill({area.left(), area.bottom(), area.width() + line_, line_}, colours_.Ink);
  Fill({area.left(), area.top(), line_, area.height() + line_}, colours_.Ink);
  Fill({area.right(), area.top(), line_, area.height() + line_}, colours_.Ink);
}

void Sketch::AbsScale(const QFontMetricsF& metrics) {
  const QRectF area = plot_.Area();
  double free = 0;
  for (const AxisTick& tick : AxisTicks(plot_.Axes().AbsTop)) {
    const double x = plot_.TwipsAt({tick.Value, 0}).x();
    const bool numbered = !tick.Number.empty();
    if (numbered) Fill({x, area.top(), line_, area.height()}, colours_.Grid);
    Fill({x, area.bottom(), line_, numbered ? kTick : kSmallTick}, colours_.Ink);
    const QString number = FromText(tick.Number);
    const double width = metrics.horizontalAdvance(number);
    const double left = std::min(x - width / 2, plot_.Size().width() - width);
    if (!numbered || left < free) continue;
    painter_.drawText(QPointF(left, area.bottom() + kNumbersBelow + metrics.ascent()), number);
    free = left + width + metrics.horizontalAdvance(u'0');
  }
}

void Sketch::ConcScale(const QFontMetricsF& metrics) {
  const QRectF area = plot_.Area();
  double free = plot_.Size().height();
  for (const AxisTick& tick : AxisTicks(plot_.Axes().ConcTop)) {
    const double y = plot_.TwipsAt({0, tick.Value}).y();
    const bool numbered = !tick.Number.empty();
    const double length = numbered ? kTick : kSmallTick;
    if (numbered) Fill({area.left(), y, area.width(), line_}, colours_.Grid);
    Fill({area.left() - length, y, length, line_}, colours_.Ink);
    // Figures have no descenders: they are centred on their own height.
    const double middle = y + metrics.capHeight() / 2;
    if (!numbered || middle > free) continue;
    const QString number = FromText(tick.Number);
    const double right = area.left() - kTick - kNumberGap;
    painter_.drawText(QPointF(right - metrics.horizontalAdvance(number), middle), number);
    free = middle - metrics.height();
  }
}

void Sketch::Titles(const QFontMetricsF& metrics) {
  const QRectF area = plot_.Area();
  const QString across =
      metrics.elidedText(FromText(Text(kAbsTitle)).trimmed(), Qt::ElideRight, area.width());
  const double below = area.bottom() + kNumbersBelow + metrics.ascent() + kTitleBelow;
  painter_.drawText(QPointF(area.center().x() - metrics.horizontalAdvance(across) / 2, below), across);

  const double height = area.height() + kArmAfter;
  const QString upward = metrics.elidedText(ConcTitle(qua_), Qt::ElideMiddle, height);
  painter_.save();
  painter_.translate(kTitleEdge + metrics.ascent(), area.center().y());
  painter_.rotate(-90);
  painter_.drawText(QPointF(-metrics.horizontalAdvance(upward) / 2, 0), upward);
  painter_.restore();
}

void Sketch::Curve(bool accepted) {
  // Between two points the curve is off by less than a hundredth of a dot; twice as many would take twice the
  // time.
  const int count = static_cast<int>(std::clamp(plot_.Area().width() / kCurveStep, 2.0, 4000.0));
  QPolygonF line;
  line.reserve(count + 1);
  for (const CurvePoint& point : CurvePoints(qua_, plot_.Axes(), count + 1))
    line.append(plot_.TwipsAt(point));
  painter_.save();
  painter_.setClipRect(plot_.Area().adjusted(0, 0, line_, line_), Qt::IntersectClip);
  painter_.setRenderHint(QPainter::Antialiasing);
  // Through the middle of the thin lines, as the crosses are.
  painter_.translate(line_ / 2, line_ / 2);
  QPen pen(colours_.Curve, kCurveLine, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin);
  if (!accepted) pen.setDashPattern({6, 4});
  painter_.setPen(pen);
  painter_.drawPolyline(line);
  painter_.restore();
}

void Sketch::Marks() {
  const std::vector<CurveMark> marks = CurveMarks(qua_, plot_.Axes());
  for (const CurveMark& mark : marks) {
    if (mark.Row == options_.SelectedRow) Stress(plot_.TwipsAt(mark.At));
  }
  painter_.setRenderHint(QPainter::Antialiasing, false);
  constexpr double kArms = kArmBefore + kArmAfter;
  for (const CurveMark& mark : marks) {
    const QPointF at = plot_.TwipsAt(mark.At);
    Fill({at.x() - kArmBefore, at.y(), kArms, line_}, colours_.Mark);
    Fill({at.x(), at.y() - kArmBefore, line_, kArms}, colours_.Mark);
  }
}

void Sketch::Stress(const QPointF& at) {
  painter_.setRenderHint(QPainter::Antialiasing);
  const QPointF middle = at + QPointF(line_ / 2, line_ / 2);
  painter_.setBrush(Qt::NoBrush);
  QPen guide(colours_.Selected, kLine);
  guide.setDashPattern({2, 4});
  painter_.setPen(guide);
  const QRectF area = plot_.Area();
  if (middle.y() + kRing < area.bottom())
    painter_.drawLine(middle + QPointF(0, kRing), QPointF(middle.x(), area.bottom()));
  if (middle.x() - kRing > area.left())
    painter_.drawLine(middle - QPointF(kRing, 0), QPointF(area.left(), middle.y()));
  painter_.setPen(QPen(colours_.Selected, kCurveLine));
  painter_.drawEllipse(middle, kRing, kRing);
}

double Sketch::EquationTop() const {
  const double line = QFontMetricsF(Type(kEquationType)).height();
  return std::min(plot_.Area().bottom() + kEquationDown * line, plot_.Size().height() - line);
}

void Sketch::Equation(const QColor& ink) {
  const std::vector<FormulaPart> parts =
      CurveFormula(qua_.FittingMethod, CoefficientsInForce(qua_), CorrelationInForce(qua_), formats_);
  const QFont plain = Type(kEquationType);
  const QFont raised = Type(kRaisedType);
  const QFontMetricsF plainMetrics(plain);
  const QFontMetricsF raisedMetrics(raised);
  double width = 0;
  for (const FormulaPart& part : parts)
    width += (part.Raised ? raisedMetrics : plainMetrics).horizontalAdvance(FromText(part.Text));
  const double room = plot_.Size().width() - kEquationLeft - kTitleEdge;
  const double shrink = std::clamp(room / std::max(width, 1.0), kSmallestEquation, 1.0);

  painter_.save();
  painter_.setPen(ink);
  painter_.translate(kEquationLeft, EquationTop() + plainMetrics.ascent());
  painter_.scale(shrink, shrink);
  if (width * shrink > room) {
    // A figure that is cut off would be a wrong one; dots say that there is more.
    painter_.setFont(plain);
    painter_.drawText(QPointF(),
                      plainMetrics.elidedText(FromText(FormulaText(parts)), Qt::ElideRight, room / shrink));
  } else {
    double x = 0;
    for (const FormulaPart& part : parts) {
      const QString text = FromText(part.Text);
      painter_.setFont(part.Raised ? raised : plain);
      painter_.drawText(QPointF(x, part.Raised ? -plainMetrics.capHeight() * 0.6 : 0), text);
      x += (part.Raised ? raisedMetrics : plainMetrics).horizontalAdvance(text);
    }
  }
  painter_.restore();
}

void Sketch::Remark(const QString& words) {
  const QRectF area = plot_.Area();
  QFont font = Type(kNumberType);
  font.setBold(true);
  const QFontMetricsF metrics(font);
  painter_.setFont(font);
  painter_.setPen(colours_.Ink);
  painter_.drawText(QPointF(area.left(), area.top() - kArmAfter - metrics.descent()),
                    metrics.elidedText(words, Qt::ElideRight, area.width()));
}

void Sketch::Hint(const QuantitationHint& hint, double bottom) {
  Fill(QRectF(QPointF(), plot_.Size()), colours_.HintPaper);
  const QRectF room = QRectF(0, 0, plot_.Size().width(), bottom)
                          .marginsRemoved(QMarginsF(kHintMargin, kTitleEdge, kHintMargin, kTitleEdge));
  if (room.width() <= 0 || room.height() <= 0) return;
  constexpr int kFlags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
  QFont bold = Type(kEquationType);
  bold.setBold(true);
  const QFont plain = Type(kNumberType);
  const QRectF head = QFontMetricsF(bold).boundingRect(room, kFlags, hint.Headline);
  const QRectF advice = QFontMetricsF(plain).boundingRect(room, kFlags, hint.Advice);
  const bool both =
      head.height() + kHintGap + advice.height() <= room.height() && advice.width() <= room.width();
  if (head.height() > room.height() || head.width() > room.width()) return;
  const double height = head.height() + (both ? kHintGap + advice.height() : 0);
  const double top = room.center().y() - height / 2;
  painter_.setPen(colours_.HintInk);
  painter_.setFont(bold);
  painter_.drawText(QRectF(room.left(), top, room.width(), head.height()), kFlags, hint.Headline);
  if (!both) return;
  painter_.setFont(plain);
  painter_.drawText(QRectF(room.left(), top + head.height() + kHintGap, room.width(), advice.height()),
                    kFlags, hint.Advice);
}

}  // namespace

QuantitationPlot PlotOf(const QuaOption& qua, const QRectF& surface, double twipsPerUnit) {
  return {surface, twipsPerUnit, AxesOf(qua)};
}

void PaintQuantitation(QPainter& painter, const QRectF& surface, const QuaOption& qua,
                       const DisplayFormats& formats, const QuantitationPictureOptions& options) {
  const auto drawable = [](double length) { return length > 0 && length < kLongestSurface; };
  if (!drawable(surface.width()) || !drawable(surface.height())) return;
  const QuantitationState state = StateOf(qua);
  const bool accepted = state == QuantitationState::Curve;
  const QuantitationPlot plot = PlotOf(qua, surface, options.TwipsPerUnit);
  painter.save();
  painter.setClipRect(surface, Qt::IntersectClip);
  painter.translate(surface.topLeft());
  painter.scale(1 / plot.TwipsPerUnit(), 1 / plot.TwipsPerUnit());
  Sketch sketch(painter, plot, qua, formats, options);
  const QuantitationHint hint = HintOf(qua);
  if (state == QuantitationState::OffScale) {
    sketch.Hint(hint, sketch.EquationTop());
    sketch.Equation(options.Colours.HintInk);
  } else if (!HasEquation(state)) {
    sketch.Hint(hint, plot.Size().height());
  } else if (!plot.Drawable()) {
    sketch.Hint({QStringLiteral("Too small for the curve"), QStringLiteral("Make the window larger.")},
                plot.Size().height());
  } else {
    painter.fillRect(QRectF(QPointF(), plot.Size()), options.Colours.Paper);
    sketch.Scales();
    // A fit that left nothing behind has no curve: its line would lie on the axis.
    const bool left = CoefficientsInForce(qua) != std::array<double, 4>{};
    if (accepted || left) sketch.Curve(accepted);
    sketch.Marks();
    sketch.Equation(options.Colours.Ink);
    if (!accepted) sketch.Remark(hint.Headline);
  }
  painter.restore();
}

}  // namespace spectrane
