#include "app/ground/gridcopy.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QStringList>

#include <algorithm>

#include "base/numbers.h"

namespace spectrane {
namespace {

QList<int> RowsOf(const QAbstractItemModel& model, const QItemSelection& selection) {
  QList<int> rows;
  if (selection.isEmpty()) {
    for (int row = 0; row < model.rowCount(); ++row) rows.append(row);
    return rows;
  }
  for (const QItemSelectionRange& range : selection) {
    for (int row = range.top(); row <= range.bottom(); ++row) rows.append(row);
  }
  std::ranges::sort(rows);
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

/// A cell of one line: what would begin another cell or another row becomes a blank.
QString Flat(QString text) {
  for (QChar& c : text) {
    if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
      c = u' ';
  }
  return text;
}

/// Numbers stand at the right; a note such as "007" is no number.
bool IsNumber(const QModelIndex& cell, const QString& text) {
  const Qt::Alignment alignment(cell.data(Qt::TextAlignmentRole).toInt());
  return alignment.testFlag(Qt::AlignRight) && ParseNumber(text.toStdString());
}

bool LooksLikeFormula(const QString& text) {
  const QString trimmed = text.trimmed();
  return trimmed.size() > 1 && QStringView(u"=+@-").contains(trimmed[0]);
}

/// The sign by which spreadsheets know a text that is not to be calculated.
constexpr QChar kTextSign = u'\'';

QString TextCell(const QModelIndex& cell) {
  const QString text = Flat(cell.data().toString());
  return LooksLikeFormula(text) && !IsNumber(cell, text) ? kTextSign + text : text;
}

QString HtmlCell(const QModelIndex& cell) {
  const QString text = Flat(cell.data().toString());
  const QString style = IsNumber(cell, text) ? QStringLiteral("align=\"right\"")
                                             : QStringLiteral("style='mso-number-format:\"\\@\"'");
  return QStringLiteral("<td ") + style + u'>' + text.toHtmlEscaped() + QStringLiteral("</td>");
}

QStringList Headings(const QAbstractItemModel& model) {
  QStringList headings;
  for (int column = 0; column < model.columnCount(); ++column)
    headings.append(Flat(model.headerData(column, Qt::Horizontal).toString()));
  return headings;
}

QString HtmlHead(const QStringList& headings) {
  QString row = QStringLiteral("<tr>");
  for (const QString& heading : headings)
    row += QStringLiteral("<th>") + heading.toHtmlEscaped() + QStringLiteral("</th>");
  return row + QStringLiteral("</tr>\n");
}

}  // namespace

std::unique_ptr<QMimeData> GridMimeData(const QAbstractItemModel& model, const QItemSelection& selection) {
  QString text = HeadingLine(model) + u'\n';
  QString html = QStringLiteral("<html><head><meta charset=\"utf-8\"></head><body><table>\n") +
                 HtmlHead(Headings(model));
  for (const int row : RowsOf(model, selection)) {
    QStringList cells;
    html += QStringLiteral("<tr>");
    for (int column = 0; column < model.columnCount(); ++column) {
      const QModelIndex cell = model.index(row, column);
      cells.append(TextCell(cell));
      html += HtmlCell(cell);
    }
    text += cells.join(u'\t') + u'\n';
    html += QStringLiteral("</tr>\n");
  }
  auto data = std::make_unique<QMimeData>();
  data->setText(text);
  data->setHtml(html + QStringLiteral("</table></body></html>"));
  return data;
}

void CopyGrid(const QAbstractItemModel& model, const QItemSelection& selection) {
  QGuiApplication::clipboard()->setMimeData(GridMimeData(model, selection).release());
}

QString HeadingLine(const QAbstractItemModel& model) {
  return Headings(model).join(u'\t');
}

QString CellOfCopy(const QString& text) {
  return text.startsWith(kTextSign) && LooksLikeFormula(text.sliced(1)) ? text.sliced(1) : text;
}

}  // namespace spectrane
