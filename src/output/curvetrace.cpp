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

  void Begin(const QPoint& at) {
    X = at.x();
    High = Low = LastY = at.y();
  }
  void Add(int y) {
    High = std::min(High, y);
    Low = std::max(Low, y);
    LastY = y;
  }
  bool Covers(const QLine& line) const {
    return std::min(line.y1(), line.y2()) >= High && std::max(line.y1(), line.y2()) <= Low;
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
    const bool drawn = crossing_ && !(pendingCovered_ && column_.Covers(pending_));
    if (drawn) trace_.Crossings.push_back(pending_);
    // A single dot is the end of the line into the column.
    if (!drawn || column_.High != column_.Low)
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
      height_(geometry.Area().height() / geometry.Scale().Y.Length()),
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

std::vector<QPolygon> ChainsOf(const CurveLine& line, const CurveDots& dots, std::size_t first) {
  std::vector<QPolygon> chains;
  Chain chain(chains);
  Walk(
      line, dots, first, [&chain](const QPoint& at) { chain.Point(at); }, [&chain] { chain.Break(); });
  return chains;
}

}  // namespace spectrane
