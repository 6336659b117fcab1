#include "modes/windows/sheetgrid.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>

#include "app/ground/gridcopy.h"

namespace spectrane {
namespace {

/// More than one cell; what a spreadsheet copies of a single one has a line break behind it.
bool HoldsCells(const QString& text) {
  const QStringView inside = QStringView(text).chopped(text.endsWith(u'\n') ? 1 : 0);
  return inside.contains(u'\t') || inside.contains(u'\n');
}

}  // namespace

SheetGrid::SheetGrid(const QString& editorName, QWidget* parent) : EditGrid(editorName, parent) {
  connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) {
    if (TakesText(index) && !EditorIsOpen() && QGuiApplication::keyboardModifiers() == Qt::NoModifier)
      edit(index);
  });
}

bool SheetGrid::TakesText(const QModelIndex& index) const {
  return index.isValid() && index.flags().testFlag(Qt::ItemIsEditable);
}

void SheetGrid::ShowCell(int row, int column) {
  const QModelIndex cell = model()->index(row, column);
  if (!cell.isValid()) return;
  setCurrentIndex(cell);
  scrollTo(cell);
}

void SheetGrid::GoDown(int rows) {
  const QModelIndex current = currentIndex();
  ShowCell(std::clamp(current.row() + rows, 0, model()->rowCount() - 1), current.column());
}

bool SheetGrid::GoToEntry(bool next) {
  const int columns = model()->columnCount();
  const int cells = model()->rowCount() * columns;
  const QModelIndex current = currentIndex();
  int cell = current.isValid() ? current.row() * columns + current.column() : (next ? -1 : cells);
  for (cell += next ? 1 : -1; cell >= 0 && cell < cells; cell += next ? 1 : -1) {
    if (!TakesText(model()->index(cell / columns, cell % columns))) continue;
    ShowCell(cell / columns, cell % columns);
    return true;
  }
  return false;
}

void SheetGrid::EditorLeftBy(int key) {
  switch (key) {
    case Qt::Key_Up:
      GoDown(-1);
      break;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      if (!GoToEntry(key == Qt::Key_Tab)) EditGrid::focusNextPrevChild(key == Qt::Key_Tab);
      break;
    default:
      GoDown(1);
      break;
  }
}

bool SheetGrid::LeavesEditor(int key) const {
  return key == Qt::Key_Up || key == Qt::Key_Down;
}

bool SheetGrid::TakesKey(const QKeyEvent& key) {
  if (!key.matches(QKeySequence::Paste) || !HoldsCells(QGuiApplication::clipboard()->text())) return false;
  closeEditor(Editor(), QAbstractItemDelegate::NoHint);
  Paste();
  return true;
}

bool SheetGrid::focusNextPrevChild(bool next) {
  return (!EditorIsOpen() && GoToEntry(next)) || EditGrid::focusNextPrevChild(next);
}

void SheetGrid::Paste() {
  const QModelIndex start = currentIndex();
  if (!start.isValid()) return;
  QStringList lines = QGuiApplication::clipboard()->text().remove(u'\r').split(u'\n');
  if (lines.last().isEmpty()) lines.removeLast();
  const bool copied = !lines.isEmpty() && lines.first() == HeadingLine(*model());
  if (copied) lines.removeFirst();
  const int column = copied ? 0 : start.column();
  for (qsizetype r = 0; r < lines.size(); ++r) {
    const QStringList cells = lines[r].split(u'\t');
    for (qsizetype c = 0; c < cells.size(); ++c) {
      const QModelIndex cell = start.sibling(start.row() + static_cast<int>(r), column + static_cast<int>(c));
      if (TakesText(cell)) model()->setData(cell, copied ? CellOfCopy(cells[c]) : cells[c]);
    }
  }
}

bool SheetGrid::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    auto* const key = static_cast<QKeyEvent*>(event);
    if (key->matches(QKeySequence::Paste) || key->matches(QKeySequence::Delete)) {
      event->accept();
      return true;
    }
  }
  return EditGrid::event(event);
}

void SheetGrid::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Paste)) {
    Paste();
  } else if (event->matches(QKeySequence::Delete)) {
    if (TakesText(currentIndex())) model()->setData(currentIndex(), QString());
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    GoDown(1);
  } else {
    EditGrid::keyPressEvent(event);
  }
}

}  // namespace spectrane
