#pragma once

#include "app/ground/editgrid.h"

namespace spectrane {

/// A grid that is filled in like a spreadsheet: a click opens the editor over a cell that takes text, Enter
/// goes down, Tab to the next cell that takes text and out of the grid behind the last one, the arrows up and
/// down leave the editor too. Ctrl+V fills cells from the current one on, also out of an open editor, which
/// takes a single value for itself; Delete empties a cell.
class SheetGrid : public EditGrid {
  Q_OBJECT

 public:
  SheetGrid(const QString& editorName, QWidget* parent);

  /// Makes a cell the current one and brings it into view.
  void ShowCell(int row, int column);
  /// Lines and tabs of the clipboard into the cells from the current one on. Cells that take no text are
  /// passed over. Rows that were copied from such a grid, which the headings above them tell, go from the
  /// current row on into the columns that they came from.
  void Paste();

 protected:
  void EditorLeftBy(int key) override;
  bool LeavesEditor(int key) const override;
  bool TakesKey(const QKeyEvent& key) override;
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  void GoDown(int rows);
  bool GoToEntry(bool next);
  bool TakesText(const QModelIndex& index) const;
};

}  // namespace spectrane
