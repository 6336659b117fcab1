// What mouse and keys do on the curve surface.
#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <limits>

#include "app/ground/commands.h"
#include "output/quantitationplot.h"
#include "output/windows/piccurve.h"

namespace spectrane {
namespace {

/// A notch of the wheel, 120 units, takes that much of the view away.
constexpr double kWheelNotch = 0.8;
constexpr double kNotchUnits = 120;
constexpr long kPageSteps = 100;

/// Entries of the popup menu before the new documents; 0 parts the groups.
constexpr int kPopupCommands[] = {kStartTest,      kStopTest,       kSetBlank, kSystemBaseline,
                                  kTestOption,     kCopyPicture,    0,         kSearchPeak,
                                  kPeakValueSetup, kSpectrumSmooth, 0};

QPointF TwipsOf(const QPointF& pixel) {
  return pixel * kScreenTwips;
}

}  // namespace

bool PicCurve::Shown(const PointPlace& place) const {
  if (place.Line >= view_.Lines.size()) return false;
  const CurveLine& line = view_.Lines[place.Line];
  if (!line.Visible || place.Index >= line.Count()) return false;
  const double x = line.X[place.Index];
  return x >= view_.Scale.X.Low && x <= view_.Scale.X.High && !std::isnan(line.Y[place.Index]);
}

std::optional<PicCurve::PointPlace> PicCurve::NearestPoint(const QPointF& pixel) const {
  const CurveGeometry geometry = Geometry();
  const QPointF twips = TwipsOf(pixel);
  if (!geometry.Drawable() || !geometry.Contains(twips)) return {};
  const double pointer = geometry.ValueAtX(twips.x());
  std::optional<PointPlace> nearest;
  double reach = 0;
  for (std::size_t line = 0; line < view_.Lines.size(); ++line) {
    const CurveLine& points = view_.Lines[line];
    std::optional<std::size_t> best;
    for (std::size_t i = 0; i < points.Count(); ++i) {
      const double away = std::abs(points.X[i] - pointer);
      if (best && !(away < std::abs(points.X[*best] - pointer))) continue;
      if (Shown({line, i})) best = i;
    }
    if (!best) continue;
    const double distance =
        std::hypot(geometry.XAt(points.X[*best]) - twips.x(), geometry.YAt(points.Y[*best]) - twips.y());
    if (nearest && distance >= reach) continue;
    nearest = PointPlace{line, *best};
    reach = distance;
  }
  return nearest;
}

void PicCurve::Point(const std::optional<PointPlace>& place) {
  if (place == pointed_) return;
  pointed_ = place;
  if (place) {
    emit PointedAt(place->Line, place->Index);
  } else {
    emit PointedAway();
  }
}

void PicCurve::PlaceCursor(const QPointF& pixel) {
  const CurveGeometry geometry = Geometry();
  const QPointF twips = TwipsOf(pixel);
  if (!geometry.Drawable() || !geometry.Contains(twips)) return;
  walked_.reset();
  ShowCursor(twips, geometry.ValueAtX(twips.x()), geometry.ValueAtY(twips.y()));
}

QPointF PicCurve::InPlot(const QPointF& pixel) const {
  const QRectF area = Geometry().Area();
  const QPointF twips = TwipsOf(pixel);
  return {std::clamp(twips.x(), area.left(), area.right()), std::clamp(twips.y(), area.top(), area.bottom())};
}

void PicCurve::mousePressEvent(QMouseEvent* event) {
  const bool drawable = Geometry().Drawable();
  if (event->button() == Qt::LeftButton && zoomSelecting_ && drawable) {
    corner_ = otherCorner_ = InPlot(event->position()) / kScreenTwips;
    update();
  } else if (event->button() == Qt::LeftButton && !zoomSelecting_) {
    PlaceCursor(event->position());
  } else if (event->button() == Qt::MiddleButton && drawable &&
             Geometry().Contains(TwipsOf(event->position()))) {
    grip_ = Grip{event->position(), view_.Scale};
    setCursor(Qt::ClosedHandCursor);
  }
}

void PicCurve::mouseMoveEvent(QMouseEvent* event) {
  if (grip_) {
    const CurveGeometry geometry = Geometry();
    if (!geometry.Drawable()) return;
    const QPointF by = TwipsOf(event->position() - grip_->From);
    CurveScale scale = grip_->Scale;
    scale.X = Moved(scale.X, -by.x() / geometry.Area().width() * scale.X.Length(), Farthest(true));
    scale.Y = Moved(scale.Y, by.y() / geometry.Area().height() * scale.Y.Length(), Farthest(false));
    if (scale != view_.Scale) emit ScaleChosen(scale);
    return;
  }
  if (corner_) {
    otherCorner_ = InPlot(event->position()) / kScreenTwips;
    update();
  } else if (event->buttons().testFlag(Qt::LeftButton) && !zoomSelecting_) {
    PlaceCursor(event->position());
  }
  Point(NearestPoint(event->position()));
}

void PicCurve::EndRectangle(const QPointF& pixel) {
  const CurveGeometry geometry = Geometry();
  const QPointF from = *corner_ * kScreenTwips;
  const QPointF to = InPlot(pixel);
  const QRectF twips = QRectF(from, to).normalized();
  corner_.reset();
  update();
  SetZoomSelecting(false);
  if (!geometry.Drawable()) return;
  const CurveScale scale = {{geometry.ValueAtX(twips.left()), geometry.ValueAtX(twips.right())},
                            {geometry.ValueAtY(twips.bottom()), geometry.ValueAtY(twips.top())}};
  // Without a width or a height it has no scale.
  if (scale.Drawable()) emit RectangleSelected(scale, (twips.size() / kScreenTwips).toSize());
}

void PicCurve::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    if (corner_) {
      EndRectangle(event->position());
    } else {
      HideCursor();
    }
  } else if (event->button() == Qt::MiddleButton && grip_) {
    grip_.reset();
    if (zoomSelecting_) {
      setCursor(Qt::CrossCursor);
    } else {
      unsetCursor();
    }
  } else if (event->button() == Qt::RightButton) {
    OpenPopup(event->globalPosition().toPoint());
  }
}

