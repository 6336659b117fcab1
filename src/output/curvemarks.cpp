#include "output/curvemarks.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

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
/// More marks are a crowd: their texts stand at once or not at all.
constexpr std::size_t kCrowd = 200;
/// Columns that are looked at to keep texts off the curves.
constexpr std::int64_t kMostColumns = 2000000;

/// What the curves take up of each column of dots.
class CurveHull {
 public:
  explicit CurveHull(const std::vector<CurveTrace>& traces) {
    for (const CurveTrace& trace : traces) {
      for (const QRect& run : trace.Runs) {
        Dot(run.left(), run.top());
        Dot(run.left(), run.bottom());
      }
      for (const QLine& crossing : trace.Crossings) Segment(crossing.p1(), crossing.p2());
    }
  }
  bool IsFree(const QRectF& place) const {
    const auto first = static_cast<std::size_t>(std::max(place.left(), 0.0));
    const auto end = std::min(static_cast<std::size_t>(std::max(place.right(), 0.0)) + 1, columns_.size());
    for (std::size_t x = first; x < end; ++x) {
      if (columns_[x].Top <= place.bottom() && columns_[x].Bottom >= place.top()) return false;
    }
    return true;
  }

 private:
  struct Span {
    double Top = std::numeric_limits<double>::max();
    double Bottom = std::numeric_limits<double>::lowest();
  };

  void Segment(const QPoint& from, const QPoint& to) {
    const int length = std::abs(to.x() - from.x());
    if ((budget_ -= length + 1) < 0) return;
    for (int i = 0; i <= length; ++i) {
      const double part = static_cast<double>(i) / std::max(length, 1);
      Dot(to.x() >= from.x() ? from.x() + i : from.x() - i, from.y() + part * (to.y() - from.y()));
    }
  }
  void Dot(int x, double y) {
    const auto column = static_cast<std::size_t>(std::max(x, 0));
    if (column >= columns_.size()) columns_.resize(column + 1);
    columns_[column].Top = std::min(columns_[column].Top, y);
    columns_[column].Bottom = std::max(columns_[column].Bottom, y);
  }

  std::vector<Span> columns_;
  std::int64_t budget_ = kMostColumns;
};

/// The marks of one kind that are seen, the outstanding ones first so that they find room for their texts.
std::vector<const PointMark*> SeenMarks(const CurveView& view, const CurveDots& dots, bool valleys) {
  std::vector<const PointMark*> seen;
  for (const PointMark& mark : view.Marks) {
    if (mark.Valley == valleys && dots.Holds(mark.X) && !std::isnan(mark.Y)) seen.push_back(&mark);
  }
  std::stable_sort(seen.begin(), seen.end(), [valleys](const PointMark* one, const PointMark* other) {
    return valleys ? one->Y < other->Y : one->Y > other->Y;
  });
  return seen;
}

class MarkPainter {
 public:
  MarkPainter(QPainter& painter, const CurveView& view, const CurveGeometry& geometry, const CurveDots& dots,
              const QFont& font, int line)
      : painter_(painter),
        dots_(dots),
        metrics_(font),
        line_(line),
        digit_(metrics_.horizontalAdvance(u'0')),
        places_(BoundsOf(view, geometry, dots)) {
    painter_.setFont(font);
  }

  /// All of one kind and colour. Texts keep off them unless it is a crowd.
  void Tips(const std::vector<const PointMark*>& marks, bool asImages, bool crowd);
  /// `hull` is null in a crowd.
  void Texts(const std::vector<const PointMark*>& marks, const CurveHull* hull);

 private:
  struct TextPlace {
    QRectF Rect;
    /// Away from its mark, with a line to it.
    bool Led = false;
  };

  static QRectF BoundsOf(const CurveView& view, const CurveGeometry& geometry, const CurveDots& dots);
  double Dots(double twips) const { return twips * dots_.DotsPerTwip(); }
  QPoint PlaceOf(const PointMark& mark) const { return {dots_.X(mark.X), dots_.Y(mark.Y)}; }
  QRectF TipRect(const PointMark& mark) const;
  void Triangle(QPainter& painter, const QRectF& rect, bool valley) const;
  /// Where the text of that width may stand, the best place first.
  std::vector<TextPlace> Candidates(const PointMark& mark, double width, bool crowd) const;
  void Print(const PointMark& mark, const TextPlace& place);

