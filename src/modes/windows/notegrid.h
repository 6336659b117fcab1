#pragma once

#include "app/ground/editgrid.h"

namespace spectrane {

/// A grid of measured rows with one column of notes, the last one: a key or a double click opens the editor
/// over the note of the current row. Tab leaves the grid.
class NoteGrid : public EditGrid {
  Q_OBJECT

 public:
  NoteGrid(const QString& editorName, QWidget* parent);

  /// Selects a row, the note of which becomes the current cell, and scrolls to it.
  void ShowRow(int row);

 protected:
  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;

 private:
  bool EditByKey(const QModelIndex& note, EditTrigger trigger, QEvent* event);
  int NoteColumn() const { return model()->columnCount() - 1; }
};

}  // namespace spectrane
