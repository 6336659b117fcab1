#include <QApplication>
#include <QDir>

#include "modes/windows/frmtsconfig.h"
#include "modes/windows/frmtsfixture.h"

namespace spectrane::testing_windows {
namespace {

/// Pictures for a person to judge, in the folder that SPECTRANE_PICTURES names; run by
/// --gtest_also_run_disabled_tests.
class TimeScanPictures : public TimeScanWindow {
 protected:
  static void Keep(QWidget& widget, const char* name) {
    QCoreApplication::processEvents();
    const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
    EXPECT_TRUE(QDir().mkpath(folder));
    EXPECT_TRUE(widget.grab().save(folder + u'/' + QLatin1String(name) + QStringLiteral(".png")));
  }
};

using DISABLED_TimeScanPictures = TimeScanPictures;

TEST_F(DISABLED_TimeScanPictures, EmptyMeasuredAndMarked) {
  Settings.PutSetting(kTimeScanSection, "Work WaveLength", "340");
  Settings.PutSetting(kTimeScanSection, "Abs Top", "1.5");
  Settings.PutSetting(kTimeScanSection, "Peak Detail Enable", "True");
  Open(0, 600);
  Keep(*Window, "ts-empty");
  ConnectNow();
  Boxes.ExpectMessage(978);
  Insert("blank");
  Window->mmuOperationRezero();
  Insert("enzyme");
  Boxes.ExpectYesNo(Words(926), Answer::No);
  Window->mmuStartTest();
  Keep(*Window, "ts-measured");
  Window->FindPeak();
  Keep(*Window, "ts-marked");
  Window->DataTable()->resize(800, 260);
  Window->DataTable()->SelectTab(0);
  Keep(*Window->DataTable(), "ts-table");
  FrmTSConfig dialog(Main, Window->Settings());
  dialog.show();
  Keep(dialog, "ts-config");
}

}  // namespace
}  // namespace spectrane::testing_windows