  QPainter& painter_;
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

QRectF MarkPainter::TipRect(const PointMark& mark) const {
  const QPointF at = QPointF(PlaceOf(mark)) + QPointF(line_ / 2.0, line_ / 2.0);
  const double top = mark.Valley ? at.y() + Dots(kTipGap) : at.y() - Dots(kTipGap + kTipHeight);
  return {at.x() - Dots(kTipHalf), top, 2 * Dots(kTipHalf), Dots(kTipHeight)};
}

void MarkPainter::Triangle(QPainter& painter, const QRectF& rect, bool valley) const {
  const double tip = valley ? rect.top() : rect.bottom();
  const double base = valley ? rect.bottom() : rect.top();
  const QPointF corners[] = {{rect.center().x(), tip}, {rect.left(), base}, {rect.right(), base}};
  painter.drawConvexPolygon(corners, 3);
}

void MarkPainter::Tips(const std::vector<const PointMark*>& marks, bool asImages, bool crowd) {
  if (marks.empty()) return;
  // One image for all: they stand on whole dots, so each has the same pixels.
  const QPoint first = PlaceOf(*marks.front());
  const QRectF shape = TipRect(*marks.front()).translated(-first);
  const QRect bounds = shape.toAlignedRect();
  QImage image;
  if (asImages) {
    image = QImage(bounds.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(painter_.brush());
    Triangle(painter, shape.translated(-bounds.topLeft()), marks.front()->Valley);
  }
  std::set<std::pair<int, int>> taken;
  for (const PointMark* const mark : marks) {
    const QPoint at = PlaceOf(*mark);
    if (!taken.emplace(at.x(), at.y()).second) continue;
    if (!crowd) places_.Block(TipRect(*mark));
    if (asImages) {
      painter_.drawImage(at + bounds.topLeft(), image);
    } else {
      Triangle(painter_, TipRect(*mark), mark->Valley);
    }
  }
}

std::vector<MarkPainter::TextPlace> MarkPainter::Candidates(const PointMark& mark, double width,
                                                            bool crowd) const {
  const QPointF at = PlaceOf(mark);
  const double height = metrics_.height();
  const double away = Dots(kTipGap + kTipHeight + kTextGap);
  const double left = at.x() - width / 2;
  std::vector<TextPlace> places;
  for (int level = 0; level <= (crowd ? 0 : kTextLevels); ++level) {
    const double far = away + level * height;
    places.push_back({{left, mark.Valley ? at.y() + far : at.y() - far - height, width, height}, level > 0});
  }
  if (crowd) return places;
  const double beside = std::max(mark.Valley ? at.y() + Dots(kTipGap) : at.y() - Dots(kTipGap) - height, 0.0);
  const double side = Dots(kTipHalf + kTextSide);
  places.push_back({{at.x() + side, beside, width, height}});
  places.push_back({{at.x() - side - width, beside, width, height}});
  // A valley near the bottom has its text above the curve.
  if (mark.Valley) places.push_back({{left, at.y() - Dots(kTextGap) - height, width, height}});
  return places;
}

void MarkPainter::Print(const PointMark& mark, const TextPlace& place) {
  painter_.drawText(QPointF(place.Rect.left(), place.Rect.top() + metrics_.ascent()), mark.Text);
  if (!place.Led) return;
  const QRectF tip = TipRect(mark);
  const double from = mark.Valley ? tip.bottom() : place.Rect.bottom();
  const double to = mark.Valley ? place.Rect.top() : tip.top();
  const int left = PlaceOf(mark).x() - line_ / 2;
  painter_.fillRect(QRectF(left, from, line_, to - from), painter_.pen().color());
}

void MarkPainter::Texts(const std::vector<const PointMark*>& marks, const CurveHull* hull) {
  for (const PointMark* const mark : marks) {
    if (mark->Text.isEmpty()) continue;
    if (hull == nullptr) {
      // Most texts of a crowd find no room; the width of figures tells that without laying them out.
      const double rough = digit_ * static_cast<double>(mark->Text.size()) / 2;
      if (!places_.IsFree(Candidates(*mark, rough, true).front().Rect)) continue;
    }
    const std::vector<TextPlace> places =
        Candidates(*mark, metrics_.horizontalAdvance(mark->Text), hull == nullptr);
    bool printed = false;
    for (const bool clear : {true, false}) {
      for (const TextPlace& place : places) {
        if (printed || (clear && hull != nullptr && !hull->IsFree(place.Rect)) || !places_.Take(place.Rect))
          continue;
        Print(*mark, place);
        printed = true;
      }
    }
  }
}

}  // namespace

void PaintMarks(QPainter& painter, const CurveView& view, const CurveGeometry& geometry,
                const CurveDots& dots, const std::vector<CurveTrace>& curves, const QFont& font, int line,
                bool pixels) {
  if (view.Marks.empty()) return;
  painter.save();
  MarkPainter marks(painter, view, geometry, dots, font, line);
  const std::vector<const PointMark*> seen[] = {SeenMarks(view, dots, false), SeenMarks(view, dots, true)};
  const bool crowd = seen[0].size() + seen[1].size() > kCrowd;
  std::optional<CurveHull> hull;
  if (!crowd) hull.emplace(curves);
  const QColor colours[] = {view.Colours.Peak, view.Colours.Valley};
  painter.setRenderHint(QPainter::Antialiasing);
  for (const int kind : {0, 1}) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours[kind]);
    marks.Tips(seen[kind], pixels, crowd);
  }
  for (const int kind : {0, 1}) {
    painter.setPen(colours[kind]);
    marks.Texts(seen[kind], hull ? &*hull : nullptr);
  }
  painter.restore();
}

}  // namespace spectrane
