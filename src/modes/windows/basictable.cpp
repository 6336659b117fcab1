#include "modes/windows/basictable.h"

#include "app/ground/words.h"
#include "base/numbers.h"
#include "modes/windows/fittext.h"

namespace spectrane {
namespace {

constexpr int kTitles[] = {706, 701, 703, 705, 708, 709};
static_assert(std::size(kTitles) == BasicTable::kColumnCount);

constexpr const char* kEnergyFormat = "0";

int AlignmentOf(int column) {
  const Qt::Alignment side = column == BasicTable::kNote ? Qt::AlignLeft : Qt::AlignRight;
  return static_cast<int>((side | Qt::AlignVCenter).toInt());
}

}  // namespace

QString FitNote(const QString& text) {
  return FitText(text, static_cast<qsizetype>(BasicModule().Record.Fields.back().Width));
}

BasicTable::BasicTable(PhotometryDocument& document, const DisplayFormats& formats, QObject* parent)
    : QAbstractTableModel(parent), document_(document), formats_(formats), rows_(document.RecordCount()) {}

void BasicTable::RowAdded() {
  beginInsertRows({}, rows_, rows_);
  ++rows_;
  endInsertRows();
}

void BasicTable::RowRemoved(int row) {
  beginRemoveRows({}, row, row);
  --rows_;
  endRemoveRows();
  // The rows behind have new numbers.
  if (row < rows_) emit dataChanged(index(row, kNumber), index(rows_ - 1, kNumber), {Qt::DisplayRole});
}

void BasicTable::RowsReplaced() {
  beginResetModel();
  rows_ = document_.RecordCount();
  endResetModel();
}

void BasicTable::FormatsChanged() {
  if (rows_ > 0) emit dataChanged(index(0, kNumber), index(rows_ - 1, kEnergy), {Qt::DisplayRole});
}

int BasicTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int BasicTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant BasicTable::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= document_.RecordCount()) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return CellText(index.row(), index.column());
    case Qt::ToolTipRole:
      return index.column() == kNote ? QVariant(CellText(index.row(), kNote).toHtmlEscaped()) : QVariant();
    case Qt::TextAlignmentRole:
      return AlignmentOf(index.column());
    default:
      return {};
  }
}

QString BasicTable::CellText(int row, int column) const {
  switch (column) {
    case kNumber:
      return QString::number(row + 1);
    case kWavelength:
      return QString::fromStdString(Format(document_.RecordWavelength(row), formats_.WavelengthFormat));
    case kAbs:
      return QString::fromStdString(Format(document_.RecordAbs(row), formats_.AbsFormat));
    case kTrans:
      return QString::fromStdString(Format(document_.RecordTrans(row), formats_.TransFormat));
    case kEnergy:
      return QString::fromStdString(Format(document_.RecordEnergy(row), kEnergyFormat));
    default:
      return QString::fromStdString(document_.RecordNote(row));
  }
}

QVariant BasicTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= kColumnCount) return {};
  if (role == Qt::DisplayRole) return Words(kTitles[section]).trimmed();
  if (role == Qt::TextAlignmentRole) return AlignmentOf(section);
  return {};
}

Qt::ItemFlags BasicTable::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  return index.column() == kNote ? flags | Qt::ItemIsEditable : flags;
}

bool BasicTable::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || index.column() != kNote || index.row() >= rows_) return false;
  // Taken over as it was shown: the bytes of the file stay.
  if (value.toString() == CellText(index.row(), kNote)) return true;
  const std::string note = FitNote(value.toString()).toStdString();
  if (note == document_.RecordNote(index.row())) return true;
  document_.SetRecordNote(index.row(), note);
  emit dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
  return true;
}

}  // namespace spectrane
