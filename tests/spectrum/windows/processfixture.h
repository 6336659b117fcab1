#pragma once

#include <QApplication>
#include <QTimer>

#include "app/ground/commands.h"
#include "spectrum/windows/processwindow.h"
#include "spectrum/windows/scanfixture.h"

namespace spectrane::testing_windows {

/// A spectrum window, and the windows that are opened from it.
class ProcessFixture : public ScanWindow {
 protected:
  /// The window that was opened last, which must be of that kind.
  template <typename T>
  T& Last() {
    return dynamic_cast<T&>(*Main.Children.back());
  }
  static QAbstractItemModel& Grid(const DocumentWindow& window, int tab) {
    return *window.DataTable()->Grid(tab)->model();
  }
  static QString TabText(const DocumentWindow& window, int tab) {
    return Find<QTabWidget>(*window.DataTable(), "DataTabs")->tabText(tab);
  }
  static const CurveView& ViewOf(const DocumentWindow& window) {
    return Find<PicCurve>(window, "PicCurve")->View();
  }
  /// Does something in the options of a window.
  void OptionsOf(DocumentWindow& window, const char* name, std::function<void(QWidget& dialog)> act) {
    bool opened = false;
    InDialog(name, [&opened, act = std::move(act)](QWidget& dialog) {
      opened = true;
      act(dialog);
    });
    window.ShowConfigWindow();
    EXPECT_TRUE(opened);
  }
  /// In the middle of something that the window does: its options are neither offered nor opened.
  static void ExpectNoOptions(DocumentWindow& window) {
    EXPECT_TRUE(window.RunsNow());
    EXPECT_FALSE(window.Offers(kTestOption));
    bool opened = false;
    QTimer look;
    look.setSingleShot(true);
    QObject::connect(&look, &QTimer::timeout, &look, [&opened] {
      QWidget* const dialog = QApplication::activeModalWidget();
      opened = dialog != nullptr;
      if (opened) dialog->close();
    });
    look.start(0);
    window.ShowConfigWindow();
    EXPECT_FALSE(opened);
  }
  std::string Key(const char* section, const char* key) {
    return Setting(Folder.Path()).GetSetting(section, key);
  }
  /// A measured file with these transmittances [whole percent], from 500 nm upward.
  QString Measured(const char* name, const std::vector<int>& percents) {
    SaveSpectrum(WLSModule(), Folder.Path(name), OtherOption(), MeasuredPoints(percents));
    return PathOf(name);
  }
  static std::vector<double> AbsOf(const SpectrumWindow& window) {
    const std::span<const double> abs = window.Document().Abs();
    return {abs.begin(), abs.end()};
  }
};

}  // namespace spectrane::testing_windows
