#include "app/inputlock.h"

#include <QDialog>
#include <QGuiApplication>

#include <utility>

namespace spectrane {

void InputLock::Take() {
  on_ = true;
  // A window that is disabled forgets which of its widgets has the focus, its dialogs do so with it. The next
  // time it becomes active it would give the focus to the first button of a bar.
  focusBefore_ = window_.focusWidget();
  QList<std::pair<QDialog*, QPointer<QWidget>>> dialogs;
  for (QDialog* dialog : window_.findChildren<QDialog*>()) dialogs.append({dialog, dialog->focusWidget()});
  window_.setEnabled(false);
  // A dialog is a window of its own: what is typed into one that is open must not get lost.
  for (const auto& [dialog, focus] : dialogs) {
    dialog->setEnabled(true);
    if (focus) focus->setFocus();
  }
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

QWidget* InputLock::Release() {
  on_ = false;
  window_.setEnabled(true);
  QGuiApplication::restoreOverrideCursor();
  return focusBefore_;
}

}  // namespace spectrane
