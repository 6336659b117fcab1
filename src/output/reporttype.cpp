#include "output/reporttype.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <numeric>

namespace spectrane {
namespace {

QFont SizedFont(const QFont& family, int points, bool bold, const QPaintDevice& device) {
  QFont font = family;
  font.setPointSize(points);
  font.setBold(bold);
  // Letters that are drawn as one would be found as one in the file.
  font.setStyleStrategy(QFont::PreferNoShaping);
  return QFont(font, &device);
}

/// A text column is never narrower than so many letters.
constexpr int kFewestLetters = 10;

}  // namespace

TypeSize::TypeSize(const QFont& family, int points, bool bold, const QPaintDevice& onDevice)
    : Font(SizedFont(family, points, bold, onDevice)), Metrics(Font, &onDevice), Device(&onDevice) {}

QStringList TypeSize::Lines(const QString& text, double width) const {
  if (Width(text) <= width) return {text};
  QTextLayout layout(text, Font, Device);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  QStringList lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    lines.append(text.mid(line.textStart(), line.textLength()).trimmed());
  }
  layout.endLayout();
  return lines;
}

ReportType::ReportType(const QFont& family, const QPaintDevice& device)
    : Title(family, 12, true, device),
      Heading(family, 10, true, device),
      Body(family, 9, false, device),
      Foot(family, 8, false, device) {}

ReportTableLayout::ReportTableLayout(const DataTable& table, const ReportType& type, double width)
    : table_(table), type_(type), gap_(type.Body.Width(QStringLiteral("n"))), wraps_(table.Columns.size()) {
  Measure(width);
}

double ReportTableLayout::CellsWidth(std::size_t column) const {
  const TableColumn& own = table_.Columns[column];
  // Figures are equally wide: the longest one is the widest. Texts are measured one by one.
  QString longest;
  double widest = 0;
  for (std::int32_t row = 0; row < table_.RowCount; ++row) {
    const QString text = QString::fromStdString(CellText(own, table_.CellAt(row, column)));
    if (own.HoldsTexts()) {
      widest = std::max(widest, type_.Body.Width(text));
    } else if (text.size() > longest.size()) {
      longest = text;
    }
  }
  return std::max(widest, type_.Body.Width(longest));
}

double ReportTableLayout::TitleWidth(std::size_t column) const {
  double widest = 0;
  for (const QString& line : titles_[column]) widest = std::max(widest, type_.Body.Width(line));
  return widest;
}

void ReportTableLayout::Measure(double width) {
  const std::size_t count = table_.Columns.size();
  std::vector<double> cells;
  for (std::size_t i = 0; i < count; ++i) {
    cells.push_back(CellsWidth(i));
    titles_.push_back({QString::fromStdString(table_.Columns[i].Title)});
    widths_.push_back(std::max(cells[i], TitleWidth(i)) + 2 * gap_);
  }
  if (std::accumulate(widths_.begin(), widths_.end(), 0.0) > width) {
    for (std::size_t i = 0; i < count; ++i) {
      const QString title = titles_[i].first();
      const qsizetype bracket = title.indexOf(u'(');
      if (bracket > 0) titles_[i] = {title.left(bracket).trimmed(), title.mid(bracket)};
      titleLines_ = std::max(titleLines_, titles_[i].size());
      widths_[i] = std::max(cells[i], TitleWidth(i)) + 2 * gap_;
    }
  }
  ShareRest(width);
  double left = 0;
  for (const double columnWidth : widths_) {
    lefts_.push_back(left);
    left += columnWidth;
  }
}

void ReportTableLayout::ShareRest(double width) {
  const double sum = std::accumulate(widths_.begin(), widths_.end(), 0.0);
  if (sum <= width) {
    // Figures stand apart a little more; a table is not stretched to the page.
    const double more = std::min((width - sum) / static_cast<double>(widths_.size()), 3 * gap_);
    for (double& columnWidth : widths_) columnWidth += more;
    return;
  }
  // Texts have room for their titles, and share what is left by what they would need.
  const auto least = [this](std::size_t i) {
    return std::min(widths_[i], std::max(TitleWidth(i) + 2 * gap_, gap_ * kFewestLetters));
  };
  double texts = 0;
  double titles = 0;
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    if (!table_.Columns[i].HoldsTexts()) continue;
    wraps_[i] = true;
    texts += widths_[i];
    titles += least(i);
  }
  const double rest = width - (sum - texts) - titles;
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    if (!wraps_[i]) continue;
    const double share = texts > titles ? (widths_[i] - least(i)) / (texts - titles) : 0;
    widths_[i] = least(i) + share * std::max(0.0, rest);
  }
}

QStringList ReportTableLayout::CellLines(std::int32_t row, std::size_t column) const {
  const QString text = QString::fromStdString(CellText(table_.Columns[column], table_.CellAt(row, column)));
  return wraps_[column] ? type_.Body.Lines(text, widths_[column] - 2 * gap_) : QStringList{text};
}

double ReportTableLayout::HeadHeight() const {
  const double heading = table_.Heading.empty() ? 0 : type_.Heading.LineHeight() * 1.3;
  return heading + LineHeight() * (static_cast<double>(titleLines_) + 0.5);
}

double ReportTableLayout::RowHeight(std::int32_t row) const {
  qsizetype lines = 1;
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    if (wraps_[i]) lines = std::max(lines, CellLines(row, i).size());
  }
  return LineHeight() * static_cast<double>(lines);
}

void ReportTableLayout::PaintHead(QPainter& painter, double left, double top) const {
  if (!table_.Heading.empty()) {
    painter.setFont(type_.Heading.Font);
    painter.drawText(QPointF(left, top + type_.Heading.Metrics.ascent()),
                     QString::fromStdString(table_.Heading));
    top += type_.Heading.LineHeight() * 1.3;
  }
  painter.setFont(type_.Body.Font);
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    // The last line of each title stands on the line below them.
    double baseline = top + type_.Body.Metrics.ascent() +
                      LineHeight() * static_cast<double>(titleLines_ - titles_[i].size());
    for (const QString& title : titles_[i]) {
      const double room = widths_[i] - 2 * gap_ - type_.Body.Width(title);
      const double x = left + lefts_[i] + gap_ + (table_.Columns[i].HoldsTexts() ? 0 : room);
      painter.drawText(QPointF(x, baseline), title);
      baseline += LineHeight();
    }
  }
  const double line = top + LineHeight() * (static_cast<double>(titleLines_) + 0.15);
  painter.drawLine(QPointF(left, line), QPointF(left + lefts_.back() + widths_.back(), line));
}

double ReportTableLayout::PaintRow(QPainter& painter, std::int32_t row, double left, double top) const {
  painter.setFont(type_.Body.Font);
  qsizetype most = 1;
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    const QStringList lines = CellLines(row, i);
    most = std::max(most, lines.size());
    double baseline = top + type_.Body.Metrics.ascent();
    for (const QString& text : lines) {
      const double room = widths_[i] - 2 * gap_ - type_.Body.Width(text);
      const double x = left + lefts_[i] + gap_ + (table_.Columns[i].HoldsTexts() ? 0 : room);
      if (!text.isEmpty()) painter.drawText(QPointF(x, baseline), text);
      baseline += LineHeight();
    }
  }
  return top + LineHeight() * static_cast<double>(most);
}

void ReportTableLayout::PaintEmpty(QPainter& painter, double left, double top) const {
  painter.setFont(type_.Body.Font);
  painter.drawText(QPointF(left + gap_, top + type_.Body.Metrics.ascent()),
                   QString::fromStdString(table_.EmptyWords));
}

}  // namespace spectrane
