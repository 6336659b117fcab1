#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

namespace spectrane {

/// What the four colours that the icons are written in stand for at one paint.
struct IconColors {
  QColor Ink;     ///< strokes
  QColor Accent;  ///< measured things: curves, beams, marks
  QColor Go;      ///< starts, adds, connects
  QColor Halt;    ///< stops, removes, closes
};

/// The colours that the icons are written in.
IconColors WrittenColors();

/// A drawing among the program's resources, by its name without ending (":/icons/open"), as large as `size`
/// [pixels] at its own proportions, on nothing. `colors` stand in for those that it is written in; without
/// them it is drawn as written. Null for a name or a size that is none.
///
/// The drawings are SVG files. Where the toolkit cannot read those, the program has pictures of them instead
/// (storeddrawing.h).
QImage Drawing(const QString& name, QSize size, const IconColors* colors);

/// Whether there is a drawing of that name.
bool HasDrawing(const QString& name);

/// The size that a drawing was made for, or another one of its proportions; empty when there is none.
QSizeF DrawingSize(const QString& name);

}  // namespace spectrane
