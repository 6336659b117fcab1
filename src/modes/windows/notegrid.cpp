#include "modes/windows/notegrid.h"

#include <QCoreApplication>
#include <QLineEdit>

namespace spectrane {

NoteGrid::NoteGrid(const QString& editorName, QWidget* parent) : EditGrid(editorName, parent) {}

void NoteGrid::ShowRow(int row) {
  const QModelIndex note = model()->index(row, NoteColumn());
  if (!note.isValid()) return;
  setCurrentIndex(note);
  // The note may be wider than the window; only the row is to come into view.
  scrollTo(model()->index(row, 0));
}

bool NoteGrid::EditByKey(const QModelIndex& note, EditTrigger trigger, QEvent* event) {
  if (trigger != AnyKeyPressed || note.data().toString().isEmpty())
    return QTableView::edit(note, trigger, event);
  // A stray letter goes behind the note instead of taking its place.
  if (!QTableView::edit(note, EditKeyPressed, nullptr)) return false;
  if (auto* const line = qobject_cast<QLineEdit*>(Editor())) {
    line->end(false);
    if (event) QCoreApplication::sendEvent(line, event);
  }
  return true;
}

bool NoteGrid::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
  const bool byKey = trigger == EditKeyPressed || trigger == AnyKeyPressed;
  if (byKey && index.isValid() && index.column() != NoteColumn()) {
    const QModelIndex note = index.siblingAtColumn(NoteColumn());
    selectionModel()->setCurrentIndex(note, QItemSelectionModel::NoUpdate);
    return EditByKey(note, trigger, event);
  }
  if (byKey && index.isValid()) return EditByKey(index, trigger, event);
  return QTableView::edit(index, trigger, event);
}

}  // namespace spectrane
