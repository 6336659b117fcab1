#pragma once

#include <QList>
#include <QObject>

#include <functional>
#include <map>
#include <vector>

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;
class QToolButton;
class QWidget;

namespace spectrane {

/// Menus and button bars of the main window, made from the command table.
class CommandBars : public QObject {
  Q_OBJECT

 public:
  /// Makes the actions; `run` gets the number of the one that was chosen.
  CommandBars(QMainWindow& window, std::function<void(int)> run);

  void BuildMenus(const std::function<void(QMenu&)>& fillRecentFiles);
  void BuildToolBars();
  /// A bar that was made elsewhere takes part in icon size and keyboard.
  void Adopt(QToolBar* bar);

  QAction* Action(int command) const;
  /// The tip of a command: its words, its key, and `reason` below them.
  void Explain(int command, const QString& reason);
  /// Null for a view command that is no bar of buttons.
  QToolBar* Bar(int viewCommand) const;
  /// Of each bar on show the first button that takes the focus.
  QList<QWidget*> Entrances() const;
  QMenu* PopupMenu() { return popup_; }
  void SetBigIcons(bool big);
  void ShowExpandButtons(bool shown);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeAction(int command);
  void AddExpandButton(QToolBar* bar);
  void MakeReachable(QToolBar* bar);

  QMainWindow& window_;
  std::function<void(int)> run_;
  std::map<int, QAction*> actions_;
  std::map<int, QString> reasons_;
  std::map<int, QToolBar*> barOf_;
  std::vector<QToolBar*> bars_;
  std::vector<QAction*> expandActions_;
  QMenu* popup_ = nullptr;
};

/// Pixels of the two icon sizes.
inline constexpr int kSmallIcon = 24;
inline constexpr int kBigIconSize = 32;

}  // namespace spectrane
