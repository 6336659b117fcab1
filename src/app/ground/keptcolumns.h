#pragma once

#include <QList>
#include <QString>

class QTableView;

namespace spectrane {

class LayoutStore;

/// Remembers the column widths of a grid from one window to the next. Widths that nobody has changed are not
/// remembered: they follow font and formats. The last column takes what is left and has no width of its own.
class KeptColumns {
 public:
  /// Both must outlive this object.
  KeptColumns(LayoutStore& store, QTableView& grid) : store_(store), grid_(grid) {}

  /// The widths as they stand are those of the program; remembered ones take their place. `name` is the
  /// grid's own in the store; grids with other columns have another one.
  void Restore(const QString& name);
  /// Stores what somebody has changed since Restore(). To be called before the grid gets other columns.
  void Keep();

 private:
  QList<int> Widths() const;

  LayoutStore& store_;
  QTableView& grid_;
  QString name_;
  QList<int> widthsAtStart_;
};

}  // namespace spectrane
