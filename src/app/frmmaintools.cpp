#include <QAction>

#include "app/frmmain.h"
#include "app/ground/commands.h"
#include "app/ground/words.h"
#include "base/textnumbers.h"
#include "tools/traffic.h"
#include "tools/upkeep.h"
#include "tools/windows/frmautosampler.h"
#include "tools/windows/frmbaseline.h"
#include "tools/windows/frmdarkenergy.h"
#include "tools/windows/frmlampswitch.h"
#include "tools/windows/frmresetwavelength.h"
#include "tools/windows/frmsetupwl.h"
#include "tools/windows/frmslip.h"
#include "tools/windows/frmwait.h"

namespace spectrane {
namespace {

constexpr int kBaselineExists = 1195;

template <typename Dialog>
void RunDialog(MainWindow& frame) {
  Dialog dialog(frame);
  dialog.exec();
}

struct ToolRow {
  int Command;
  void (*Run)(MainWindow& frame);
};

constexpr ToolRow kTools[] = {
    {kLampSwitchWavelength, &RunDialog<FrmLampSwitch>},
    {kSetWavelength, &RunDialog<FrmSetupWL>},
    {kDarkCurrent, &RunDialog<FrmDarkEnergy>},
    {kResetWavelength, &RunDialog<FrmResetWaveLength>},
    {kSetupSlit, &RunDialog<FrmSlip>},
    {kSetupSampler, &RunDialog<FrmAutoSampler>},
};

}  // namespace

void FrmMain::ShowTool(int command) {
  for (const ToolRow& tool : kTools) {
    if (tool.Command == command) tool.Run(*this);
  }
}

void FrmMain::mmuBaseLine() {
  FrmBaseLine dialog(*this, baseline_);
  dialog.exec();
}

bool FrmMain::OpenBaseline(const QString& path) {
  if (baseline_.BaselinePresent() && boxes_->AskYesNo(Words(kBaselineExists), kBaselineExists) != Answer::Yes)
    return false;
  FrmBaseLine dialog(*this, baseline_);
  // Without the file that was asked for the dialog would only mislead.
  if (!dialog.mmuOpenFile(path)) return false;
  dialog.exec();
  return true;
}

void FrmMain::SwitchLamp(int command) {
  QAction* mark = bars_->Action(command);
  // The mark follows the lamp, not the click.
  mark->setChecked(!mark->isChecked());
  if (!link_->State.InstrumentConnected) {
    boxes_->Show(kNoInstrument);
    return;
  }
  const LampKind lamp = command == kTungstenLamp ? LampKind::Tungsten : LampKind::Deuterium;
  const bool tungsten = lamp == LampKind::Tungsten;
  LampEnd end = LampEnd::LinkLost;
  bool lit = mark->isChecked();
  {
    const InstrumentRun run(link_->State);
    if (!run.Owns()) return;
    const RunNotice notice(*this, nullptr);
    const InstrumentTraffic traffic(link_->State);
    const FrmWait wait(*this, tungsten ? LongestSeconds({"getwl", "getwu", "wuon"})
                                       : LongestSeconds({"getwl", "getd2", "d2on"}));
    link_->Live.SampleTimerStop();
    end = spectrane::SwitchLamp(*link_, lamp, lit);
  }
  mark->setChecked(lit);
  if (end == LampEnd::StateUnknown) boxes_->Show(kCommunicationError);
  link_->Live.SampleTimerStart();
}

void FrmMain::ClearLampMarks() {
  for (const int command : {kTungstenLamp, kDeuteriumLamp}) bars_->Action(command)->setChecked(false);
}

}  // namespace spectrane
