#include "output/curvemarks.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace spectrane {
namespace {

// Lengths of a mark [twips]: from the curve to its tip, its height, half its width, and from there to the
// text.
constexpr double kTipGap = 45;
constexpr double kTipHeight = 90;
constexpr double kTipHalf = 60;
constexpr double kTextGap = 25;
constexpr double kTextSide = 40;
/// A text moves away from its mark by so many lines to find room.
constexpr int kTextLevels = 4;

/// One after the other, so that the outstanding ones find room for their texts.
std::vector<std::size_t> OrderOf(const std::vector<PointMark>& marks) {
  std::vector<std::size_t> order(marks.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&marks](std::size_t left, std::size_t right) {
    const PointMark& one = marks[left];
    const PointMark& other = marks[right];
    if (one.Valley != other.Valley) return !one.Valley;
    return one.Valley ? one.Y < other.Y : one.Y > other.Y;
  });
  return order;
}

class MarkPainter {
 public:
  MarkPainter(QPainter& painter, const CurveView& view, const CurveGeometry& geometry, const CurveDots& dots,
              const QFont& font, int line)
      : painter_(painter),
        view_(view),
        dots_(dots),
        metrics_(font),
        line_(line),
        digit_(metrics_.horizontalAdvance(u'0')),
        places_(BoundsOf(view, geometry, dots)) {
    painter_.setFont(font);
  }

  void Tip(const PointMark& mark);
  void Text(const PointMark& mark);

 private:
  static QRectF BoundsOf(const CurveView& view, const CurveGeometry& geometry, const CurveDots& dots);
  double Dots(double twips) const { return twips * dots_.DotsPerTwip(); }
  QPointF PlaceOf(const PointMark& mark) const { return QPointF(dots_.X(mark.X), dots_.Y(mark.Y)); }
  /// Where the text of that width may stand, the best place first.
  std::vector<QRectF> Candidates(const PointMark& mark, double width) const;

  QPainter& painter_;
  const CurveView& view_;
  const CurveDots& dots_;
  QFontMetricsF metrics_;
  int line_;
  double digit_;
  LabelPlaces places_;
};

QRectF MarkPainter::BoundsOf(const CurveView& view, const CurveGeometry& geometry, const CurveDots& dots) {
  const double top = view.Caption.isEmpty() ? 0 : geometry.Area().top();
  const QRectF twips(geometry.Area().left(), top, geometry.Size().width() - geometry.Area().left(),
                     geometry.Area().bottom() - top);
  return {twips.topLeft() * dots.DotsPerTwip(), twips.size() * dots.DotsPerTwip()};
}

void MarkPainter::Tip(const PointMark& mark) {
  const QPointF at = PlaceOf(mark) + QPointF(line_ / 2.0, line_ / 2.0);
  const double up = mark.Valley ? 1 : -1;
  const QPointF tip = at + QPointF(0, up * Dots(kTipGap));
  const QPointF base = tip + QPointF(0, up * Dots(kTipHeight));
  const QPointF half(Dots(kTipHalf), 0);
  const QPointF corners[] = {tip, base - half, base + half};
  painter_.drawConvexPolygon(corners, 3);
}

std::vector<QRectF> MarkPainter::Candidates(const PointMark& mark, double width) const {
  const QPointF at = PlaceOf(mark);
  const double height = metrics_.height();
  const double away = Dots(kTipGap + kTipHeight + kTextGap);
  const double left = at.x() - width / 2;
  std::vector<QRectF> candidates;
  for (int level = 0; level <= kTextLevels; ++level) {
    const double far = away + level * height;
    candidates.emplace_back(left, mark.Valley ? at.y() + far : at.y() - far - height, width, height);
  }
  const double beside = mark.Valley ? at.y() + Dots(kTipGap) : at.y() - Dots(kTipGap) - height;
  candidates.emplace_back(at.x() + Dots(kTipHalf + kTextSide), std::max(beside, 0.0), width, height);
  candidates.emplace_back(at.x() - Dots(kTipHalf + kTextSide) - width, std::max(beside, 0.0), width, height);
  return candidates;
}

void MarkPainter::Text(const PointMark& mark) {
  if (mark.Text.isEmpty()) return;
  // Most texts of a crowd find no room; the width of figures tells that without laying them out.
  const double rough = digit_ * static_cast<double>(mark.Text.size()) / 2;
  const std::vector<QRectF> rooms = Candidates(mark, rough);
  if (std::none_of(rooms.begin(), rooms.end(), [this](const QRectF& room) { return places_.IsFree(room); }))
    return;
  const std::vector<QRectF> candidates = Candidates(mark, metrics_.horizontalAdvance(mark.Text));
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const QRectF& place = candidates[i];
    if (!places_.Take(place)) continue;
    painter_.drawText(QPointF(place.left(), place.top() + metrics_.ascent()), mark.Text);
    const QPointF at = PlaceOf(mark);
    if (i >= 1 && i <= kTextLevels) {
      const double from = at.y() + (mark.Valley ? 1 : -1) * Dots(kTipGap + kTipHeight);
      const double to = mark.Valley ? place.top() : place.bottom();
      painter_.fillRect(QRectF(at.x() - line_ / 2, std::min(from, to), line_, std::abs(to - from)),
                        mark.Valley ? view_.Colours.Valley : view_.Colours.Peak);
    }
    return;
  }
}

}  // namespace

void PaintMarks(QPainter& painter, const CurveView& view, const CurveGeometry& geometry,
                const CurveDots& dots, const QFont& font, int line) {
  if (view.Marks.empty()) return;
  MarkPainter marks(painter, view, geometry, dots, font, line);
  const std::vector<std::size_t> order = OrderOf(view.Marks);
  const auto seen = [&dots](const PointMark& mark) { return dots.Holds(mark.X) && !std::isnan(mark.Y); };
  painter.setRenderHint(QPainter::Antialiasing);
  for (const bool valleys : {false, true}) {
    const QColor& colour = valleys ? view.Colours.Valley : view.Colours.Peak;
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    for (const PointMark& mark : view.Marks) {
      if (mark.Valley == valleys && seen(mark)) marks.Tip(mark);
    }
    painter.setPen(colour);
    for (const std::size_t i : order) {
      const PointMark& mark = view.Marks[i];
      if (mark.Valley == valleys && seen(mark)) marks.Text(mark);
    }
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

}  // namespace spectrane
