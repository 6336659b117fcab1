#include "output/curvetrace.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace spectrane {
namespace {

/// A stretch of points in one column.
struct Column {
  int X = 0;
  int High = 0;
  int Low = 0;
  int LastY = 0;
  int Points = 0;

  void Begin(const QPoint& at) {
    X = at.x();
    High = Low = LastY = at.y();
    Points = 1;
  }
  void Add(int y) {
    High = std::min(High, y);
    Low = std::max(Low, y);
    LastY = y;
    ++Points;
  }
  /// A single point is the end of lines only, and the toolkit's steep lines may end a dot short of it.
  bool HasRun() const { return Points > 1; }
  bool Covers(const QLine& line) const {
    return HasRun() && std::min(line.y1(), line.y2()) >= High && std::max(line.y1(), line.y2()) <= Low;
  }
};

/// Collects the columns of one curve.
class Tracer {
 public:
  explicit Tracer(CurveTrace& trace) : trace_(trace) {}

  void Point(const QPoint& at) {
    if (!open_) {
      column_.Begin(at);
      open_ = true;
      points_ = 1;
      return;
    }
    ++points_;
    if (at.x() == column_.X) {
      column_.Add(at.y());
      return;
    }
    const QLine crossing(QPoint(column_.X, column_.LastY), at);
    Close();
    column_.Begin(at);
    pending_ = crossing;
    pendingCovered_ = std::abs(crossing.dx()) == 1 && before_.Covers(crossing);
    crossing_ = true;
  }
  void Break() {
    if (open_ && points_ > 1) Close();
    open_ = crossing_ = false;
  }

 private:
  /// The column is whole: now it shows whether the crossing into it needs a line.
  void Close() {
    if (crossing_ && !(pendingCovered_ && column_.Covers(pending_))) trace_.Crossings.push_back(pending_);
    if (column_.HasRun())
      trace_.Runs.emplace_back(column_.X, column_.High, 1, column_.Low - column_.High + 1);
    before_ = column_;
    crossing_ = false;
  }

  CurveTrace& trace_;
  Column column_;
  Column before_;
  QLine pending_;
  bool pendingCovered_ = false;
  bool crossing_ = false;
  bool open_ = false;
  int points_ = 0;
};

/// Neighbours that are merged: more have less in common.
constexpr std::size_t kMostMerged = 8;
/// Dots high; less is not worth a rectangle of its own.
constexpr int kLeastMerged = 4;

QRect Widened(const QRect& run, int width) {
  return {run.left() - width / 2, run.top() - width / 2, width, run.height() + width - 1};
}

/// The dots between two rows, both included.
void AddRows(std::vector<QRect>& rects, const QRect& run, int top, int bottom) {
  if (top <= bottom) rects.emplace_back(QPoint(run.left(), top), QPoint(run.right(), bottom));
}

/// The points of the curve that have a place, and where it is broken.
template <typename OnPoint, typename OnBreak>
void Walk(const CurveLine& line, const CurveDots& dots, std::size_t first, OnPoint&& onPoint,
          OnBreak&& onBreak) {
  const std::size_t count = line.Count();
  for (std::size_t i = first == 0 ? 0 : first - 1; i < count; ++i) {
    const double x = line.X[i];
    const double y = line.Y[i];
    if (dots.Holds(x) && !std::isnan(y)) {
      onPoint(QPoint(dots.X(x), dots.Y(y)));
    } else {
      onBreak();
    }
  }
  onBreak();
}

/// Keeps of the points of each column those that a line needs.
class Chain {
 public:
  explicit Chain(std::vector<QPolygon>& chains) : chains_(chains) {}

  void Point(const QPoint& at) {
    if (inColumn_ > 0 && at.x() != first_.x()) Flush();
    if (inColumn_ == 0) {
      first_ = high_ = low_ = at;
      highAt_ = lowAt_ = 0;
    } else if (at.y() < high_.y()) {
      high_ = at;
      highAt_ = inColumn_;
    } else if (at.y() > low_.y()) {
      low_ = at;
      lowAt_ = inColumn_;
    }
    last_ = at;
    ++inColumn_;
    ++points_;
  }
  void Break() {
    Flush();
    if (points_ > 1) chains_.push_back(polygon_);
    polygon_.clear();
    points_ = 0;
  }

 private:
  void Flush() {
    if (inColumn_ == 0) return;
    Add(first_);
    Add(highAt_ < lowAt_ ? high_ : low_);
    Add(highAt_ < lowAt_ ? low_ : high_);
    Add(last_);
    inColumn_ = 0;
  }
  void Add(const QPoint& at) {
    if (polygon_.isEmpty() || polygon_.back() != at) polygon_.append(at);
  }

  std::vector<QPolygon>& chains_;
  QPolygon polygon_;
  QPoint first_, high_, low_, last_;
  int highAt_ = 0;
  int lowAt_ = 0;
  int inColumn_ = 0;
  int points_ = 0;
};

}  // namespace

CurveDots::CurveDots(const CurveGeometry& geometry, double dotsPerTwip)
    : dotsPerTwip_(dotsPerTwip),
      start_(geometry.Scale().X.Low),
      end_(geometry.Scale().X.High),
      length_(geometry.Scale().X.Length()),
      width_(geometry.Area().width()),
      left_(geometry.Area().left()),
      low_(geometry.Scale().Y.Low),
      high_(geometry.Scale().Y.High),
      range_(geometry.Scale().Y.Length()),
      height_(geometry.Area().height()),
      topTwips_(geometry.Area().top()),
      top_(At(geometry.Area().top())),
      bottom_(At(geometry.Area().bottom())) {}

int CurveDots::At(double twips) const {
  return static_cast<int>(std::floor(twips * dotsPerTwip_ + 0.5));
}

CurveTrace TraceOf(const CurveLine& line, const CurveDots& dots, std::size_t first) {
  CurveTrace trace;
  Tracer tracer(trace);
  Walk(
      line, dots, first, [&tracer](const QPoint& at) { tracer.Point(at); }, [&tracer] { tracer.Break(); });
  return trace;
}

std::vector<QRect> MergedRuns(const std::vector<QRect>& runs, int width) {
  std::vector<QRect> rects;
  rects.reserve(runs.size() * 2);
  for (std::size_t first = 0; first < runs.size();) {
    QRect common = Widened(runs[first], width);
    std::size_t next = first + 1;
    while (next < runs.size() && next - first < kMostMerged &&
           runs[next].left() == runs[next - 1].left() + 1) {
      const QRect run = Widened(runs[next], width);
      const int top = std::max(common.top(), run.top());
      const int bottom = std::min(common.bottom(), run.bottom());
      if (bottom - top + 1 < kLeastMerged) break;
      common = QRect(QPoint(common.left(), top), QPoint(run.right(), bottom));
      ++next;
    }
    rects.push_back(common);
    if (next - first > 1) {
      for (std::size_t i = first; i < next; ++i) {
        const QRect run = Widened(runs[i], width);
        AddRows(rects, run, run.top(), common.top() - 1);
        AddRows(rects, run, common.bottom() + 1, run.bottom());
      }
    }
    first = next;
  }
  return rects;
}

std::vector<QPolygon> ChainsOf(const CurveLine& line, const CurveDots& dots, std::size_t first) {
  std::vector<QPolygon> chains;
  Chain chain(chains);
  Walk(
      line, dots, first, [&chain](const QPoint& at) { chain.Point(at); }, [&chain] { chain.Break(); });
  return chains;
}

}  // namespace spectrane
