#pragma once

#include <QColor>
#include <QString>

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "output/curvegeometry.h"

namespace spectrane {

/// An axis: what it measures and what is written at it.
struct CurveAxis {
  AxisKind Kind = AxisKind::Abs;
  QString Title;
  /// Pattern of the numbers at its divisions; empty for the usual one of its kind.
  std::string TickPattern;
  /// Pattern of the label at the cursor; empty for the usual one of its kind.
  std::string CursorPattern;
};

/// One curve. The points are not copied: they must stay where they are for as long as the view is in use.
struct CurveLine {
  /// Of one length; of two lengths the shorter counts. Rising, falling or neither; values that are no numbers
  /// are gaps.
  std::span<const double> X;
  std::span<const double> Y;
  QColor Colour = QColor(255, 0, 0);
  Qt::PenStyle Pattern = Qt::SolidLine;
  bool Visible = true;
  /// For those who hear the picture instead of seeing it.
  QString Name;
  std::size_t Count() const { return std::min(X.size(), Y.size()); }
};

/// A peak or a valley on a curve, with its number or its values above (peak) or below it (valley). Where many
/// stand close together, texts that find no room are left out.
struct PointMark {
  double X = 0;
  double Y = 0;
  bool Valley = false;
  QString Text;
};

struct CurveColours {
  QColor Paper = Qt::white;
  /// Frame, grid, numbers and titles.
  QColor Scale = QColor(0, 0, 255);
  /// Lines of the cursor.
  QColor Mark = QColor(128, 0, 128);
  QColor Peak = QColor(255, 0, 128);
  QColor Valley = QColor(0, 128, 0);
};

/// Below these sizes of the surface [twips] the frame stands alone, without curves.
struct CurveRoom {
  double Width = 2700;
  double Height = 2000;
  /// Whether one of the two being too small is enough; otherwise both must be.
  bool Either = true;
};

/// All that a chart window has to tell its curve picture.
struct CurveView {
  CurveAxis X{AxisKind::Wavelength, {}, {}, {}};
  CurveAxis Y{AxisKind::Abs, {}, {}, {}};
  /// What is seen now.
  CurveScale Scale;
  CurveMargins Margins;
  CurveRoom Room;
  bool Grid = true;
  /// A line above the plot; empty for none.
  QString Caption;
  CurveColours Colours;
  /// Drawn in this order, the last on top.
  std::vector<CurveLine> Lines;
  std::vector<PointMark> Marks;
  /// Wheel and drag go no farther; without a value as far as FarthestRange() of the axis.
  std::optional<AxisRange> FarthestX;
  std::optional<AxisRange> FarthestY;
};

}  // namespace spectrane
