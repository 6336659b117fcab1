#include "modes/windows/quatable.h"

#include <QApplication>
#include <QStyle>

#include <algorithm>

#include "app/ground/words.h"
#include "base/numbers.h"
#include "link/function.h"
#include "modes/windows/fittext.h"
#include "output/plottexts.h"
#include "output/quantitationoutput.h"

namespace spectrane {
namespace {

/// Of a text field of the file.
constexpr qsizetype kTextWidth = 256;

QString Q(const std::string& text) {
  return QString::fromStdString(text);
}

}  // namespace

QuaTable::QuaTable(QuantitationDocument& document, const DisplayFormats& formats, QObject* parent)
    : QAbstractTableModel(parent), document_(document), formats_(formats) {}

int QuaTable::AbsColumns() const {
  return static_cast<int>(AbsColumnsOf(document_.Option()));
}

void QuaTable::Replaced() {
  beginResetModel();
  endResetModel();
}

void QuaTable::RowsChanged() {
  if (rowCount() > 0)
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1), {Qt::DisplayRole});
}

int QuaTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Rows();
}

int QuaTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : NoteColumn() + 1;
}

QString QuaTable::AbsText(double abs) const {
  return Q(Format(abs, formats_.AbsFormat));
}

QString QuaTable::MarkOf(int, int) const {
  return {};
}

QString QuaTable::TipOf(int row, int column) const {
  const QString mark = MarkOf(row, column);
  return mark.isEmpty() && (column == NameColumn() || column == NoteColumn()) ? CellText(row, column) : mark;
}

int QuaTable::AlignmentOf(int column) const {
  const bool words = column == NameColumn() || column == NoteColumn();
  return static_cast<int>(((words ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter).toInt());
}

QVariant QuaTable::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= Rows()) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return CellText(index.row(), index.column());
    case Qt::ToolTipRole: {
      const QString tip = TipOf(index.row(), index.column());
      return tip.isEmpty() ? QVariant() : QVariant(tip.toHtmlEscaped());
    }
    case Qt::DecorationRole:
      if (MarkOf(index.row(), index.column()).isEmpty()) return {};
      return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
    case Qt::AccessibleDescriptionRole:
      return MarkOf(index.row(), index.column());
    case Qt::TextAlignmentRole:
      return AlignmentOf(index.column());
    default:
      return {};
  }
}

QString QuaTable::HeadingOf(int section) const {
  if (section == NumberColumn()) return Words(kNumberTitle);
  if (section == NameColumn()) return Words(kNameTitle);
  if (section == ConcColumn()) return Q(ConcTitleOf(document_.Option()));
  if (section == NoteColumn()) return Words(kNoteTitle);
  return Q(AbsTitleOf(document_.Option(), static_cast<std::size_t>(section - FirstAbsColumn())));
}

QVariant QuaTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  if (role == Qt::DisplayRole) return HeadingOf(section).trimmed();
  if (role == Qt::TextAlignmentRole) return AlignmentOf(section);
  return {};
}

int StandardTable::Rows() const {
  return Document().FitsStandards() ? Document().StandardRows() : 0;
}

QString StandardTable::CellText(int row, int column) const {
  const auto r = static_cast<std::size_t>(row);
  const QuaOption& option = Document().Option();
  if (column == NumberColumn()) return QString::number(row + 1);
  if (column == NameColumn()) return Q(option.StandardName[r]);
  if (column == NoteColumn()) return Q(option.StandardNote[r]);
  if (column == ConcColumn()) {
    return option.StandardConcSet[r] ? Q(FormatValue(option.StandardConc[r])).trimmed() : QString();
  }
  const auto place = static_cast<std::size_t>(column - FirstAbsColumn());
  return option.StandardAbsSet[r] ? AbsText(option.StandardAbs[r][place]) : QString();
}

