#pragma once

#include <QTableView>

#include <functional>

namespace spectrane {

class CellDelegate;

/// A grid of rows with cells to type into: its look, its one editor, the clipboard, and what stands in the
/// middle while it is empty. The last column takes the rest of the width.
class EditGrid : public QTableView {
  Q_OBJECT

 public:
  /// `editorName` is the object name of the editor. The model is to be set before the grid is shown.
  EditGrid(const QString& editorName, QWidget* parent);

  /// Takes over the text of an open editor and closes it.
  void CommitEditor();
  bool EditorIsOpen() const;
  /// The current row when it is selected, else the first selected one; -1 without any.
  int SelectedRow() const;
  /// The selected rows, or all, into the clipboard.
  void Copy() const;

  /// What stands in the middle while there are no rows; asked at each painting.
  std::function<QString()> Hint;

 signals:
  void RowSelectionChanged();

 protected:
  friend class CellDelegate;
  /// The editor's text was taken over because that key was pressed in it.
  virtual void EditorLeftBy(int key);
  /// Keys that leave the editor beside Enter and Tab.
  virtual bool LeavesEditor(int key) const;
  /// A key pressed in the editor that the grid acts upon itself; false leaves it to the editor.
  virtual bool TakesKey(const QKeyEvent& key);
  QWidget* Editor() const;

  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  CellDelegate* delegate_;
};

}  // namespace spectrane
