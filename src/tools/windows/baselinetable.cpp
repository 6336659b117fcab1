#include "tools/windows/baselinetable.h"

namespace spectrane {

BaselineTable::BaselineTable(const SystemBaseline& baseline, std::int32_t rows, QObject* parent)
    : QAbstractTableModel(parent), baseline_(baseline), rows_(rows) {
  Refill();
}

void BaselineTable::Refill() {
  beginResetModel();
  table_ = BaselineDataTable(baseline_, rows_);
  endResetModel();
}

int BaselineTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || !baseline_.BaselinePresent() ? 0 : rows_;
}

int BaselineTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(table_.Columns.size());
}

QVariant BaselineTable::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::TextAlignmentRole) return static_cast<int>((Qt::AlignRight | Qt::AlignVCenter).toInt());
  if (role != Qt::DisplayRole || index.row() >= table_.RowCount) return {};
  const auto column = static_cast<std::size_t>(index.column());
  return QString::fromStdString(CellText(table_.Columns[column], table_.CellAt(index.row(), column)));
}

QVariant BaselineTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  if (role == Qt::DisplayRole)
    return QString::fromStdString(table_.Columns[static_cast<std::size_t>(section)].Title);
  if (role == Qt::TextAlignmentRole) return static_cast<int>((Qt::AlignRight | Qt::AlignVCenter).toInt());
  return {};
}

}  // namespace spectrane
