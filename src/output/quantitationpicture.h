#pragma once

#include <QColor>
#include <QFont>

#include "base/displayformats.h"
#include "files/quafile.h"
#include "output/quantitationhint.h"
#include "output/quantitationplot.h"

class QPainter;

namespace spectrane {

struct QuantitationColours {
  QColor Paper = Qt::white;
  /// Axes, numbers, titles and the equation.
  QColor Ink = QColor(0x20, 0x20, 0x20);
  /// Lines behind the curve.
  QColor Grid = QColor(0xe4, 0xe6, 0xea);
  QColor Curve = QColor(0x00, 0x4a, 0xad);
  /// Standards.
  QColor Mark = QColor(255, 0, 0);
  /// Around the standard that is selected.
  QColor Selected = QColor(0x20, 0x20, 0x20);
  /// The hint where there is nothing to draw.
  QColor HintPaper = Qt::white;
  QColor HintInk = QColor(0x20, 0x20, 0x20);
};

struct QuantitationPictureOptions {
  /// Size of a unit of the painter [twips]: 15 on a screen, 1440 divided by the dots an inch on a printer.
  double TwipsPerUnit = kScreenTwips;
  /// Family of the type; sizes are those of the picture.
  QFont Font;
  /// Row of the table of standards to stress; -1 for none.
  std::int32_t SelectedRow = -1;
  QuantitationColours Colours;
};

/// The plot that PaintQuantitation() draws on that surface.
QuantitationPlot PlotOf(const QuaOption& qua, const QRectF& surface, double twipsPerUnit);

/// Paints the curve of a quantitation, or a hint in its place, on the whole of `surface` and nowhere else:
/// axes, the curve held inside them, a cross for each standard, and the equation below, which stands below
/// the hint of a curve without a scale too. The painter comes back as it was.
void PaintQuantitation(QPainter& painter, const QRectF& surface, const QuaOption& qua,
                       const DisplayFormats& formats, const QuantitationPictureOptions& options);

}  // namespace spectrane
