#pragma once

#include <QTableView>

#include <functional>

namespace spectrane {

class NoteDelegate;

/// A grid of measured rows with one column of notes: a key or a double click opens the editor over the note
/// of the current row. Tab leaves the grid. The column of the notes is the last one and takes the rest of the
/// width.
class NoteGrid : public QTableView {
  Q_OBJECT

 public:
  /// `editorName` is the object name of the editor. The model is to be set before the grid is shown.
  NoteGrid(const QString& editorName, QWidget* parent);

  /// Takes over the text of an open editor and closes it.
  void CommitEditor();
  bool EditorIsOpen() const;
  /// Selects a row, the note of which becomes the current cell, and scrolls to it.
  void ShowRow(int row);
  /// The current row when it is selected, else the first selected one; -1 without any.
  int SelectedRow() const;
  /// The selected rows, or all, into the clipboard.
  void Copy() const;

  /// What stands in the middle while there are no rows; asked at each painting.
  std::function<QString()> Hint;

 signals:
  void RowSelectionChanged();

 protected:
  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
  bool EditByKey(const QModelIndex& note, EditTrigger trigger, QEvent* event);
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int NoteColumn() const { return model()->columnCount() - 1; }

  NoteDelegate* delegate_;
};

}  // namespace spectrane
