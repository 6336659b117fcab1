#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QStringList>

#include <cstdint>
#include <vector>

#include "output/datatable.h"

class QPaintDevice;
class QPainter;

namespace spectrane {

/// A size of type on one device.
struct TypeSize {
  TypeSize(const QFont& family, int points, bool bold, const QPaintDevice& onDevice);

  /// The text in lines of that width at most, broken between words where it can be.
  QStringList Lines(const QString& text, double width) const;
  double Width(const QString& text) const { return Metrics.horizontalAdvance(text); }
  double LineHeight() const { return Metrics.height() * 1.15; }

  QFont Font;
  QFontMetricsF Metrics;
  const QPaintDevice* Device;
};

/// The type of a report on one device.
struct ReportType {
  ReportType(const QFont& family, const QPaintDevice& device);

  TypeSize Title;
  TypeSize Heading;
  TypeSize Body;
  TypeSize Foot;
};

/// Where the columns of a table are, and how high its rows.
class ReportTableLayout {
 public:
  /// `width` is that of the page. All must outlive the layout.
  ReportTableLayout(const DataTable& table, const ReportType& type, double width);

  /// Of heading and column titles.
  double HeadHeight() const;
  /// Of a row that has texts in several lines, more.
  double RowHeight(std::int32_t row) const;
  /// Of the words in the place of rows.
  double EmptyHeight() const { return LineHeight(); }

  void PaintHead(QPainter& painter, double left, double top) const;
  /// Gives the place below.
  double PaintRow(QPainter& painter, std::int32_t row, double left, double top) const;
  void PaintEmpty(QPainter& painter, double left, double top) const;

 private:
  double LineHeight() const { return type_.Body.LineHeight(); }
  void Measure(double width);
  /// Width of the widest cell of a column, its title apart.
  double CellsWidth(std::size_t column) const;
  double TitleWidth(std::size_t column) const;
  void ShareRest(double width);
  QStringList CellLines(std::int32_t row, std::size_t column) const;

  const DataTable& table_;
  const ReportType& type_;
  /// Space beside a text.
  double gap_;
  /// Lines of the titles; what stands in brackets has one of its own in a table that would be too wide.
  std::vector<QStringList> titles_;
  qsizetype titleLines_ = 1;
  std::vector<double> lefts_;
  std::vector<double> widths_;
  /// Columns whose texts may need several lines.
  std::vector<bool> wraps_;
};

}  // namespace spectrane
