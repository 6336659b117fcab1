#include "app/ground/keptcolumns.h"

#include <QHeaderView>
#include <QTableView>

namespace spectrane {

void KeptColumns::Restore(const QString& name) {
  name_ = name;
  usualWidths_ = Widths();
  store_.RestoreColumns(name_, *grid_.horizontalHeader());
  grid_.horizontalHeader()->setStretchLastSection(true);
  widthsAtStart_ = Widths();
}

void KeptColumns::Keep() {
  if (name_.isEmpty() || Widths() == widthsAtStart_) return;
  store_.StoreColumns(name_, *grid_.horizontalHeader());
}

void KeptColumns::Forget() {
  if (name_.isEmpty()) return;
  QHeaderView& header = *grid_.horizontalHeader();
  for (int column = 0; column < usualWidths_.size(); ++column)
    header.resizeSection(column, usualWidths_[column]);
  widthsAtStart_ = Widths();
}

QList<int> KeptColumns::Widths() const {
  QList<int> widths;
  const QHeaderView& header = *grid_.horizontalHeader();
  for (int column = 0; column + 1 < header.count(); ++column) widths.append(header.sectionSize(column));
  return widths;
}

}  // namespace spectrane
