#include <QApplication>

#include "modes/windows/frmtsconfig.h"
#include "modes/windows/frmtsfixture.h"
#include "windowsupport/pictures.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge.
using DISABLED_TimeScanPictures = TimeScanWindow;

TEST_F(DISABLED_TimeScanPictures, EmptyMeasuredAndMarked) {
  Settings.PutSetting(kTimeScanSection, "Work WaveLength", "340");
  Settings.PutSetting(kTimeScanSection, "Abs Top", "1.5");
  Settings.PutSetting(kTimeScanSection, "Peak Detail Enable", "True");
  Open(0, 600);
  Shoot(*Window, "ts-empty");
  ConnectNow();
  Boxes.ExpectMessage(978);
  Insert("blank");
  Window->mmuOperationRezero();
  Insert("enzyme");
  Boxes.ExpectYesNo(Words(926), Answer::No);
  Window->mmuStartTest();
  Shoot(*Window, "ts-measured");
  Window->FindPeak();
  Shoot(*Window, "ts-marked");
  Window->DataTable()->resize(800, 260);
  Window->DataTable()->SelectTab(0);
  Shoot(*Window->DataTable(), "ts-table");
  FrmTSConfig dialog(Main, Window->Settings());
  dialog.show();
  Shoot(dialog, "ts-config");
}

}  // namespace
}  // namespace spectrane::testing_windows
