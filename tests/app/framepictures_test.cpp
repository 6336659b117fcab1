#include "app/barlooks.h"
#include "app/framefixture.h"
#include "windowsupport/pictures.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge.
class FramePictures : public FrameFixture {
 protected:
  void Shoot(const QString& name) { testing_windows::Shoot(*Main, name); }
  void Furnish(QSize size) {
    Start();
    Main->showNormal();
    Main->resize(size);
    ConnectNow();
    NewPhotometry();
    Choose(kSetBlank);
    for (const char* sample : {"dye-2", "dye-4", "dye-6"}) {
      ASSERT_TRUE(Instrument.Model().PutInBeam(sample, Time.NowMs()));
      Choose(kStartTest);
    }
  }
};

using DISABLED_FramePictures = FramePictures;

TEST_F(DISABLED_FramePictures, Looks) {
  Furnish(QSize(1120, 300));
  for (int look = 0; look < BarLookNames().size(); ++look) {
    Main->SetMenuStyle(look);
    Shoot(QStringLiteral("look-%1").arg(look));
  }
  const QPalette light = QApplication::palette();
  QPalette dark(QColor(0x2b, 0x2f, 0x36));
  dark.setColor(QPalette::Base, QColor(0x1f, 0x22, 0x27));
  dark.setColor(QPalette::AlternateBase, QColor(0x25, 0x29, 0x2f));
  QApplication::setPalette(dark);
  for (int look = 0; look < BarLookNames().size(); ++look) {
    Main->SetMenuStyle(look);
    Shoot(QStringLiteral("dark-%1").arg(look));
  }
  QApplication::setPalette(light);
}

TEST_F(DISABLED_FramePictures, Narrow) {
  Furnish(QSize(640, 420));
  Shoot(QStringLiteral("narrow"));
}

}  // namespace
}  // namespace spectrane::testing_windows
