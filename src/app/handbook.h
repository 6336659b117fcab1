#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <span>

class QWidget;

namespace spectrane {

/// Where the handbook speaks of a window or dialog.
struct HandbookRow {
  /// Object name of the window.
  const char* Window;
  /// File in the handbook's folder, and after "#" the place in it.
  const char* Page;
};

inline constexpr const char* kHandbookFirstPage = "index.html";

std::span<const HandbookRow> HandbookRows();
/// The page of the innermost window around `widget` that has one; the first page when none has.
QString HandbookPageOf(const QWidget* widget);

/// Folders that may hold the handbook, the likeliest first: those of an installed program, and that of the
/// sources for a program in its build folder.
QStringList HandbookFolders(const QString& programFolder);

/// Has the desktop show a page of the handbook; on Windows a help.chm in the application folder goes before.
/// Empty when it was passed on, otherwise what to tell the person.
QString ShowHandbook(const QString& page, const QStringList& folders, const QString& applicationFolder);

/// F1 in dialogs, whose keys the main window's commands do not get.
class DialogHelpKey : public QObject {
  Q_OBJECT

 public:
  /// `help` is called with the widget that has the focus.
  DialogHelpKey(QObject* parent, std::function<void(const QWidget*)> help);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::function<void(const QWidget*)> help_;
};

}  // namespace spectrane
