#pragma once

#include <QPixmap>
#include <QWidget>

#include <functional>
#include <optional>

#include "output/curvepicture.h"

class QAction;
class QLabel;

namespace spectrane {

/// The curve surface of the chart windows. A window describes what it wants to see in a CurveView (axes,
/// scale, curves as spans of its own arrays, marks, colours) and hands it over with SetView(); it keeps the
/// home view and the view in force itself. The hand changes nothing here: wheel, drag and rectangle emit the
/// scale that was asked for, and the window answers with SetScale(), or does not. The finished picture is
/// kept; cursor, labels and rectangle are laid over it without drawing it anew. White paper in every palette:
/// what is seen is what is printed and copied.
class PicCurve : public QWidget {
  Q_OBJECT

 public:
  /// A measured point: the curve's place in the view, and the point's in the curve.
  struct PointPlace {
    std::size_t Line = 0;
    std::size_t Index = 0;
    bool operator==(const PointPlace&) const = default;
  };

  explicit PicCurve(QWidget* parent = nullptr);

  /// The spans of its lines must stay valid until the next SetView() or Extend() of that line.
  void SetView(CurveView view);
  const CurveView& View() const { return view_; }
  void SetScale(const CurveScale& scale);
  void SetMarks(std::vector<PointMark> marks);
  /// The curve has these points now; those that it had are unchanged, though they may have moved in memory.
  /// Only the new segments are drawn.
  void Extend(std::size_t line, std::span<const double> x, std::span<const double> y);
  /// Places on the widget, 15 twips a pixel.
  CurveGeometry Geometry() const;

  /// While it is on, the left button selects a rectangle; otherwise it shows the cursor. Ends with the
  /// rectangle or with Esc.
  void SetZoomSelecting(bool on);
  bool ZoomSelecting() const { return zoomSelecting_; }
  /// Cross lines and both labels.
  void HideCursor();
  bool CursorShown() const { return cursor_.has_value(); }

  /// Where the actions of the popup menu come from, by command number; null for one that there is not.
  /// Without it the right button does nothing.
  void SetPopup(std::function<QAction*(int command)> actionOf) { actionOf_ = std::move(actionOf); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  /// The measured point nearest to the pointer, or the one that the arrow keys have reached.
  void PointedAt(std::size_t line, std::size_t index);
  void PointedAway();
  /// Wheel or drag ask for this view.
  void ScaleChosen(const spectrane::CurveScale& scale);
  /// A rectangle was drawn; its edges as values, and its size [pixels].
  void RectangleSelected(const spectrane::CurveScale& scale, const QSize& pixels);
  void ZoomSelectingChanged(bool on);
  /// A double click asks for the home view.
  void HomeWanted();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  /// The next paint paints anew.
  void Forget();

  CurveView view_;
  /// The finished picture; null when it has to be painted anew.
  QPixmap picture_;
  bool zoomSelecting_ = false;
  /// The cross [pixels].
  std::optional<QPointF> cursor_;
  std::function<QAction*(int)> actionOf_;
};

}  // namespace spectrane
