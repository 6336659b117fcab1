#pragma once

#include <QItemSelection>
#include <QMimeData>

#include <memory>

namespace spectrane {

/// The rows that a selection touches, or all of them when it is empty, with the headings above: as lines of
/// text with a tab between cells, and as an HTML table. What is no number stays text where it is pasted, a
/// formula included.
std::unique_ptr<QMimeData> GridMimeData(const QAbstractItemModel& model, const QItemSelection& selection);
/// The same into the clipboard.
void CopyGrid(const QAbstractItemModel& model, const QItemSelection& selection);

/// The first line of a text that was copied from a grid with that model.
QString HeadingLine(const QAbstractItemModel& model);
/// A cell of such a text as it stood in the grid: without the sign that keeps a formula text.
QString CellOfCopy(const QString& text);

}  // namespace spectrane
