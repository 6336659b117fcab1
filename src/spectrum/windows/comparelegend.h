#pragma once

#include <QListWidget>

#include <vector>

namespace spectrane {

/// A curve in the legend.
struct LegendEntry {
  /// Row of the option dialog.
  std::size_t Row = 0;
  QString Name;
  QString Path;
  QColor Colour;
  Qt::PenStyle Pattern = Qt::SolidLine;
  bool Shown = true;
  /// Why there is no curve, or not all of it; empty when it is whole.
  QString Fault;
  bool HasCurve = true;
};

/// The curves of a comparison by name, with colour and pattern and a tick for those that are shown.
class CompareLegend : public QListWidget {
  Q_OBJECT

 public:
  explicit CompareLegend(QWidget* parent);

  /// Without entries it hides itself.
  void Show(const std::vector<LegendEntry>& entries);

 signals:
  void Ticked(std::size_t row, bool shown);

 private:
  bool filling_ = false;
};

/// `picture` with the entries that are shown below it, on its own paper.
QImage WithLegend(const QImage& picture, const std::vector<LegendEntry>& entries, const QFont& font);

}  // namespace spectrane
