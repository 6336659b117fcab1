#include "app/ground/frmdatatabel.h"

#include <QAction>
#include <QEvent>
#include <QHeaderView>
#include <QTabBar>
#include <QTableView>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

#include "app/ground/gridcopy.h"
#include "app/ground/languagefont.h"
#include "app/ground/pointtable.h"

namespace spectrane {
namespace {

/// Of a rider [characters].
constexpr int kMostCaption = 30;

}  // namespace

FrmDataTabel::FrmDataTabel(const QString& title, const QString& name, const std::vector<DataTab>& tabs,
                           LayoutStore& layout)
    : name_(name), layout_(layout), tabs_(new QTabWidget(this)) {
  ApplyLanguageFont(*this);
  setObjectName(QStringLiteral("FrmDataTabel"));
  SetTitle(title);
  tabs_->setObjectName(QStringLiteral("DataTabs"));
  tabs_->setAccessibleName(title);
  tabs_->tabBar()->setObjectName(QStringLiteral("DataTabBar"));
  tabs_->tabBar()->setAccessibleName(title);
  tabs_->setDocumentMode(true);
  for (const DataTab& tab : tabs) {
    QTableView* const grid = MakeGrid(tab, static_cast<int>(grids_.size()));
    grids_.push_back(grid);
    tabs_->addTab(grid, tab.Caption.trimmed());
  }
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(tabs_);
  // The keyboard goes to the figures, not to their tabs.
  setFocusProxy(tabs_->currentWidget());
  connect(tabs_, &QTabWidget::currentChanged, this, [this] { setFocusProxy(tabs_->currentWidget()); });
  for (int tab = 0; tab < TabCount(); ++tab) {
    FitColumns(*Grid(tab));
    layout_.RestoreColumns(LayoutName(tab), *Grid(tab)->horizontalHeader());
    widthsAtStart_.push_back(Widths(tab));
  }
  layout_.Join(*this);
}

FrmDataTabel::~FrmDataTabel() {
  layout_.Leave(*this);
  for (int tab = 0; tab < TabCount(); ++tab) {
    if (Widths(tab) != widthsAtStart_[static_cast<std::size_t>(tab)])
      layout_.StoreColumns(LayoutName(tab), *Grid(tab)->horizontalHeader());
  }
}

QTableView* FrmDataTabel::MakeGrid(const DataTab& tab, int number) {
  auto* const grid = new QTableView(this);
  grid->setObjectName(QStringLiteral("DataGrid%1").arg(number));
  grid->setAccessibleName(tab.Caption.trimmed());
  grid->setModel(tab.Model);
  grid->setSelectionBehavior(QAbstractItemView::SelectRows);
  grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid->setTabKeyNavigation(false);
  grid->setWordWrap(false);
  grid->setAlternatingRowColors(true);
  grid->setFrameShape(QFrame::NoFrame);
  grid->verticalHeader()->hide();
  // Rows of one height: none of thousands has to be measured.
  grid->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 4);
  grid->horizontalHeader()->setHighlightSections(false);
  auto* const copy = new QAction(tr("&Copy"), grid);
  copy->setObjectName(QStringLiteral("GridCopy%1").arg(number));
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetShortcut);
  connect(copy, &QAction::triggered, this, &FrmDataTabel::Copy);
  grid->addAction(copy);
  grid->setContextMenuPolicy(Qt::ActionsContextMenu);
  return grid;
}

void FrmDataTabel::FitColumns(QTableView& grid) const {
  const auto* const model = static_cast<PointTable*>(grid.model());
  grid.ensurePolished();
  const int margin = grid.fontMetrics().averageCharWidth() * 3;
  int column = 0;
  for (const PointColumn& each : model->Columns()) {
    const int figure = grid.fontMetrics().horizontalAdvance(each.Widest) + margin;
    grid.setColumnWidth(column, std::max(grid.horizontalHeader()->sectionSizeHint(column), figure));
    ++column;
  }
}

QString FrmDataTabel::LayoutName(int tab) const {
  return name_ + u'/' + Grid(tab)->objectName();
}

QList<int> FrmDataTabel::Widths(int tab) const {
  QList<int> widths;
  for (int column = 0; column < Grid(tab)->model()->columnCount(); ++column)
    widths.append(Grid(tab)->columnWidth(column));
  return widths;
}

void FrmDataTabel::SetTitle(const QString& title) {
  if (title == windowTitle()) return;
  setWindowTitle(title);
  setAccessibleName(title);
  emit TitleChanged();
}

void FrmDataTabel::SelectTab(int tab) {
  tabs_->setCurrentIndex(tab);
}

void FrmDataTabel::SetTabCaption(int tab, const QString& caption) {
  // A name that is long would leave no room for the others. An "&" in it is no access key.
  const QFontMetrics metrics = tabs_->tabBar()->fontMetrics();
  const int room = metrics.averageCharWidth() * kMostCaption;
  tabs_->setTabText(tab,
                    metrics.elidedText(caption, Qt::ElideMiddle, room).replace(u'&', QStringLiteral("&&")));
  tabs_->setTabToolTip(tab, caption);
  tabs_->setTabVisible(tab, !caption.isEmpty());
  Grid(tab)->setAccessibleName(caption);
}

int FrmDataTabel::SelectedTab() const {
  return tabs_->currentIndex();
}

int FrmDataTabel::TabCount() const {
  return static_cast<int>(grids_.size());
}

QTableView* FrmDataTabel::Grid(int tab) const {
  return grids_.at(static_cast<std::size_t>(tab));
}

void FrmDataTabel::Copy() {
  const QTableView* const grid = Grid(SelectedTab());
  CopyGrid(*grid->model(), grid->selectionModel()->selection());
}

void FrmDataTabel::Forget() {
  for (int tab = 0; tab < TabCount(); ++tab) {
    FitColumns(*Grid(tab));
    widthsAtStart_[static_cast<std::size_t>(tab)] = Widths(tab);
  }
}

void FrmDataTabel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::FontChange) return;
  for (QTableView* grid : grids_)
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 4);
}

}  // namespace spectrane
