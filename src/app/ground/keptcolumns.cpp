#include "app/ground/keptcolumns.h"

#include <QHeaderView>
#include <QTableView>

#include "app/ground/layoutstore.h"

namespace spectrane {

void KeptColumns::Restore(const QString& name) {
  name_ = name;
  store_.RestoreColumns(name_, *grid_.horizontalHeader());
  grid_.horizontalHeader()->setStretchLastSection(true);
  widthsAtStart_ = Widths();
}

void KeptColumns::Keep() {
  if (name_.isEmpty() || Widths() == widthsAtStart_) return;
  store_.StoreColumns(name_, *grid_.horizontalHeader());
}

QList<int> KeptColumns::Widths() const {
  QList<int> widths;
  const QHeaderView& header = *grid_.horizontalHeader();
  for (int column = 0; column + 1 < header.count(); ++column) widths.append(header.sectionSize(column));
  return widths;
}

}  // namespace spectrane
