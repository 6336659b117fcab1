#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include "app/ground/drawing.h"

namespace spectrane {

// Drawings that were painted when the program was built: a folder for each, in it one picture for each size,
// named by its width [pixels]. An icon in four colours is kept as shares of them, so that it follows the
// palette like its drawing: how much accent, go and halt colour a dot takes stands in red, green and blue,
// how much of all in alpha, each of 255. What is left of alpha is ink.

/// The icon that `shares` stand for, in these colours.
QImage ColoredShares(const QImage& shares, const IconColors& colors);

/// From the smallest picture in `folder` that is as large as `size`, or the largest one.
QImage StoredDrawing(const QString& folder, QSize size, const IconColors* colors);

/// Size of the smallest picture in `folder`; empty when there is none.
QSize StoredDrawingSize(const QString& folder);

}  // namespace spectrane
