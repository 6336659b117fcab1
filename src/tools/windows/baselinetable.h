#pragma once

#include <QAbstractTableModel>

#include "output/baselineoutput.h"

namespace spectrane {

/// The system baseline for its grid: a row for each whole nanometre of the instrument's range; rows for which
/// the baseline has no record are blank. No rows without a baseline.
class BaselineTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// `baseline` must outlive the model. `rows`: records of the range.
  BaselineTable(const SystemBaseline& baseline, std::int32_t rows, QObject* parent);

  /// Another baseline was loaded.
  void Refill();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const SystemBaseline& baseline_;
  std::int32_t rows_;
  DataTable table_;
};

}  // namespace spectrane
