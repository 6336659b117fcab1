#pragma once

#include <QAbstractTableModel>

#include <functional>

#include "output/datatable.h"

namespace spectrane {

/// A table as exports and reports have it, for the grid of a window. Its texts can be edited, one line of 256
/// characters at most; an edit tells by dataChanged().
class SampleTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  using MakeTable = std::function<DataTable()>;
  /// Takes the text of a cell over into the document.
  using TakeText = std::function<void(int row, int column, const std::string& text)>;

  SampleTable(MakeTable make, TakeText take, QObject* parent);

  const DataTable& Table() const { return table_; }
  /// Other rows, columns or headings altogether.
  void Replaced();
  /// The document has one row less.
  void RowRemoved(int row);
  /// Other texts of the same cells.
  void FormatsChanged();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

 private:
  const TableColumn& Column(int column) const { return table_.Columns[static_cast<std::size_t>(column)]; }
  QString TextOf(const QModelIndex& index) const;
  int AlignmentOf(int column) const;

  MakeTable make_;
  TakeText take_;
  DataTable table_;
};

}  // namespace spectrane
