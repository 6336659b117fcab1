#include "modes/windows/notegrid.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QStyledItemDelegate>

#include "app/ground/gridcopy.h"

namespace spectrane {

// Air between the text of a cell and its border [pixels].
constexpr int kExtraMargin = 4;

/// Makes the editor of a note and remembers it while it lives.
class NoteDelegate : public QStyledItemDelegate {
 public:
  NoteDelegate(const QString& editorName, QObject* parent)
      : QStyledItemDelegate(parent), editorName_(editorName) {}

  QWidget* Editor() const { return editor_; }

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                        const QModelIndex& index) const override {
    auto* const line = new QLineEdit(parent);
    line->setObjectName(editorName_);
    line->setTextMargins(kExtraMargin, 0, 0, 0);
    line->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
    editor_ = line;
    return line;
  }

 protected:
  // Enter takes the text at once, not in the next round of the message loop; Tab does the same, where it
  // would otherwise walk on over cells that cannot be edited.
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::KeyPress && object == editor_) {
      const int key = static_cast<QKeyEvent*>(event)->key();
      if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab || key == Qt::Key_Backtab) {
        QWidget* const line = editor_;
        emit commitData(line);
        emit closeEditor(line, NoHint);
        return true;
      }
    }
    return QStyledItemDelegate::eventFilter(object, event);
  }

 private:
  QString editorName_;
  mutable QPointer<QWidget> editor_;
};

namespace {

/// Keeps figures at the right apart from the notes that follow.
class RoomyCells : public QProxyStyle {
 public:
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
    const int standard = QProxyStyle::pixelMetric(metric, option, widget);
    return metric == PM_FocusFrameHMargin || metric == PM_HeaderMargin ? standard + kExtraMargin : standard;
  }
};

void GiveAir(QTableView& grid) {
  auto* const style = new RoomyCells;
  style->setParent(&grid);
  grid.setStyle(style);
  grid.horizontalHeader()->setStyle(style);
}

}  // namespace

NoteGrid::NoteGrid(const QString& editorName, QWidget* parent)
    : QTableView(parent), delegate_(new NoteDelegate(editorName, this)) {
  setItemDelegate(delegate_);
  GiveAir(*this);
  setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setTabKeyNavigation(false);
  setAlternatingRowColors(true);
  setWordWrap(false);
  setCornerButtonEnabled(false);
  setHorizontalScrollMode(ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsMovable(false);
}

bool NoteGrid::EditorIsOpen() const {
  return state() == EditingState && delegate_->Editor();
}

void NoteGrid::CommitEditor() {
  if (!EditorIsOpen()) return;
  QWidget* const line = delegate_->Editor();
  commitData(line);
  closeEditor(line, QAbstractItemDelegate::NoHint);
}

void NoteGrid::ShowRow(int row) {
  const QModelIndex note = model()->index(row, NoteColumn());
  if (!note.isValid()) return;
  setCurrentIndex(note);
  // The note may be wider than the window; only the row is to come into view.
  scrollTo(model()->index(row, 0));
}

int NoteGrid::SelectedRow() const {
  if (!selectionModel()) return -1;
  const QModelIndexList rows = selectionModel()->selectedRows();
  int first = -1;
  for (const QModelIndex& row : rows) {
    if (row.row() == currentIndex().row()) return row.row();
    if (first < 0 || row.row() < first) first = row.row();
  }
  return first;
}

void NoteGrid::Copy() const {
  CopyGrid(*model(), selectionModel()->selection());
}

bool NoteGrid::EditByKey(const QModelIndex& note, EditTrigger trigger, QEvent* event) {
  if (trigger != AnyKeyPressed || note.data().toString().isEmpty())
    return QTableView::edit(note, trigger, event);
  // A stray letter goes behind the note instead of taking its place.
  if (!QTableView::edit(note, EditKeyPressed, nullptr)) return false;
  if (auto* const line = qobject_cast<QLineEdit*>(delegate_->Editor())) {
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

void NoteGrid::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  emit RowSelectionChanged();
}

bool NoteGrid::event(QEvent* event) {
  // The grid's own copy comes before a command of the main window on the same key.
  if (event->type() == QEvent::ShortcutOverride &&
      static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
    event->accept();
    return true;
  }
  return QTableView::event(event);
}

void NoteGrid::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    Copy();
    return;
  }
  QTableView::keyPressEvent(event);
}

void NoteGrid::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (!Hint || model()->rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(viewport()->rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, Hint());
}

}  // namespace spectrane
