#include "tools/windows/baselinetable.h"

#include "app/ground/words.h"

namespace spectrane {
namespace {

constexpr int kWavelengthTitle = 702;
constexpr int kEnergyTitle = 708;

}  // namespace

BaselineTable::BaselineTable(const SystemBaseline& baseline, std::int32_t rows, QObject* parent)
    : QAbstractTableModel(parent), baseline_(baseline), rows_(rows) {}

QStringList BaselineTable::Titles() {
  return {QStringLiteral("No"), Words(kWavelengthTitle), QStringLiteral("Amp"), Words(kEnergyTitle)};
}

void BaselineTable::Refill() {
  beginResetModel();
  endResetModel();
}

int BaselineTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || !baseline_.BaselinePresent() ? 0 : rows_;
}

int BaselineTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant BaselineTable::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::TextAlignmentRole) return static_cast<int>((Qt::AlignRight | Qt::AlignVCenter).toInt());
  if (role != Qt::DisplayRole || index.row() >= baseline_.Count()) return {};
  return QString::fromStdString(
      BaselineCells(baseline_, index.row()).at(static_cast<std::size_t>(index.column())));
}

QVariant BaselineTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= kColumnCount) return {};
  if (role == Qt::DisplayRole) return Titles()[section];
  if (role == Qt::TextAlignmentRole) return static_cast<int>((Qt::AlignRight | Qt::AlignVCenter).toInt());
  return {};
}

}  // namespace spectrane
