#pragma once

#include <QPointer>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string_view>

#include "app/ground/mainwindow.h"

class QLabel;

namespace spectrane {

/// Longest time [s] that exchanges of these command texts can take together.
int LongestSeconds(std::initializer_list<std::string_view> commands);

/// The plain box that asks to wait while the instrument keeps the program busy. It is on the screen when the
/// constructor returns and gone with the object; the person cannot close it, and the focus is back where it
/// was afterwards. While an exchange blocks the program, the seconds that have passed go on being shown.
class FrmWait : public QWidget {
  Q_OBJECT

 public:
  /// Yields, to all but the person's input, until the box is painted. `longestSeconds` is the longest that
  /// the wait can take; 0: no times are shown. Stands over the dialog that is open, or over the main window.
  explicit FrmWait(MainWindow& frame, int longestSeconds = 0);
  ~FrmWait() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  static QWidget& ParentFor(MainWindow& frame);
  QLabel* MakeLine(const char* name, const QString& text);
  void PlaceOver(const QWidget& frame);
  void WaitUntilPainted();
  void ShowTime();

  SCI& line_;
  int longestSeconds_;
  std::int64_t startMs_;
  std::int64_t shownSeconds_ = 0;
  QLabel* time_ = nullptr;
  std::function<void()> watchedBefore_;
  QPointer<QWidget> activeBefore_;
};

}  // namespace spectrane
