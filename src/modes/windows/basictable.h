#pragma once

#include <QAbstractTableModel>

#include "base/displayformats.h"
#include "modes/photometry/photometrydocument.h"

namespace spectrane {

/// The rows of a photometry document for its grid. Only the note can be edited; an edit tells by
/// dataChanged().
class BasicTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kNumber, kWavelength, kAbs, kTrans, kEnergy, kNote, kColumnCount };

  /// Both must outlive the model. `formats` may change; FormatsChanged() then shows it.
  BasicTable(PhotometryDocument& document, const DisplayFormats& formats, QObject* parent);

  /// What the document has done: a row behind the last one, one row less, other rows altogether.
  void RowAdded();
  void RowRemoved(int row);
  void RowsReplaced();
  void FormatsChanged();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 private:
  QString CellText(int row, int column) const;

  PhotometryDocument& document_;
  const DisplayFormats& formats_;
  // Rows that views were told of; the document may be ahead of it.
  int rows_ = 0;
};

/// `text` in one line, cut at the width of the file's note field.
QString FitNote(const QString& text);

}  // namespace spectrane
