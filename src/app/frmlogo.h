#pragma once

#include <QDialog>
#include <QTimer>

#include <functional>

#include "app/ground/mainwindow.h"
#include "base/brand.h"

class QLabel;

namespace spectrane {

/// What the start window needs of the program around it.
struct LogoWork {
  /// Hands a path to a copy of the program that runs already. False: there is none, or it does not take it.
  std::function<bool(const QString& path)> SendToRunningCopy;
  /// Opens the New File guide.
  std::function<void()> FileNew;
  /// Ends the process.
  std::function<void()> EndProcess;
};

/// The start window: title and version of the brand, gone after a while, at a click or at a key. At present
/// the program comes up without it.
class FrmLogo : public QDialog {
  Q_OBJECT

 public:
  FrmLogo(MainWindow& frame, LogoWork work, const Brand& brand = BuildBrand());

  /// To be called once, before the window is shown. `commandLine` is what the program was started with, its
  /// quotation marks included; when a running copy takes the path in it, the process ends.
  void Load(const QString& commandLine);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  bool HandOver(const QString& commandLine);

  MainWindow& frame_;
  LogoWork work_;
  QTimer startTimer_{this};
  bool closed_ = false;
};

}  // namespace spectrane