void PicCurve::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && !zoomSelecting_) {
    HideCursor();
    emit HomeWanted();
  } else {
    mousePressEvent(event);
  }
}

AxisRange PicCurve::Farthest(bool horizontal) const {
  const std::optional<AxisRange>& given = horizontal ? view_.FarthestX : view_.FarthestY;
  if (given) return *given;
  const AxisKind kind = horizontal ? view_.X.Kind : view_.Y.Kind;
  if (kind != AxisKind::Wavelength && kind != AxisKind::Time) return FarthestRange(kind);
  // As far as there is something to see.
  AxisRange range = horizontal ? view_.Scale.X : view_.Scale.Y;
  for (const CurveLine& line : view_.Lines) {
    for (const double value : horizontal ? line.X : line.Y) {
      if (!std::isfinite(value)) continue;
      range.Low = std::min(range.Low, value);
      range.High = std::max(range.High, value);
    }
  }
  return range;
}

void PicCurve::wheelEvent(QWheelEvent* event) {
  event->accept();
  const CurveGeometry geometry = Geometry();
  const QPointF twips = TwipsOf(event->position());
  const double factor = std::pow(kWheelNotch, event->angleDelta().y() / kNotchUnits);
  if (!geometry.Drawable() || event->angleDelta().y() == 0) return;
  // Beside the plot the wheel turns the axis that is there.
  const QRectF area = geometry.Area();
  const bool across = twips.x() >= area.left() && !event->modifiers().testFlag(Qt::ControlModifier);
  const bool upward = twips.y() <= area.bottom() && !event->modifiers().testFlag(Qt::ShiftModifier);
  const QPointF at = InPlot(event->position());
  CurveScale scale = view_.Scale;
  if (across) scale.X = Zoomed(view_.X.Kind, scale.X, geometry.ValueAtX(at.x()), factor, Farthest(true));
  if (upward) scale.Y = Zoomed(view_.Y.Kind, scale.Y, geometry.ValueAtY(at.y()), factor, Farthest(false));
  if (scale != view_.Scale) emit ScaleChosen(scale);
}