QString StandardTable::TipOf(int row, int column) const {
  if (column >= FirstAbsColumn() && column < ConcColumn()) {
    return QStringLiteral("Click to measure this standard.");
  }
  return QuaTable::TipOf(row, column);
}

Qt::ItemFlags StandardTable::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QuaTable::flags(index);
  const int column = index.column();
  const bool conc = column == ConcColumn() && !(CurveInUse && CurveInUse());
  const bool text = column == NameColumn() || conc || column == NoteColumn();
  return text ? flags | Qt::ItemIsEditable : flags;
}

bool StandardTable::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable) || index.row() >= Rows())
    return false;
  const QString typed = value.toString();
  // What stands there as it was shown is left as it is: the bytes of the file stay.
  if (typed == CellText(index.row(), index.column())) return true;
  if (index.column() == ConcColumn()) {
    const std::string number = typed.trimmed().toStdString();
    const std::optional<double> conc = ParseNumber(number);
    if (!conc && !number.empty()) {
      emit TextRefused(typed);
      return false;
    }
    const FitOutcome outcome =
        conc ? Document().SetStandardConc(index.row(), *conc) : Document().ClearStandardConc(index.row());
    emit dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
    emit Fitted(outcome);
    return true;
  }
  const std::string text = FitText(typed, kTextWidth).toStdString();
  if (index.column() == NameColumn()) {
    Document().SetStandardName(index.row(), text);
  } else {
    Document().SetStandardNote(index.row(), text);
  }
  emit dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
  return true;
}

void RecordTable::Begin(const QString& name) {
  beginInsertRows({}, Rows(), Rows());
  underWay_ = true;
  name_ = name;
  readings_ = {};
  endInsertRows();
}

void RecordTable::ShowReading(std::size_t wavelength, double abs) {
  readings_[wavelength] = abs;
  RowsChanged();
}

void RecordTable::Finish() {
  underWay_ = false;
  RowsChanged();
}

void RecordTable::Drop() {
  const int row = Document().RecordCount();
  beginRemoveRows({}, row, row);
  underWay_ = false;
  endRemoveRows();
}

int RecordTable::Rows() const {
  return Document().RecordCount() + (underWay_ ? 1 : 0);
}

QString RecordTable::CellText(int row, int column) const {
  if (column == NumberColumn()) return QString::number(row + 1);
  const auto place = static_cast<std::size_t>(std::clamp(column - FirstAbsColumn(), 0, 3));
  if (IsUnderWay(row)) {
    if (column == NameColumn()) return name_;
    const bool read = column >= FirstAbsColumn() && place < readings_.size() && column < ConcColumn();
    return read && readings_[place] ? AbsText(*readings_[place]) : QString();
  }
  const QuaRecord& record = Document().Record(row);
  if (column == NameColumn()) return Q(record.Name);
  if (column == NoteColumn()) return Q(record.Note);
  if (column == ConcColumn()) return Q(FormatValue(record.Conc)).trimmed();
  return AbsText(record.Abs[place]);
}

QString RecordTable::MarkOf(int row, int column) const {
  if (column != ConcColumn() || IsUnderWay(row)) return {};
  return Document().IsBeyondStandards(row) ? QStringLiteral("Outside the range of the standards.")
                                           : QString();
}

Qt::ItemFlags RecordTable::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QuaTable::flags(index);
  const bool text = index.column() == NameColumn() || index.column() == NoteColumn();
  return text && !IsUnderWay(index.row()) ? flags | Qt::ItemIsEditable : flags;
}

bool RecordTable::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || index.row() >= Rows() || !flags(index).testFlag(Qt::ItemIsEditable))
    return false;
  const QString typed = value.toString();
  if (typed == CellText(index.row(), index.column())) return true;
  const std::string text = FitText(typed, kTextWidth).toStdString();
  if (index.column() == NameColumn()) {
    Document().SetRecordName(index.row(), text);
  } else {
    Document().SetRecordNote(index.row(), text);
  }
  emit dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
  return true;
}

}  // namespace spectrane
