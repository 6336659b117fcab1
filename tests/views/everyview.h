#pragma once

#include <QStringList>

#include "app/framefixture.h"

namespace spectrane::testing_windows {

/// A way through the whole program that has each window and each dialog in front once, with the simulated
/// instrument and the example files.
class EveryView : public FrameFixture {
 protected:
  /// Looks at what is in front; `view` says which it is.
  using Look = std::function<void(QWidget& window, const QString& view)>;

  /// Names of all views, in the order in which they came.
  QStringList Tour(const Look& look);

 private:
  void VisitFrame();
  void VisitBoxes();
  void VisitPhotometry();
  void VisitModes();
  void VisitSpectra();
  void VisitTools();
  void VisitSampler();

  /// The main window with the active child in it.
  void Window(const char* view);
  /// Does `open`, which must bring up that dialog, looks at it after `prepare`, and closes it.
  void Dialog(const char* name, const std::function<void()>& open,
              const std::function<void(QWidget&)>& prepare = {}, const char* view = nullptr);
  void DialogOf(int command, const char* name, const std::function<void(QWidget&)>& prepare = {},
                const char* view = nullptr);
  /// Confirms the dialog of that command as it is.
  void Confirm(int command, const char* name);
  void OpenExample(const char* file);
  void CloseWindows();
  static void Settle();

  Look look_;
  QStringList seen_;
};

}  // namespace spectrane::testing_windows
