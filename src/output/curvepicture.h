#pragma once

#include <QFont>
#include <QImage>

#include "output/curveview.h"

class QPainter;

namespace spectrane {

struct CurvePictureOptions {
  /// Size of a unit of the painter [twips]: 15 on a screen, 1440 divided by the dots an inch on a printer.
  double TwipsPerUnit = 15.0;
  /// Family of the type; sizes are those of the picture.
  QFont Font;
};

/// The geometry of the picture that PaintCurve() draws on that surface.
CurveGeometry GeometryOf(const CurveView& view, const QSizeF& surface, double twipsPerUnit);

/// Paints the picture on the whole of `surface` and nowhere else: paper, frame, grid, numbers, titles, curves
/// and marks; on a surface with no room for a frame "Error!." alone. For the screen, picture files, the
/// clipboard and printers alike. On pixels a curve is reduced by column, and shows the same pixels as when
/// drawn segment by segment; on paper it is one line. The painter comes back as it was.
void PaintCurve(QPainter& painter, const QRectF& surface, const CurveView& view,
                const CurvePictureOptions& options);

/// The picture by itself, `dots` pixels of it for one of the screen's. Null for an empty size.
QImage CurveImage(const CurveView& view, const QSize& size, const CurvePictureOptions& options,
                  double dots = 1);

/// Draws the segments of the curve `line` that end in the points from `first` on, over a picture that has the
/// earlier ones. Returns what of the surface was touched.
QRectF PaintSegments(QPainter& painter, const QRectF& surface, const CurveView& view, std::size_t line,
                     std::size_t first, const CurvePictureOptions& options);

}  // namespace spectrane
