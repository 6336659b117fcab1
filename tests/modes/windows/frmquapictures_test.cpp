#include "modes/windows/frmquafixture.h"
#include "windowsupport/pictures.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge.
using DISABLED_QuaPictures = QuaWindow;

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
  MeasureFiveStandards();
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
