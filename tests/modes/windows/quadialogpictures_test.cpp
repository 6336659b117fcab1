#include <QComboBox>
#include <QRadioButton>

#include "app/dialogfixture.h"
#include "modes/windows/frmquaconfig.h"
#include "modes/windows/frmselectsampler.h"
#include "windowsupport/pictures.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge.
using DISABLED_QuaDialogPictures = DialogFixture;

TEST_F(DISABLED_QuaDialogPictures, Options) {
  FrmQuaConfig first(Main, {}, {});
  Shoot(first, "qua-config-first");
  QuantitationSettings settings;
  settings.FittingMethod = 3;
  settings.CurveItem = 2;
  settings.InputK = {-0.0125, 1.72654321987e-05, 12345.678901234, 0.1};
  settings.WaveLengthNumber = 3;
  settings.WaveLengthList = {260.0, 280.0, 1100.0};
  settings.WaveLengthPara = {1.55, -0.76, 0.0};
  settings.ConcUnit = "drops / bucket";
  FrmQuaConfig full(Main, settings, {});
  Shoot(full, "qua-config-full");
  settings.WaveLengthNumber = 2;
  settings.FittingMethod = 0;
  settings.ConcUnit = "\u00B5g/ml";
  FrmQuaConfig two(Main, settings, {});
  Shoot(two, "qua-config-two");
}

TEST_F(DISABLED_QuaDialogPictures, Sampler) {
  ConnectNow();
  FitSampler({1, 2});
  FrmSelectSampler dialog(Main);
  Shoot(dialog, "select-sampler");
  ASSERT_EQ(Instrument.Faults().Add("setsampler", "1", "no-reply", {}), std::nullopt);
  Find<QComboBox>(dialog, "ComboSelectSampler")->setCurrentIndex(3);
  dialog.accept();
  Shoot(dialog, "select-sampler-failed");
}

}  // namespace
}  // namespace spectrane::testing_windows
