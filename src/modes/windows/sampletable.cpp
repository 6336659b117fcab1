#include "modes/windows/sampletable.h"

#include <utility>

#include "modes/windows/fittext.h"

namespace spectrane {
namespace {

/// Of a text field of the file.
constexpr qsizetype kSampleTextWidth = 256;

}  // namespace

SampleTable::SampleTable(MakeTable make, TakeText take, QObject* parent)
    : QAbstractTableModel(parent), make_(std::move(make)), take_(std::move(take)), table_(make_()) {}

void SampleTable::Replaced() {
  beginResetModel();
  table_ = make_();
  endResetModel();
}

void SampleTable::RowRemoved(int row) {
  beginRemoveRows({}, row, row);
  table_ = make_();
  endRemoveRows();
  // The rows behind have new numbers.
  if (row < table_.RowCount)
    emit dataChanged(index(row, 0), index(table_.RowCount - 1, 0), {Qt::DisplayRole});
}

void SampleTable::FormatsChanged() {
  table_ = make_();
  if (table_.RowCount > 0)
    emit dataChanged(index(0, 0), index(table_.RowCount - 1, columnCount() - 1), {Qt::DisplayRole});
}

int SampleTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : table_.RowCount;
}

int SampleTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(table_.Columns.size());
}

QString SampleTable::TextOf(const QModelIndex& index) const {
  return QString::fromStdString(
      CellText(Column(index.column()), table_.CellAt(index.row(), static_cast<std::size_t>(index.column()))));
}

int SampleTable::AlignmentOf(int column) const {
  const Qt::Alignment side = Column(column).HoldsTexts() ? Qt::AlignLeft : Qt::AlignRight;
  return static_cast<int>((side | Qt::AlignVCenter).toInt());
}

QVariant SampleTable::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= table_.RowCount) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return TextOf(index);
    case Qt::ToolTipRole: {
      const QString text = Column(index.column()).HoldsTexts() ? TextOf(index) : QString();
      return text.isEmpty() ? QVariant() : QVariant(text.toHtmlEscaped());
    }
    case Qt::TextAlignmentRole:
      return AlignmentOf(index.column());
    default:
      return {};
  }
}

QVariant SampleTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  if (role == Qt::DisplayRole) return QString::fromStdString(Column(section).Title).trimmed();
  if (role == Qt::TextAlignmentRole) return AlignmentOf(section);
  return {};
}

Qt::ItemFlags SampleTable::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  return index.isValid() && Column(index.column()).HoldsTexts() ? flags | Qt::ItemIsEditable : flags;
}

bool SampleTable::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable) || index.row() >= table_.RowCount)
    return false;
  // Taken over as it was shown: the bytes of the file stay.
  if (value.toString() == TextOf(index)) return true;
  take_(index.row(), index.column(), FitText(value.toString(), kSampleTextWidth).toStdString());
  emit dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
  return true;
}

}  // namespace spectrane
