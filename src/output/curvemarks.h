#pragma once

#include "output/curvetrace.h"

class QFont;
class QPainter;

namespace spectrane {

/// Draws the marks that lie inside the scale and as many of their texts as find room: the highest peaks
/// first, then the lowest valleys. The painter's units are the dots. `line` is the width of a thin line
/// [dots].
void PaintMarks(QPainter& painter, const CurveView& view, const CurveGeometry& geometry,
                const CurveDots& dots, const QFont& font, int line);

}  // namespace spectrane
