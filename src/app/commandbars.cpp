#include "app/commandbars.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStringList>
#include <QToolBar>
#include <QToolButton>

#include "app/commandtable.h"
#include "app/ground/commandicon.h"
#include "app/ground/words.h"

namespace spectrane {
namespace {

QList<QKeySequence> KeysOf(const CommandRow& row) {
  QList<QKeySequence> keys;
  for (const QString& key : QString::fromLatin1(row.Keys).split(u';', Qt::SkipEmptyParts)) {
    keys.append(QKeySequence(key, QKeySequence::PortableText));
  }
  return keys;
}

QString CaptionOf(const CommandRow& row) {
  return row.TextId != 0 ? Caption(row.TextId) : QString::fromLatin1(row.Own);
}

/// Captions that came with a key keep it; the others take letters that are left.
void GiveAccessKeys(const QMenu& menu) {
  QSet<QChar> used;
  for (const bool own : {true, false}) {
    for (QAction* action : menu.actions()) {
      if (!action->isSeparator() && action->text().contains(u'&') == own) {
        action->setText(WithAccessKey(action->text(), used));
      }
    }
  }
}

/// The next button of the bar that can be chosen, going round; null when there is none.
QToolButton* Neighbour(const QToolBar* bar, const QToolButton* from, int step) {
  QList<QToolButton*> buttons;
  for (QAction* action : bar->actions()) {
    auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action));
    if (button && button->isVisible() && (button->isEnabled() || button == from)) buttons.append(button);
  }
  const qsizetype at = buttons.indexOf(const_cast<QToolButton*>(from));
  if (at < 0 || buttons.size() < 2) return nullptr;
  return buttons[(at + step + buttons.size()) % buttons.size()];
}

}  // namespace

CommandBars::CommandBars(QMainWindow& window, std::function<void(int)> run)
    : window_(window), run_(std::move(run)) {
  for (const CommandRow& row : CommandRows()) MakeAction(row.Number);
}

void CommandBars::MakeAction(int command) {
  const CommandRow& row = CommandRowOf(command);
  auto* action = new QAction(CaptionOf(row), &window_);
  action->setObjectName(QStringLiteral("Command%1").arg(command));
  action->setCheckable(row.Checkable);
  // A key or a pedal that is held down starts one test, not one after the other.
  action->setAutoRepeat(command == kZoomIn || command == kZoomOut);
  action->setIcon(CommandIcon(command));
  action->setMenuRole(QAction::NoRole);
  const QList<QKeySequence> keys = KeysOf(row);
  action->setShortcuts(keys);
  action->setStatusTip({});
  connect(action, &QAction::triggered, this, [this, command] { run_(command); });
  window_.addAction(action);
  actions_[command] = action;
  Explain(command, {});
}

void CommandBars::Explain(int command, const QString& reason) {
  QAction& action = *actions_.at(command);
  const auto [explained, isNew] = reasons_.try_emplace(command);
  if (!isNew && explained->second == reason) return;
  explained->second = reason;
  QString tip = PlainCaption(action.text());
  const QKeySequence key = action.shortcut();
  if (!key.isEmpty()) tip += QStringLiteral(" (") + key.toString(QKeySequence::NativeText) + u')';
  if (!reason.isEmpty()) tip += u'\n' + reason;
  action.setToolTip(tip);
}

QAction* CommandBars::Action(int command) const {
  const auto at = actions_.find(command);
  return at == actions_.end() ? nullptr : at->second;
}

QToolBar* CommandBars::Bar(int viewCommand) const {
  const auto at = barOf_.find(viewCommand);
  return at == barOf_.end() ? nullptr : at->second;
}

