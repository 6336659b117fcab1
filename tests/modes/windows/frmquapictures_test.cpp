#include <QDir>

#include "modes/windows/frmquafixture.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge, in the folder that SPECTRANE_PICTURES names; run by
/// --gtest_also_run_disabled_tests.
class QuaPictures : public QuaWindow {
 protected:
  static void Shoot(QWidget& widget, const char* name) {
    QCoreApplication::processEvents();
    const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
    EXPECT_TRUE(QDir().mkpath(folder));
    EXPECT_TRUE(widget.grab().save(folder + u'/' + QLatin1String(name) + QStringLiteral(".png")));
  }
  void FiveStandards() {
    const struct {
      const char* Dye;
      const char* Conc;
    } standards[] = {{"dye-1", "1"}, {"dye-3", "4"}, {"dye-5", "8"}, {"dye-7", "15"}, {"dye-8", "20"}};
    for (int row = 0; row < 5; ++row) {
      TypeConc(row, standards[row].Conc);
      Insert(standards[row].Dye);
      Click(Standards, row, kAbs);
    }
  }
};

using DISABLED_QuaPictures = QuaPictures;

TEST_F(DISABLED_QuaPictures, Empty) {
  Open(5);
  Shoot(*Window, "qua-empty");
  Blank();
  TypeConc(0, "1");
  Shoot(*Window, "qua-blank");
  Window->resize(500, 360);
  Shoot(*Window, "qua-empty-narrow");
}

TEST_F(DISABLED_QuaPictures, Measured) {
  Open(5);
  Blank();
  FiveStandards();
  for (const char* dye : {"dye-2", "dye-4", "dye-6", "closed"}) Sample(dye);
  Shoot(*Window, "qua-measured");
  Click(Standards, 2, 0);
  Shoot(*Window, "qua-selected");
  Window->resize(1500, 900);
  Shoot(*Window, "qua-wide");
}

TEST_F(DISABLED_QuaPictures, TwoWavelengths) {
  Settings.PutSetting("Quantitative Measurement", "WaveLength Number", "2");
  Settings.PutSetting("Quantitative Measurement", "WaveLength 2", "600");
  Open(3);
  Window->resize(1300, 700);
  Blank();
  for (int row = 0; row < 3; ++row) {
    Standards->model()->setData(Standards->model()->index(row, kConc + 2), QStringLiteral("4"));
    Insert("dye-3");
    if (row < 2) Click(Standards, row, kAbs);
  }
  Shoot(*Window, "qua-two");
}

TEST_F(DISABLED_QuaPictures, Typed) {
  OpenWithCoefficients();
  Shoot(*Window, "qua-typed");
}

}  // namespace
}  // namespace spectrane::testing_windows
