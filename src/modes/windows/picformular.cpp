#include "modes/windows/picformular.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>
#include <vector>

namespace spectrane {
namespace {

constexpr int kMargin = 10;
/// Size of a lowered index, for the size of the words, and how far it is lowered, for their height.
constexpr double kIndexSize = 0.75;
constexpr double kIndexDrop = 0.22;
/// Height of a line, for that of the words.
constexpr double kLineShare = 1.7;

/// Words, or an index that stands lower.
struct Piece {
  QString Text;
  bool Lowered = false;
};

struct Formula {
  const char* Name;
  std::vector<Piece> Pieces;
};

/// (first - reference) times a factor less (second - reference) times another.
std::vector<Piece> Difference(const QString& first, const QString& second, const QString& reference,
                              const char* firstFactor, const char* secondFactor) {
  return {{QStringLiteral("=(Abs")},
          {first, true},
          {QStringLiteral("-Abs")},
          {reference, true},
          {QStringLiteral(")x%1-(Abs").arg(QLatin1String(firstFactor))},
          {second, true},
          {QStringLiteral("-Abs")},
          {reference, true},
          {QStringLiteral(")x%1").arg(QLatin1String(secondFactor))}};
}

std::array<Formula, 2> FormulasOf(const std::array<QString, 3>& wavelengths) {
  const auto& [first, second, reference] = wavelengths;
  return {{{"DNA  ", Difference(first, second, reference, "F1", "F2")},
           {"Protein", Difference(second, first, reference, "F3", "F4")}}};
}

QFont IndexFont(const QFont& font) {
  QFont small(font);
  small.setPointSizeF(font.pointSizeF() * kIndexSize);
  return small;
}

/// Draws the pieces from `x` on the line at `baseline`, or only measures them; gives where they end.
double DrawPieces(QPainter* painter, const QFont& font, const std::vector<Piece>& pieces, double x,
                  double baseline) {
  const double drop = QFontMetricsF(font).height() * kIndexDrop;
  for (const Piece& piece : pieces) {
    const QFont& own = piece.Lowered ? IndexFont(font) : font;
    if (painter) {
      painter->setFont(own);
      painter->drawText(QPointF(x, baseline + (piece.Lowered ? drop : 0)), piece.Text);
    }
    x += QFontMetricsF(own).horizontalAdvance(piece.Text);
  }
  return x;
}

double NamesWidth(const QFont& font) {
  const QFontMetricsF metrics(font);
  return std::max(metrics.horizontalAdvance(QStringLiteral("Protein")),
                  metrics.horizontalAdvance(QStringLiteral("DNA  "))) +
         metrics.averageCharWidth();
}

}  // namespace

PicFormular::PicFormular(QWidget* parent) : QWidget(parent) {
  wavelengths_.fill(QStringLiteral("?"));
  setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

void PicFormular::ShowWavelengths(const std::array<QString, 3>& wavelengths) {
  wavelengths_ = wavelengths;
  setAccessibleDescription(PlainText());
  update();
}

QString PicFormular::PlainText() const {
  QStringList lines;
  for (const Formula& formula : FormulasOf(wavelengths_)) {
    QString line = QLatin1String(formula.Name);
    for (const Piece& piece : formula.Pieces) line += piece.Text;
    lines.append(line);
  }
  return lines.join(u'\n');
}

QSize PicFormular::sizeHint() const {
  const QString widest = QStringLiteral("1000.0");
  double width = 0;
  for (const Formula& formula : FormulasOf({widest, widest, widest})) {
    width = std::max(width, DrawPieces(nullptr, font(), formula.Pieces, NamesWidth(font()), 0));
  }
  const double height = 2 * QFontMetricsF(font()).height() * kLineShare;
  return {static_cast<int>(width) + 2 * kMargin + 1, static_cast<int>(height) + kMargin};
}

void PicFormular::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::Mid));
  painter.setBrush(palette().color(QPalette::Base));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  painter.setPen(palette().color(QPalette::Text));
  const QFontMetricsF metrics(font());
  const double lineHeight = (height() - kMargin) / 2.0;
  double baseline = kMargin / 2.0 + (lineHeight - metrics.height()) / 2 + metrics.ascent();
  for (const Formula& formula : FormulasOf(wavelengths_)) {
    painter.setFont(font());
    painter.drawText(QPointF(kMargin, baseline), QLatin1String(formula.Name));
    DrawPieces(&painter, font(), formula.Pieces, kMargin + NamesWidth(font()), baseline);
    baseline += lineHeight;
  }
}

void PicFormular::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) updateGeometry();
  QWidget::changeEvent(event);
}

}  // namespace spectrane