void CommandBars::BuildMenus(const std::function<void(QMenu&)>& fillRecentFiles) {
  std::vector<QMenu*> open;
  for (const MenuRow& row : MenuRows()) {
    switch (row.Is) {
      case MenuRow::Kind::Menu:
        open = {window_.menuBar()->addMenu(Caption(row.Number))};
        open.back()->setObjectName(QStringLiteral("Menu%1").arg(row.Number));
        break;
      case MenuRow::Kind::Submenu:
        open.push_back(open.back()->addMenu(Caption(row.Number)));
        open.back()->setObjectName(QStringLiteral("Menu%1").arg(row.Number));
        break;
      case MenuRow::Kind::SubmenuEnd:
        open.pop_back();
        break;
      case MenuRow::Kind::Item:
        open.back()->addAction(Action(row.Number));
        break;
      case MenuRow::Kind::NewFiles:
        for (const int command : kNewFileCommands) open.back()->addAction(Action(command));
        break;
      case MenuRow::Kind::Separator:
        open.back()->addSeparator();
        break;
      case MenuRow::Kind::RecentFiles:
        fillRecentFiles(*open.back());
        break;
    }
  }
  for (const QMenu* menu : window_.menuBar()->findChildren<QMenu*>()) GiveAccessKeys(*menu);
  popup_ = new QMenu(&window_);
  popup_->setObjectName(QStringLiteral("PopupMenu"));
  for (const int command : PopupCommands()) popup_->addAction(Action(command));
}

void CommandBars::BuildToolBars() {
  for (const BarRow& row : BarRows()) {
    auto* bar = new QToolBar(Caption(row.ViewCommand), &window_);
    bar->setObjectName(QString::fromLatin1(row.ObjectName));
    for (const int command : row.Commands) bar->addAction(Action(command));
    window_.addToolBar(bar);
    barOf_[row.ViewCommand] = bar;
    AddExpandButton(bar);
    Adopt(bar);
  }
}

void CommandBars::Adopt(QToolBar* bar) {
  bar->setAccessibleName(bar->windowTitle());
  bars_.push_back(bar);
  MakeReachable(bar);
}

void CommandBars::AddExpandButton(QToolBar* bar) {
  // Lists all commands of the bar by their words: those that did not fit into the window as well.
  auto* button = new QToolButton(bar);
  button->setObjectName(bar->objectName() + QStringLiteral("Expand"));
  button->setAccessibleName(bar->windowTitle() + QStringLiteral(": all commands"));
  button->setToolTip(button->accessibleName());
  button->setArrowType(Qt::DownArrow);
  button->setPopupMode(QToolButton::InstantPopup);
  button->setStyleSheet(QStringLiteral("QToolButton::menu-indicator{image:none;width:0}"));
  button->setIconSize(QSize(12, 12));
  auto* menu = new QMenu(button);
  menu->addActions(bar->actions());
  button->setMenu(menu);
  expandActions_.push_back(bar->addWidget(button));
}

void CommandBars::MakeReachable(QToolBar* bar) {
  for (QAction* action : bar->actions()) {
    auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action));
    if (!button) continue;
    button->setFocusPolicy(Qt::TabFocus);
    button->installEventFilter(this);
    if (button->objectName().isEmpty()) button->setObjectName(bar->objectName() + action->objectName());
    if (button->accessibleName().isEmpty()) button->setAccessibleName(PlainCaption(action->text()));
  }
}

bool CommandBars::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  auto* button = qobject_cast<QToolButton*>(watched);
  auto* bar = button ? qobject_cast<QToolBar*>(button->parentWidget()) : nullptr;
  if (!bar) return false;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    button->menu() ? button->showMenu() : button->click();
    return true;
  }
  if (key == Qt::Key_Escape) {
    window_.centralWidget()->setFocus(Qt::OtherFocusReason);
    return true;
  }
  const bool forward = key == Qt::Key_Right || key == Qt::Key_Down;
  if (!forward && key != Qt::Key_Left && key != Qt::Key_Up) return false;
  if (QToolButton* next = Neighbour(bar, button, forward ? 1 : -1)) next->setFocus(Qt::TabFocusReason);
  return true;
}

QList<QWidget*> CommandBars::Entrances() const {
  QList<QWidget*> entrances;
  for (const QToolBar* bar : bars_) {
    if (!bar->isVisible()) continue;
    for (QAction* action : bar->actions()) {
      QWidget* const button = bar->widgetForAction(action);
      if (!button || !button->isVisible() || !button->isEnabled() || button->focusPolicy() == Qt::NoFocus)
        continue;
      entrances.append(button);
      break;
    }
  }
  return entrances;
}

void CommandBars::SetBigIcons(bool big) {
  const int pixels = big ? kBigIconSize : kSmallIcon;
  for (QToolBar* bar : bars_) bar->setIconSize(QSize(pixels, pixels));
}

void CommandBars::ShowExpandButtons(bool shown) {
  for (QAction* action : expandActions_) action->setVisible(shown);
}

}  // namespace spectrane
