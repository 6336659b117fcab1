// What may go wrong while a time scan measures, and odd numbers.

#include <QFile>

#include "app/ground/commands.h"
#include "base/notfinite.h"
#include "modes/windows/frmtsfixture.h"
#include "windowsupport/closing.h"

namespace spectrane::testing_windows {
namespace {

using testing::HasSubstr;

class TimeScanFaults : public TimeScanWindow {
 protected:
  void ExpectQuiet() {
    EXPECT_FALSE(Link.State.RunUnderWay);
    EXPECT_FALSE(Link.State.InstrumentBusy);
    EXPECT_FALSE(Window->Test().TestRunning);
    EXPECT_TRUE(Display.TimerOn);
    EXPECT_EQ(Main.RunDepth, 0);
  }
};

TEST_F(TimeScanFaults, ACloseIsHeardAtEveryYieldAndGoesAtTheEndOfTheRun) {
  const auto begin = [this] {
    delete Window.data();
    Open(0, 1);
    Blank();
    Window->setAttribute(Qt::WA_DeleteOnClose);
  };
  begin();
  Loop.Yields = 0;
  Boxes.ExpectYesNo(Words(926), Answer::No);
  Window->mmuStartTest();
  const int yields = Loop.Yields;
  ASSERT_GT(yields, 100);
  for (int closeAt = 1; closeAt <= yields; closeAt += closeAt < 10 || closeAt > yields - 10 ? 1 : 13) {
    SCOPED_TRACE(closeAt);
    begin();
    int points = -1;
    AtYield(
        closeAt,
        [&] {
          Boxes.ExpectYesNo(Words(1211), Answer::Yes);
          EXPECT_FALSE(Window->close());
          points = Window->Document().DataCount();
        },
        [this] { Window->mmuStartTest(); });
    ASSERT_FALSE(Window.isNull());
    EXPECT_EQ(Window->Document().DataCount(), std::max(0, points - 1)) << "the point read last is dropped";
    ExpectQuiet();
    if (Window->IsWorkUnsaved()) Boxes.ExpectYesNoCancel(Words(1210), Answer::No);
    LetItClose(Window.data());
    EXPECT_TRUE(Window.isNull());
    EXPECT_TRUE(Boxes.AllAsked());
  }
}

TEST_F(TimeScanFaults, ANoToTheCloseLetsItRunOn) {
  Open();
  Blank();
  WithPoints(2, [this] {
    Boxes.ExpectYesNo(Words(1211), Answer::No);
    EXPECT_FALSE(Window->close());
    Boxes.ExpectYesNo(Words(926), Answer::No);
  });
  Window->mmuStartTest();
  EXPECT_EQ(Window->Document().DataCount(), 6);
}

TEST_F(TimeScanFaults, APulledCableEndsTheTestAndKeepsThePoints) {
  Open();
  Blank();
  WithPoints(4, [this] { PullCable(); });
  Boxes.ExpectMessage(1096);
  Window->mmuStartTest();
  EXPECT_EQ(Window->Document().DataCount(), 4);
  EXPECT_EQ(Records().rowCount(), 4);
  EXPECT_TRUE(Window->isWindowModified());
  ExpectQuiet();
  Boxes.ExpectSaveName(Words(980), PathOf("kept.tis"));
  EXPECT_TRUE(Window->mmuSaveFile());
}

TEST_F(TimeScanFaults, ACablePulledWhileTheEndAsksLeavesItWhole) {
  Open();
  Blank();
  Boxes.ExpectYesNo(Words(926), Answer::Yes, [this] { PullCable(); });
  Boxes.ExpectSaveName(Words(980), PathOf("a.tis"));
  Window->mmuStartTest();
  EXPECT_TRUE(QFile::exists(PathOf("a.tis")));
  EXPECT_EQ(Window->Document().DataCount(), 6);
}

TEST_F(TimeScanFaults, WhatAPersonDoesDuringATestDoesNotHarmIt) {
  Open(1, 8);
  Blank();
  Insert("enzyme");
  int turn = 0;
  Loop.OnYield = [this, &turn] {
    ++turn;
    Window->mmuStartTest();
    Window->mmuOperationRezero();
    Window->ShowConfigWindow();
    Window->FindPeak();
    EXPECT_FALSE(Window->mmuOpenFile(PathOf("none.tis")));
    Window->PrintReport();
    Window->mmuFileOutputTXT();
    switch (turn % 8) {
      case 0:
        Window->mmuZoomIn();
        break;
      case 1:
        Window->mmuZoomOut();
        break;
      case 2:
        Window->mmuZoomWindow();
        break;
      case 3:
        Window->resize(600 + turn % 50, 400);
        break;
      case 4:
        Window->FormatsChanged();
        break;
      case 5:
        Window->DataTable()->SelectTab(turn % 2);
        break;
      case 6:
        Window->hide();
        break;
      default:
        Window->show();
        break;
    }
  };
  Boxes.ExpectYesNo(Words(926), Answer::No);
  Window->mmuStartTest();
  Loop.OnYield = {};
  ASSERT_EQ(Window->Document().DataCount(), 8);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(Window->Document().Point(i).Time, 1 + i);
  EXPECT_EQ(Records().rowCount(), 8);
  EXPECT_GT(turn, 100);
  ExpectQuiet();
}

TEST_F(TimeScanFaults, AnInstrumentSlowerThanTheIntervalIsWaitedForAndSaid) {
  Settings.PutSetting(kTimeScanSection, "Interval Second", "0");
  Settings.PutSetting(kTimeScanSection, "End Second", "1");
  Show();
  Blank();
  Loop.OnYield = [this] {
    // Each reading takes two seconds.
    if (Window->Test().TestRunning) Time.Advance(200);
  };
  Boxes.ExpectYesNo(Words(926), Answer::No);
  Window->mmuStartTest();
  Loop.OnYield = {};
  ASSERT_EQ(Window->Document().DataCount(), 11);
  EXPECT_DOUBLE_EQ(Window->Document().Point(10).Time, 1.0) << "the times are those of the schedule";
  EXPECT_THAT(Display.Remark, HasSubstr("By the schedule they took 1.0 s, by the clock"));
  const double clock = Val(Display.Remark.substr(Display.Remark.find("clock") + 6));
  EXPECT_GT(clock, 3.0);
}

TEST_F(TimeScanFaults, AnEndBeforeTheStartMeasuresNothingAndAsksNothing) {
  Open(5, 2);
  Blank();
  Window->mmuStartTest();
  EXPECT_EQ(Window->Document().DataCount(), 0);
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_THAT(Display.Remark, HasSubstr("the end lies before the start"));
  EXPECT_FALSE(Window->Offers(kSave));
  ExpectQuiet();
}

TEST_F(TimeScanFaults, AnEnormousStartDelayCanBeStopped) {
  Settings.PutSetting(kTimeScanSection, "Start Second", "1e300");
  Settings.PutSetting(kTimeScanSection, "End Second", "1e301");
  Show();
  Blank();
  AtYield(
      50,
      [this] {
        Boxes.ExpectYesNo(Words(1211), Answer::Yes);
        Window->mmuStopTest();
      },
      [this] { Window->mmuStartTest(); });
  EXPECT_EQ(Window->Document().DataCount(), 0);
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_THAT(Display.Remark, HasSubstr("before the first reading"));
  ExpectQuiet();
}

TEST_F(TimeScanFaults, AnIntervalOutsideTheTableIsOneSecond) {
  for (const char* index : {"-5", "10", "2147483647"}) {
    delete Window.data();
    Settings.PutSetting(kTimeScanSection, "Interval Second", index);
    Show();
    EXPECT_EQ(Window->Document().Interval(), 1000) << index;
  }
}

TEST_F(TimeScanFaults, TenThousandPointsAreTheMost) {
  Settings.PutSetting(kTimeScanSection, "Interval Second", "0");
  Settings.PutSetting(kTimeScanSection, "End Second", "20000");
  Show();
  Blank();
  Boxes.ExpectYesNo(Words(926), Answer::No);
  Window->mmuStartTest();
  EXPECT_EQ(Window->Document().DataCount(), 10000);
  EXPECT_EQ(Records().rowCount(), 10000);
  EXPECT_EQ(Seen().X, (AxisRange{0, 20000})) << "the axis keeps its end";
  ExpectQuiet();
}

TEST_F(TimeScanFaults, OddNumbersInAFileAreShownOrRefusedWithoutHarm) {
  TSOption odd;
  odd.IntervalSecond = -5;
  odd.DisplayMode = 7;
  odd.StartSecond = 2'000'000'000;
  odd.EndSecond = -2'000'000'000;
  odd.AbsTop = odd.AbsBottom = kNaN;
  odd.TransTop = kInfinity;
  odd.WorkWL = 1e308;
  odd.GainNo = 99;
  odd.FullEnergy = odd.DarkEnergy = 5;
  SaveDataFile(TSModule(), Folder.Path("odd.tis"), odd, 3, [](std::int32_t i) {
    constexpr double kTimes[] = {kNaN, -1e308, 1e308};
    return TSRecord{-7, kTimes[i]};
  });
  Open();
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("odd.tis")));
  EXPECT_EQ(Records().rowCount(), 3);
  for (int row = 0; row < 3; ++row) EXPECT_FALSE(Row(Records(), row).isEmpty());
  Curve->grab();
  Window->FindPeak();
  Window->mmuZoomIn();
  Window->mmuZoomWindow();
  Window->FormatsChanged();
  Curve->grab();
  ConnectNow();
  const std::function<void()> commands[] = {[this] { Window->mmuOperationRezero(); },
                                            [this] { Window->mmuStartTest(); }};
  for (const auto& command : commands) {
    Display.Remark.clear();
    command();
    EXPECT_THAT(Display.Remark, HasSubstr("outside the range")) << "there is no such wavelength";
    ExpectQuiet();
  }
}

