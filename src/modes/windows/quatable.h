#pragma once

#include <QAbstractTableModel>

#include <functional>
#include <optional>

#include "base/displayformats.h"
#include "modes/quantitation/quantitationdocument.h"

namespace spectrane {

/// The two grids of a quantitation have the same columns: number, name, an absorbance for each wavelength and
/// with two of them the combined one, concentration, note. Edits tell by dataChanged().
class QuaTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// Both must outlive the model. `formats` may change; FormatsChanged() then shows it.
  QuaTable(QuantitationDocument& document, const DisplayFormats& formats, QObject* parent);

  int NumberColumn() const { return 0; }
  int NameColumn() const { return 1; }
  int FirstAbsColumn() const { return 2; }
  int AbsColumns() const;
  int ConcColumn() const { return FirstAbsColumn() + AbsColumns(); }
  int NoteColumn() const { return ConcColumn() + 1; }

  /// Other rows, columns or headings altogether.
  void Replaced();
  /// Other contents of the same rows.
  void RowsChanged();
  void FormatsChanged() { RowsChanged(); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  /// A text that cannot stand in its cell was typed or pasted.
  void TextRefused(const QString& text);

 protected:
  QuantitationDocument& Document() { return document_; }
  const QuantitationDocument& Document() const { return document_; }
  QString AbsText(double abs) const;
  /// What a mark beside a cell says; empty for no mark.
  virtual QString MarkOf(int row, int column) const;
  virtual int Rows() const = 0;
  virtual QString CellText(int row, int column) const = 0;
  virtual QString TipOf(int row, int column) const;

 private:
  QString HeadingOf(int section) const;
  int AlignmentOf(int column) const;

  QuantitationDocument& document_;
  const DisplayFormats& formats_;
};

/// The table of standards. Name, concentration and note can be edited.
class StandardTable : public QuaTable {
  Q_OBJECT

 public:
  using QuaTable::QuaTable;

  /// Whether concentrations have to stay as they are: a run turns absorbances into concentrations with the
  /// curve it began with.
  std::function<bool()> CurveInUse;

  Qt::ItemFlags flags(const QModelIndex& index) const override;
  /// An empty concentration takes back the one that was given.
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

 signals:
  /// A concentration was given or taken back and the standards were fitted with it.
  void Fitted(FitOutcome outcome);

 protected:
  int Rows() const override;
  QString CellText(int row, int column) const override;
  QString TipOf(int row, int column) const override;
};

/// The measured samples, and the one under way. Name and note can be edited.
class RecordTable : public QuaTable {
  Q_OBJECT

 public:
  using QuaTable::QuaTable;

  /// A sample under way stands behind the records, until it becomes one or is dropped.
  void Begin(const QString& name);
  void ShowReading(std::size_t wavelength, double abs);
  void Finish();
  void Drop();

  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

 protected:
  int Rows() const override;
  QString CellText(int row, int column) const override;
  QString MarkOf(int row, int column) const override;

 private:
  bool IsUnderWay(int row) const { return underWay_ && row == Document().RecordCount(); }

  bool underWay_ = false;
  QString name_;
  std::array<std::optional<double>, 2> readings_;
};

}  // namespace spectrane
