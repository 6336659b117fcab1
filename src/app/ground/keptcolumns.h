#pragma once

#include <QList>
#include <QString>

#include "app/ground/layoutstore.h"

class QTableView;

namespace spectrane {

/// Remembers the column widths of a grid from one window to the next. Widths that nobody has changed are not
/// remembered: they follow font and formats. The last column takes what is left and has no width of its own.
class KeptColumns : public KeptLayout {
 public:
  /// Both must outlive this object.
  KeptColumns(LayoutStore& store, QTableView& grid) : store_(store), grid_(grid) { store_.Join(*this); }
  ~KeptColumns() override { store_.Leave(*this); }
  KeptColumns(const KeptColumns&) = delete;
  KeptColumns& operator=(const KeptColumns&) = delete;

  /// The widths as they stand are those of the program; remembered ones take their place. `name` is the
  /// grid's own in the store; grids with other columns have another one.
  void Restore(const QString& name);
  /// Stores what somebody has changed since Restore(). To be called before the grid gets other columns.
  void Keep();
  void Forget() override;

 private:
  QList<int> Widths() const;

  LayoutStore& store_;
  QTableView& grid_;
  QString name_;
  QList<int> usualWidths_;
  QList<int> widthsAtStart_;
};

}  // namespace spectrane
