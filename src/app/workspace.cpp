#include "app/workspace.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPainter>
#include <QTabBar>

#include "app/ground/documentwindow.h"

namespace spectrane {

Workspace::Workspace(QWidget* parent) : QMdiArea(parent) {
  setObjectName(QStringLiteral("TabWorkspace"));
  setAccessibleName(tr("Windows"));
  setDocumentMode(true);
  setTabsClosable(true);
  setTabsMovable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setOption(QMdiArea::DontMaximizeSubWindowOnActivation, false);
  MixGround();
  connect(this, &QMdiArea::subWindowActivated, this, [this] {
    viewport()->update();
    emit ActiveChanged();
  });
}

void Workspace::NameTabs() {
  if (auto* tabs = findChild<QTabBar*>()) {
    tabs->setObjectName(QStringLiteral("WindowTabs"));
    tabs->setAccessibleName(tr("Open windows"));
  }
}

void Workspace::MixGround() {
  // A shade off the windows' own ground, so that their edges show.
  const QColor window = palette().color(QPalette::Window);
  setBackground(window.lightness() > 127 ? window.darker(106) : window.darker(130));
}

void Workspace::changeEvent(QEvent* event) {
  QMdiArea::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) MixGround();
}

DocumentWindow* Workspace::Active() const {
  const QMdiSubWindow* current = currentSubWindow();
  return current ? qobject_cast<DocumentWindow*>(current->widget()) : nullptr;
}

QList<DocumentWindow*> Workspace::Documents() const {
  QList<DocumentWindow*> all;
  for (const QMdiSubWindow* window : subWindowList(QMdiArea::CreationOrder)) {
    if (auto* document = qobject_cast<DocumentWindow*>(window->widget())) all.append(document);
  }
  return all;
}

void Workspace::Add(DocumentWindow* document) {
  QMdiSubWindow* window = addSubWindow(document);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setObjectName(document->objectName() + QStringLiteral("Frame"));
  window->setAccessibleName(document->Caption());
  // The keys of its own menu are those of the program's commands, and two owners of a key cancel each other.
  for (QAction* action : window->systemMenu()->actions()) action->setShortcuts({});
  NameTabs();
  if (!document->windowIcon().isNull()) window->setWindowIcon(document->windowIcon());
  // The first free window, and every one after a maximised one, fills the area as tabs do.
  if (HasTabs()) {
    window->showMaximized();
  } else {
    window->resize(viewport()->size() * 3 / 4);
    window->show();
  }
  document->setFocus();
}

void Workspace::Activate(DocumentWindow* document) {
  for (QMdiSubWindow* window : subWindowList()) {
    if (window->widget() == document) setActiveSubWindow(window);
  }
}

void Workspace::SetTabs(bool tabs) {
  if (tabs == HasTabs()) return;
  setViewMode(tabs ? TabbedView : SubWindowView);
  // The tab bar is made anew with each change of view.
  if (tabs) {
    setTabsClosable(true);
    setTabsMovable(true);
    NameTabs();
  } else {
    for (QMdiSubWindow* window : subWindowList()) window->showNormal();
    CascadeAll();
  }
}

QList<QMdiSubWindow*> Workspace::Arrangeable() {
  QList<QMdiSubWindow*> windows;
  for (QMdiSubWindow* window : subWindowList(QMdiArea::CreationOrder)) {
    if (window->isMinimized()) continue;
    if (window->isMaximized()) window->showNormal();
    windows.append(window);
  }
  return windows;
}

void Workspace::CascadeAll() {
  if (HasTabs()) return;
  const QList<QMdiSubWindow*> windows = Arrangeable();
  const int step = fontMetrics().height() * 2;
  const QSize size = viewport()->size() * 2 / 3;
  int place = 0;
  for (QMdiSubWindow* window : windows) {
    // Never so far down that the title bar is out of reach.
    if (place * step + size.height() > viewport()->height()) place = 0;
    window->setGeometry(
        QRect(QPoint(place * step, place * step), size.expandedTo(window->minimumSizeHint())));
    window->raise();
    ++place;
  }
  if (QMdiSubWindow* active = currentSubWindow()) active->raise();
}

void Workspace::TileAll(bool beside) {
  if (HasTabs()) return;
  const QList<QMdiSubWindow*> windows = Arrangeable();
  const auto count = static_cast<int>(windows.size());
  const QSize area = viewport()->size();
  for (int i = 0; i < count; ++i) {
    const int from = (beside ? area.width() : area.height()) * i / count;
    const int to = (beside ? area.width() : area.height()) * (i + 1) / count;
    windows[i]->setGeometry(beside ? QRect(from, 0, to - from, area.height())
                                   : QRect(0, from, area.width(), to - from));
  }
}

void Workspace::SetWelcome(const QString& heading, const QStringList& steps) {
  if (heading == heading_ && steps == steps_) return;
  heading_ = heading;
  steps_ = steps;
  if (subWindowList().isEmpty()) viewport()->update();
}

void Workspace::paintEvent(QPaintEvent* event) {
  QMdiArea::paintEvent(event);
  if (!subWindowList().isEmpty()) return;
  QPainter painter(viewport());
  QFont headingFont = font();
  headingFont.setPointSizeF(font().pointSizeF() * 1.8);
  const QFontMetrics headingMetrics(headingFont);
  const QFontMetrics stepMetrics(font());
  const int lineHeight = stepMetrics.height() * 3 / 2;
  int width = headingMetrics.horizontalAdvance(heading_);
  for (const QString& step : steps_) width = std::max(width, stepMetrics.horizontalAdvance(step));
  const int height = headingMetrics.height() * 2 + lineHeight * static_cast<int>(steps_.size());
  const int left = std::max(12, (viewport()->width() - width) / 2);
  int y = std::max(12, (viewport()->height() - height) / 2 - lineHeight);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.setFont(headingFont);
  painter.drawText(left, y + headingMetrics.ascent(), heading_);
  y += headingMetrics.height() * 3 / 2;
  painter.setFont(font());
  for (const QString& step : steps_) {
    painter.drawText(left, y + stepMetrics.ascent(), step);
    y += lineHeight;
  }
}

void Workspace::contextMenuEvent(QContextMenuEvent* event) {
  // One that nothing in a child wanted climbs up to here.
  event->setAccepted(!viewport()->childAt(viewport()->mapFromGlobal(event->globalPos())));
  if (event->isAccepted()) emit PopupWanted(event->globalPos());
}

}  // namespace spectrane
