#include "modes/windows/qualinepic.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <cmath>

#include "app/ground/words.h"
#include "base/numbers.h"
#include "link/function.h"
#include "output/plottexts.h"
#include "output/quantitationpicture.h"

namespace spectrane {
namespace {

/// So near to a mark the pointer is on it [pixels].
constexpr double kReach = 7;
/// Characters of a name that a tool tip shows.
constexpr qsizetype kNameLength = 60;

double Distance(const QPointF& from, const QPointF& to) {
  return std::hypot(to.x() - from.x(), to.y() - from.y());
}

QString Line(const QString& title, const QString& value) {
  return QStringLiteral("<tr><td>%1&nbsp;</td><td align=\"right\">%2</td></tr>")
      .arg(title.toHtmlEscaped(), value.toHtmlEscaped());
}

}  // namespace

QuaLinePic::QuaLinePic(const QuantitationDocument& document, const DisplayFormats& formats, QWidget* parent)
    : QWidget(parent), document_(document), formats_(formats) {
  setObjectName(QStringLiteral("QuaLinePic"));
  setAccessibleName(QStringLiteral("Standard curve"));
  setMouseTracking(true);
  // The picture covers all of it.
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  Describe();
}

QSize QuaLinePic::sizeHint() const {
  return {560, 380};
}

QSize QuaLinePic::minimumSizeHint() const {
  return {200, 150};
}

void QuaLinePic::Forget() {
  picture_ = QPixmap();
  update();
}

void QuaLinePic::Redraw() {
  Describe();
  Forget();
}

void QuaLinePic::ShowSelected(std::int32_t row) {
  if (row == selectedRow_) return;
  selectedRow_ = row;
  Forget();
}

void QuaLinePic::Describe() {
  const QuaOption& qua = document_.Option();
  const QuantitationState state = StateOf(qua);
  const QuantitationHint hint = HintOf(qua);
  QStringList words;
  if (!hint.Headline.isEmpty()) words << hint.Headline + u'.' << hint.Advice;
  if (HasEquation(state)) words << QString::fromStdString(FormulaText(document_.Formula(formats_)));
  if (state == QuantitationState::Curve || state == QuantitationState::Rejected) {
    const auto marks = static_cast<int>(CurveMarks(qua, AxesOf(qua)).size());
    words << (marks == 1 ? QStringLiteral("1 standard") : QStringLiteral("%1 standards").arg(marks));
  }
  setAccessibleDescription(words.join(u'\n'));
}

void QuaLinePic::paintEvent(QPaintEvent* /*event*/) {
  const double dots = devicePixelRatioF();
  const QSize size = (QSizeF(this->size()) * dots).toSize();
  if (picture_.size() != size || picture_.devicePixelRatio() != dots) {
    picture_ = QPixmap(size);
    picture_.setDevicePixelRatio(dots);
    QuantitationPictureOptions options;
    options.Font = font();
    options.SelectedRow = selectedRow_;
    options.Colours.HintPaper = palette().color(QPalette::Base);
    options.Colours.HintInk = palette().color(QPalette::Text);
    QPainter painter(&picture_);
    PaintQuantitation(painter, rect(), document_.Option(), formats_, options);
  }
  QPainter(this).drawPixmap(0, 0, picture_);
}

std::optional<QuantitationPlot> QuaLinePic::Plot() const {
  const QuantitationState state = StateOf(document_.Option());
  if (state != QuantitationState::Curve && state != QuantitationState::Rejected) return {};
  const QuantitationPlot plot = PlotOf(document_.Option(), rect(), kScreenTwips);
  if (!plot.Drawable()) return {};
  return plot;
}

std::optional<CurveMark> QuaLinePic::MarkAt(const QPointF& place) const {
  const std::optional<QuantitationPlot> plot = Plot();
  if (!plot) return {};
  std::optional<CurveMark> nearest;
  double reach = kReach;
  for (const CurveMark& mark : CurveMarks(document_.Option(), plot->Axes())) {
    const double distance = Distance(place, plot->At(mark.At));
    if (distance >= reach) continue;
    reach = distance;
    nearest = mark;
  }
  return nearest;
}

QString QuaLinePic::MarkWords(const CurveMark& mark) const {
  const QuaOption& qua = document_.Option();
  const QString unit = QString::fromStdString(qua.ConcUnit).simplified();
  const auto conc = [&unit](double value) {
    const QString text = QString::fromStdString(FormatValue(value)).trimmed();
    return unit.isEmpty() ? text : text + u' ' + unit;
  };
  QString name = QString::fromStdString(qua.StandardName[static_cast<std::size_t>(mark.Row)]).simplified();
  if (name.size() > kNameLength) name = name.left(kNameLength) + QChar(0x2026);
  const QString number = QStringLiteral("Standard %1").arg(mark.Row + 1);
  const double curve = document_.CalcConc(mark.Standard.Abs);
  return QStringLiteral("<p><b>%1</b></p><table>")
             .arg((name.isEmpty() ? number : number + QStringLiteral(": ") + name).toHtmlEscaped()) +
         Line(Words(kAbsTitle).trimmed(),
              QString::fromStdString(Format(mark.Standard.Abs, formats_.AbsFormat))) +
         Line(Words(kConcTitle).trimmed(), conc(mark.Standard.Conc)) +
         Line(QStringLiteral("Curve"), conc(curve)) +
         Line(QStringLiteral("Residual"), conc(mark.Standard.Conc - curve)) + QStringLiteral("</table>");
}

void QuaLinePic::PointAway() {
  if (!pointed_) return;
  pointed_ = false;
  unsetCursor();
  emit PointedAway();
}

void QuaLinePic::mouseMoveEvent(QMouseEvent* event) {
  const std::optional<QuantitationPlot> plot = Plot();
  if (!plot || !plot->AreaOnSurface().contains(event->position())) {
    PointAway();
    return;
  }
  pointed_ = true;
  setCursor(MarkAt(event->position()) ? Qt::PointingHandCursor : Qt::CrossCursor);
  const CurvePoint value = plot->ValueAt(event->position());
  emit PointedAt(value.Abs, value.Conc);
}

void QuaLinePic::mousePressEvent(QMouseEvent* event) {
  const std::optional<CurveMark> mark = MarkAt(event->position());
  if (!mark || event->button() != Qt::LeftButton) {
    QWidget::mousePressEvent(event);
    return;
  }
  emit MarkChosen(mark->Row);
}

void QuaLinePic::leaveEvent(QEvent* event) {
  PointAway();
  QWidget::leaveEvent(event);
}

void QuaLinePic::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) Forget();
  QWidget::changeEvent(event);
}

QString QuaLinePic::TipAt(const QPointF& place) const {
  const QuaOption& qua = document_.Option();
  if (!HasEquation(StateOf(qua))) return {};
  if (const std::optional<CurveMark> mark = MarkAt(place)) return MarkWords(*mark);
  // Whole, where a narrow picture cuts it.
  if (place.y() > PlotOf(qua, rect(), kScreenTwips).AreaOnSurface().bottom())
    return QString::fromStdString(FormulaText(document_.Formula(formats_)));
  const QuantitationHint hint = HintOf(qua);
  return hint.Headline.isEmpty() ? QString() : hint.Headline + QStringLiteral(".\n") + hint.Advice;
}

bool QuaLinePic::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto* const help = static_cast<QHelpEvent*>(event);
  const QString tip = TipAt(help->pos());
  // An empty text hides the tip of another place.
  QToolTip::showText(help->globalPos(), tip, this);
  event->setAccepted(!tip.isEmpty());
  return true;
}

}  // namespace spectrane
