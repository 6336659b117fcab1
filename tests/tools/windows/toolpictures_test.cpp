#include <QRadioButton>

#include <fstream>

#include "files/filesupport.h"
#include "tools/windows/frmautosampler.h"
#include "tools/windows/frmbaseline.h"
#include "tools/windows/frmdarkenergy.h"
#include "tools/windows/frmlampswitch.h"
#include "tools/windows/frmresetwavelength.h"
#include "tools/windows/frmsetupwl.h"
#include "tools/windows/frmslip.h"
#include "tools/windows/frmwait.h"
#include "tools/windows/toolfixture.h"
#include "windowsupport/pictures.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge.
class ToolPictures : public ToolFixture {
 protected:
  template <typename Dialog, typename... Arguments>
  void ShootOpen(const char* closeButton, const char* name, std::function<void(QWidget&)> before,
                 Arguments&... arguments) {
    Open<Dialog>(
        closeButton,
        [&](QWidget& dialog) {
          Shoot(dialog, (std::string(name) + "-1").c_str());
          before(dialog);
          Shoot(dialog, (std::string(name) + "-2").c_str());
        },
        arguments...);
  }
};

using DISABLED_ToolPictures = ToolPictures;

TEST_F(DISABLED_ToolPictures, All) {
  Connect();
  ShootOpen<FrmSetupWL>("CloseCmd", "set-wavelength", [this](QWidget& dialog) {
    FallSilent();
    Click(dialog, "OKCmd");
    Instrument.Faults().Clear();
  });
  ShootOpen<FrmLampSwitch>("CloseCmd", "lamp-switch", [](QWidget&) {});
  ShootOpen<FrmSlip>("CommandClose", "slit", [](QWidget&) {});
  ShootOpen<FrmAutoSampler>("CommandClose", "sampler",
                            [](QWidget& dialog) { Click(dialog, "CommandSetup"); });
  ShootOpen<FrmDarkEnergy>("CmdClose", "dark", [](QWidget& dialog) { Click(dialog, "CmdTest"); });
  ShootOpen<FrmResetWaveLength>("CmdClose", "reset", [this](QWidget& dialog) {
    Fail("adjustwl", "no-reply");
    Boxes.ExpectMessage(1125);
    Click(dialog, "CmdStart");
  });
  std::string bytes = HeaderBytes(6) + DoubleBytes(1100) + DoubleBytes(190) + DoubleBytes(45000) + Long(0);
  for (int i = 0; i < 911; ++i) bytes += DoubleBytes(190 + i) + Long(i % 8 + 1) + Long(65535 - 7 * i);
  std::ofstream(Folder.Path("Baseline.bsl"), std::ios::binary) << bytes;
  SystemBaseline baseline;
  ShootOpen<FrmBaseLine>(
      "CloseCmd", "baseline",
      [this](QWidget& dialog) {
        Boxes.ExpectOpenName(Words(920), PathOf("Baseline.bsl"));
        Click(dialog, "LoadCmd");
      },
      baseline);
  FrmWait wait(Main, 183);
  Shoot(wait, "wait");
}

}  // namespace
}  // namespace spectrane::testing_windows
