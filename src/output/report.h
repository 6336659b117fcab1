#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

#include <functional>
#include <variant>
#include <vector>

#include "output/datatable.h"

class QPainter;

namespace spectrane {

/// A line of the block of facts.
struct ReportFact {
  QString Label;
  QString Value;
};

/// A heading with a text below it, which may have several lines.
struct ReportText {
  QString Heading;
  QString Text;
};

/// A curve: it draws on the rectangle it is given, in units of the painter, of which each has that many
/// twips.
struct ReportPicture {
  std::function<void(QPainter& painter, const QRectF& surface, double twipsPerUnit)> Paint;
  /// Twips between the edges of the picture and its plot, left and right.
  double LeftMargin = 1200;
  double RightMargin = 500;
};

using ReportBlock = std::variant<ReportText, ReportPicture, DataTable>;

/// A report, whatever it is printed on.
struct Report {
  QString Title;
  /// Of the print job, and at the foot of each page.
  QString DocumentName;
  std::vector<ReportFact> Facts;
  std::vector<ReportBlock> Blocks;
  /// Its family; the sizes are the report's own.
  QFont Font;
};

}  // namespace spectrane