void PicCurve::StandOn(const PointPlace& place) {
  const CurveGeometry geometry = Geometry();
  if (!geometry.Drawable()) return;
  const CurveLine& line = view_.Lines[place.Line];
  const double x = line.X[place.Index];
  const double y = line.Y[place.Index];
  walked_ = place;
  ShowCursor({geometry.XAt(x), geometry.YAt(y)}, x, y);
  Point(place);
}

void PicCurve::Walk(long steps) {
  const std::optional<PointPlace> from = walked_ ? walked_ : pointed_;
  const std::size_t number = from ? from->Line : 0;
  if (number >= view_.Lines.size()) return;
  const CurveLine& line = view_.Lines[number];
  const auto count = static_cast<long>(line.Count());
  if (count == 0) return;
  const bool falling = line.X[line.Count() - 1] < line.X[0];
  const long direction = (steps > 0) != falling ? 1 : -1;
  long left = std::abs(steps);
  // The first step of all enters the curve at the end that it walks away from.
  long at = from ? static_cast<long>(from->Index) : (direction > 0 ? -1 : count);
  std::optional<PointPlace> reached;
  for (long i = at + direction; i >= 0 && i < count && left > 0; i += direction) {
    const PointPlace place{number, static_cast<std::size_t>(i)};
    if (!Shown(place)) continue;
    reached = place;
    --left;
  }
  if (reached) StandOn(*reached);
}

void PicCurve::WalkToLine(int direction) {
  if (!walked_) return;
  const double x = view_.Lines[walked_->Line].X[walked_->Index];
  for (long line = static_cast<long>(walked_->Line) + direction;
       line >= 0 && line < static_cast<long>(view_.Lines.size()); line += direction) {
    const auto number = static_cast<std::size_t>(line);
    const CurveLine& points = view_.Lines[number];
    std::optional<std::size_t> best;
    for (std::size_t i = 0; i < points.Count(); ++i) {
      if (best && !(std::abs(points.X[i] - x) < std::abs(points.X[*best] - x))) continue;
      if (Shown({number, i})) best = i;
    }
    if (!best) continue;
    StandOn({number, *best});
    return;
  }
}

void PicCurve::keyPressEvent(QKeyEvent* event) {
  constexpr long kAll = std::numeric_limits<std::int32_t>::max();
  switch (event->key()) {
    case Qt::Key_Left:
      Walk(-1);
      return;
    case Qt::Key_Right:
      Walk(1);
      return;
    case Qt::Key_PageUp:
      Walk(-kPageSteps);
      return;
    case Qt::Key_PageDown:
      Walk(kPageSteps);
      return;
    case Qt::Key_Home:
      Walk(-kAll);
      return;
    case Qt::Key_End:
      Walk(kAll);
      return;
    case Qt::Key_Up:
      WalkToLine(-1);
      return;
    case Qt::Key_Down:
      WalkToLine(1);
      return;
    case Qt::Key_Escape:
      if (zoomSelecting_) {
        SetZoomSelecting(false);
        update();
        return;
      }
      if (cursor_) {
        HideCursor();
        return;
      }
      break;
    default:
      break;
  }
  QWidget::keyPressEvent(event);
}

void PicCurve::focusInEvent(QFocusEvent* event) {
  update();
  QWidget::focusInEvent(event);
}

void PicCurve::focusOutEvent(QFocusEvent* event) {
  if (walked_) Point({});
  HideCursor();
  update();
  QWidget::focusOutEvent(event);
}

void PicCurve::leaveEvent(QEvent* event) {
  if (!walked_) Point({});
  QWidget::leaveEvent(event);
}

void PicCurve::OpenPopup(const QPoint& global) {
  if (!actionOf_) return;
  auto* const menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("Popup"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [&](int command) {
    if (command == 0) {
      menu->addSeparator();
    } else if (QAction* const action = actionOf_(command)) {
      menu->addAction(action);
    }
  };
  for (const int command : kPopupCommands) add(command);
  for (const int command : kNewFileCommands) add(command);
  menu->popup(global);
}

void PicCurve::contextMenuEvent(QContextMenuEvent* event) {
  // The mouse opens it when the button comes up.
  if (event->reason() == QContextMenuEvent::Keyboard) OpenPopup(mapToGlobal(rect().center()));
  event->accept();
}

}  // namespace spectrane