TEST_F(TimeScanFaults, AFileThatEndsTooSoonShowsWhatItHasAndIsNotReplaced) {
  Open();
  Measure();
  Boxes.ExpectSaveName(Words(980), PathOf("cut.tis"));
  ASSERT_TRUE(Window->mmuSaveFile());
  QFile(PathOf("cut.tis")).resize(174 + 3 * 12 + 5);
  FrmTS other(Main);
  Boxes.ExpectWords(PathOf("cut.tis") + Words(1214));
  EXPECT_FALSE(other.mmuOpenFile(PathOf("cut.tis")));
  EXPECT_EQ(other.Document().DataCount(), 3);
  Boxes.ExpectSaveName(Words(980), {});
  EXPECT_FALSE(other.mmuSaveFile()) << "under another name only";
  EXPECT_EQ(QFile(PathOf("cut.tis")).size(), 174 + 3 * 12 + 5);
}

TEST_F(TimeScanFaults, AFailedSaveAtTheEndLeavesItModified) {
  Open();
  Blank();
  Boxes.ExpectYesNo(Words(926), Answer::Yes);
  Boxes.ExpectSaveName(Words(980), PathOf("nowhere/a.tis"));
  Boxes.ExpectWords(Words(1213));
  Window->mmuStartTest();
  EXPECT_TRUE(Window->isWindowModified());
  EXPECT_EQ(Window->Document().DataCount(), 6);
  ExpectQuiet();
}

TEST_F(TimeScanFaults, ABlankThatFailsLeavesTheLiveReadingRunning) {
  Open();
  ConnectNow();
  PullCable();
  Window->mmuOperationRezero();
  EXPECT_FALSE(Window->Test().BlankHolds());
  ExpectQuiet();
}

}  // namespace
}  // namespace spectrane::testing_windows
