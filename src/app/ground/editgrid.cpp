#include "app/ground/editgrid.h"

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

/// Makes the editor of a cell and remembers it while it lives.
class CellDelegate : public QStyledItemDelegate {
 public:
  CellDelegate(const QString& editorName, EditGrid& grid)
      : QStyledItemDelegate(&grid), grid_(grid), editorName_(editorName) {}

  QWidget* Editor() const { return editor_; }

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                        const QModelIndex& index) const override {
    auto* const line = new QLineEdit(parent);
    line->setObjectName(editorName_);
    line->setTextMargins(kExtraMargin, 0, kExtraMargin, 0);
    line->setAlignment(Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()));
    line->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
    editor_ = line;
    return line;
  }

 protected:
  // Enter takes the text at once, not in the next round of the message loop; Tab does the same, where it
  // would otherwise walk on over cells that cannot be edited.
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::KeyPress && object == editor_) {
      const auto& press = static_cast<const QKeyEvent&>(*event);
      if (grid_.TakesKey(press)) return true;
      const int key = press.key();
      if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab || key == Qt::Key_Backtab ||
          grid_.LeavesEditor(key)) {
        QWidget* const line = editor_;
        emit commitData(line);
        emit closeEditor(line, NoHint);
        grid_.EditorLeftBy(key);
        return true;
      }
    }
    return QStyledItemDelegate::eventFilter(object, event);
  }

 private:
  EditGrid& grid_;
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

EditGrid::EditGrid(const QString& editorName, QWidget* parent)
    : QTableView(parent), delegate_(new CellDelegate(editorName, *this)) {
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

bool EditGrid::EditorIsOpen() const {
  return state() == EditingState && delegate_->Editor();
}

void EditGrid::CommitEditor() {
  if (!EditorIsOpen()) return;
  QWidget* const line = delegate_->Editor();
  commitData(line);
  closeEditor(line, QAbstractItemDelegate::NoHint);
}

QWidget* EditGrid::Editor() const {
  return delegate_->Editor();
}

void EditGrid::EditorLeftBy(int) {}

bool EditGrid::LeavesEditor(int) const {
  return false;
}

bool EditGrid::TakesKey(const QKeyEvent&) {
  return false;
}

int EditGrid::SelectedRow() const {
  if (!selectionModel()) return -1;
  const QModelIndexList rows = selectionModel()->selectedRows();
  int first = -1;
  for (const QModelIndex& row : rows) {
    if (row.row() == currentIndex().row()) return row.row();
    if (first < 0 || row.row() < first) first = row.row();
  }
  return first;
}

void EditGrid::Copy() const {
  CopyGrid(*model(), selectionModel()->selection());
}

void EditGrid::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  emit RowSelectionChanged();
}

bool EditGrid::event(QEvent* event) {
  // The grid's own copy comes before a command of the main window on the same key.
  if (event->type() == QEvent::ShortcutOverride &&
      static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
    event->accept();
    return true;
  }
  return QTableView::event(event);
}

void EditGrid::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    Copy();
    return;
  }
  QTableView::keyPressEvent(event);
}

void EditGrid::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (!Hint || model()->rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(viewport()->rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, Hint());
}

}  // namespace spectrane
