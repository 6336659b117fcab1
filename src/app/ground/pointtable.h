#pragma once

#include <QAbstractTableModel>
#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

namespace spectrane {

/// One column of a table of points.
struct PointColumn {
  QString Title;
  /// The figure of a point; null in the first column, which numbers the rows from 1.
  std::function<QString(std::int32_t point)> Text;
  /// The widest figure that the column is laid out for.
  QString Widest;
};

/// Points of a curve as rows of figures. A figure is made when it is looked at, so many thousand rows cost
/// nothing. Shows either all points or a list of some.
class PointTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// Whatever the columns read must outlive the model or be gone from it before (ShowAll(0)).
  PointTable(std::vector<PointColumn> columns, QObject* parent);

  /// The points 0 to `count` - 1.
  void ShowAll(std::int32_t count);
  /// Only these; none of them is one empty row.
  void ShowSome(std::vector<std::int32_t> points);
  /// There are more points than before at the end: a table of all gets rows for them.
  void Grow(std::int32_t count);
  /// The same points have other figures.
  void FiguresChanged();

  const std::vector<PointColumn>& Columns() const { return columns_; }
  /// The point of a row; -1 for the empty row and beyond the last.
  std::int32_t PointOf(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::vector<PointColumn> columns_;
  std::vector<std::int32_t> points_;
  std::int32_t count_ = 0;
  bool all_ = true;
};

}  // namespace spectrane
