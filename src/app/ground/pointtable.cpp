#include "app/ground/pointtable.h"

#include <utility>

namespace spectrane {

PointTable::PointTable(std::vector<PointColumn> columns, QObject* parent)
    : QAbstractTableModel(parent), columns_(std::move(columns)) {}

void PointTable::ShowAll(std::int32_t count) {
  beginResetModel();
  all_ = true;
  points_.clear();
  count_ = count;
  endResetModel();
}

void PointTable::ShowSome(std::vector<std::int32_t> points) {
  beginResetModel();
  all_ = false;
  points_ = std::move(points);
  count_ = static_cast<std::int32_t>(points_.size());
  endResetModel();
}

void PointTable::Grow(std::int32_t count) {
  if (!all_ || count <= count_) return;
  beginInsertRows({}, count_, count - 1);
  count_ = count;
  endInsertRows();
}

void PointTable::FiguresChanged() {
  if (count_ > 0) emit dataChanged(index(0, 0), index(count_ - 1, columnCount() - 1), {Qt::DisplayRole});
}

std::int32_t PointTable::PointOf(int row) const {
  if (row < 0 || row >= count_) return -1;
  return all_ ? row : points_[static_cast<std::size_t>(row)];
}

int PointTable::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return count_ == 0 && !all_ ? 1 : count_;
}

int PointTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant PointTable::data(const QModelIndex& index, int role) const {
  if (role == Qt::TextAlignmentRole) return static_cast<int>((Qt::AlignRight | Qt::AlignVCenter).toInt());
  const std::int32_t point = index.isValid() ? PointOf(index.row()) : -1;
  if (role != Qt::DisplayRole || point < 0) return {};
  const PointColumn& column = columns_[static_cast<std::size_t>(index.column())];
  return column.Text ? column.Text(point) : QString::number(index.row() + 1);
}

QVariant PointTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  if (role == Qt::DisplayRole) return columns_[static_cast<std::size_t>(section)].Title;
  if (role == Qt::TextAlignmentRole) return static_cast<int>((Qt::AlignRight | Qt::AlignVCenter).toInt());
  return {};
}

}  // namespace spectrane
