#include <QApplication>

#include "spectrum/windows/frmwlsconfig.h"
#include "spectrum/windows/scanfixture.h"
#include "windowsupport/pictures.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge.
class ScanPictures : public ScanWindow {
 protected:
  /// Holmium with its bands marked in full, in a mode.
  void ShowBands(int mode, bool grid) {
    Settings.PutSetting(kScanSection, "Peak Height", "0.05");
    Settings.PutSetting(kScanSection, "Peak Detail Enable", "True");
    Settings.PutSetting(kScanSection, "Grid Enable", grid ? "True" : "False");
    Settings.PutSetting(kScanSection, "Smooth Enable", "False");
    delete Window.data();
    QFile::remove(PathOf("holmium.wls"));
    OpenHolmium();
    Window->resize(1000, 560);
    InDialog("FrmWLSConfig", [mode](QWidget& dialog) {
      constexpr const char* kModes[] = {"OptionAbs", "OptionTrans", "OptionEnergy"};
      Click(dialog, kModes[mode]);
      Click(dialog, "OKCmd");
    });
    Window->ShowConfigWindow();
    Window->FindPeak();
  }
  static void UseDarkPalette() {
    QPalette dark(QColor(0x2b, 0x2f, 0x36));
    dark.setColor(QPalette::Base, QColor(0x1f, 0x22, 0x27));
    dark.setColor(QPalette::AlternateBase, QColor(0x25, 0x29, 0x2f));
    QApplication::setPalette(dark);
  }
};

using DISABLED_ScanPictures = ScanPictures;

TEST_F(DISABLED_ScanPictures, Modes) {
  const QPalette light = QApplication::palette();
  for (const bool dark : {false, true}) {
    if (dark) UseDarkPalette();
    for (int mode = 0; mode < 3; ++mode) {
      for (const bool grid : {true, false}) {
        ShowBands(mode, grid);
        Shoot(*Window, QStringLiteral("holmium-%1%2%3")
                           .arg(QStringLiteral("ATE")[mode])
                           .arg(grid ? QStringLiteral("-grid") : QString())
                           .arg(dark ? QStringLiteral("-dark") : QString()));
      }
    }
    Window->DataTable()->resize(900, 220);
    Shoot(*Window->DataTable(), dark ? QStringLiteral("table-dark") : QStringLiteral("table"));
    FrmWLSConfig dialog(Main, Window->Settings());
    dialog.show();
    Shoot(dialog, dark ? QStringLiteral("config-dark") : QStringLiteral("config"));
  }
  QApplication::setPalette(light);
}

TEST_F(DISABLED_ScanPictures, PeakValue) {
  Open();
  Shoot(*Window, QStringLiteral("scan-empty"));
  InDialog("FrmPeakHeight", [](QWidget& dialog) {
    Shoot(dialog, QStringLiteral("peakvalue"));
    dialog.close();
  });
  Window->mmuSetPeakHeight();
}

}  // namespace
}  // namespace spectrane::testing_windows
