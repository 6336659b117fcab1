// The live reading of the whole main window: its three fields, and commands that come inside a reading.

#include <QAbstractButton>
#include <QTest>

#include "app/framefixture.h"
#include "app/ground/words.h"

namespace spectrane::testing_windows {
namespace {

using Field = DataDisplay::Field;

class FrmMainLive : public FrameFixture {
 protected:
  void Fail(const char* verb) { ASSERT_EQ(Instrument.Faults().Add(verb, "1", "no-reply", {}), std::nullopt); }
  std::vector<std::string> Fields() const {
    return {FieldText(Field::Wavelength), FieldText(Field::Abs), FieldText(Field::Trans)};
  }
  /// Confirms the options of the program, with the precision of that button.
  void ConfirmOptions(const char* precision) {
    InDialog("FrmOption", [precision](QWidget& dialog) {
      Find<QAbstractButton>(dialog, precision)->click();
      Find<QAbstractButton>(dialog, "OKCmd")->click();
    });
    Choose(kProgramOption);
  }
  void ExpectFieldsOfAConnectionInNewFormats() {
    EXPECT_EQ(Fields(), (std::vector<std::string>{" 546.0nm", " 0.000Abs", "100.0%T"}));
    ConfirmOptions("OptionStandard");
    EXPECT_EQ(Fields(), (std::vector<std::string>{" 546.0nm", " 0.000Abs", "100.0%T"}));
    ConfirmOptions("OptionHighPrecise");
    EXPECT_EQ(Fields(), (std::vector<std::string>{" 546.0nm", " 0.0000Abs", "100.00%T"}));
  }
};

// The figures of the last reading stood there instead: 0.0%T, though nothing was read yet.
TEST_F(FrmMainLive, NewFormatsLeaveWhatAConnectionWithoutAReferenceShows) {
  Start();
  Fail("rezero");
  Main->mmuOperationConnect();
  ASSERT_FALSE(Main->SampleTimer().isActive());
  ExpectFieldsOfAConnectionInNewFormats();
}

TEST_F(FrmMainLive, NewFormatsBringBackNoReadingOfAnEarlierConnection) {
  Start();
  ConnectNow();
  ASSERT_TRUE(Instrument.Model().PutInBeam("filter-0.3", Time.NowMs()));
  // 100 * 10^-0.3 = 50.12 %T.
  for (int i = 0; i < 20; ++i) Main->Link().Live.SampleTimerTick();
  EXPECT_EQ(FieldText(Field::Trans), " 50.1%T");
  ConfirmOptions("OptionStandard");
  EXPECT_EQ(FieldText(Field::Trans), " 50.1%T");
  Choose(kRelease);
  ConfirmOptions("OptionStandard");
  EXPECT_EQ(Fields(), std::vector<std::string>(3)) << "nothing to show without an instrument";
  Fail("rezero");
  Main->mmuOperationConnect();
  ASSERT_FALSE(Main->SampleTimer().isActive());
  ExpectFieldsOfAConnectionInNewFormats();
}

TEST_F(FrmMainLive, NewFormatsLeaveFieldsWithoutAValueAlone) {
  Start();
  ConnectNow();
  for (int i = 0; i < 20; ++i) Main->Link().Live.SampleTimerTick();
  WhenDialog("FrmResetWaveLength", [&](QWidget& dialog) {
    Fail("adjustwl");
    Boxes.ExpectMessage(1125);
    Find<QAbstractButton>(dialog, "CmdStart")->click();
    dialog.close();
  });
  Choose(kResetWavelength);
  ASSERT_FALSE(Main->SampleTimer().isActive());
  const std::vector<std::string> none(3, "------");
  EXPECT_EQ(Fields(), none);
  ConfirmOptions("OptionHighPrecise");
  EXPECT_EQ(Fields(), none);
}

// A dialog that waited for a reading kept the next one away, as long as it was open.
TEST_F(FrmMainLive, ReadingsGoOnBehindADialogThatWaitedForOne) {
  Start();
  ConnectNow();
  bool chosen = false;
  bool closed = false;
  Loop.OnYield = [&] {
    if (!std::exchange(chosen, true)) Main->RunCommand(kAbout);
  };
  WhenDialog("FrmAbout", [&](QWidget& about) {
    int readings = 0;
    Instrument.OnExchange = [&](const ExchangeRecord& record) { readings += record.Request == "ge 10"; };
    EXPECT_TRUE(QTest::qWaitFor([&] { return readings >= 3; }, 1000)) << readings;
    Instrument.OnExchange = {};
    about.close();
    closed = true;
  });
  Main->SampleTimer().start(1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return closed; }));
  Loop.OnYield = nullptr;
  Main->SampleTimer().stop();
}

TEST_F(FrmMainLive, ACommandGetsItsTurnThoughReadingsTakeLongerThanTheirInterval) {
  Start();
  ConnectNow();
  bool chosen = false;
  bool opened = false;
  Loop.OnYield = [&] {
    if (!std::exchange(chosen, true)) Main->RunCommand(kAbout);
    QTest::qWait(5);
  };
  WhenDialog("FrmAbout", [&](QWidget& about) {
    opened = true;
    about.close();
  });
  Main->SampleTimer().start(1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return opened; }));
  Loop.OnYield = nullptr;
  Main->SampleTimer().stop();
}

TEST_F(FrmMainLive, NothingIsReadOnceTheReadingsWereStopped) {
  Start();
  ConnectNow();
  const auto before = Instrument.Requests();
  // The timer comes to its time; what it tells is on its way when the readings stop.
  Main->SampleTimer().start(0);
  QObject::connect(&Main->SampleTimer(), &QTimer::timeout, Main.get(),
                   [this] { Main->SampleTimer().stop(); });
  QTest::qWait(20);
  EXPECT_FALSE(Main->SampleTimer().isActive());
  EXPECT_EQ(Instrument.Requests(), before);
}

TEST_F(FrmMainLive, ACommandThatWaitedGoesWithTheProgram) {
  Start();
  ConnectNow();
  bool chosen = false;
  Loop.OnYield = [&] {
    if (std::exchange(chosen, true)) return;
    Main->RunCommand(kAbout);
    EXPECT_TRUE(Main->close());
  };
  Main->SampleTimer().start(1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return chosen && !Main->isVisible(); }));
  Loop.OnYield = nullptr;
  QTest::qWait(50);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(FrmMainLive, ACommandInsideALiveReadingRunsAfterIt) {
  Start();
  ConnectNow();
  bool chosen = false;
  bool busyInDialog = true;
  Loop.OnYield = [&] {
    if (chosen) return;
    chosen = true;
    WhenDialog("FrmAbout", [&](QWidget& about) {
      busyInDialog = Main->Link().State.InstrumentBusy;
      about.close();
    });
    Main->RunCommand(kAbout);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  };
  Main->SampleTimer().start(1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return chosen && !busyInDialog; }));
  Loop.OnYield = nullptr;
  Main->SampleTimer().stop();
}

TEST_F(FrmMainLive, CommandsThatWaitedForAReadingRunOneBehindTheOther) {
  Start();
  ConnectNow();
  bool chosen = false;
  int closed = 0;
  Loop.OnYield = [&] {
    if (std::exchange(chosen, true)) return;
    Main->RunCommand(kAbout);
    Main->RunCommand(kProgramOption);
  };
  WhenDialog("FrmAbout", [&](QWidget& about) {
    // Readings begin anew behind it, as they do behind the tools.
    Main->SampleTimer().start(1);
    QTest::qWait(50);
    EXPECT_EQ(QApplication::activeModalWidget(), &about) << "nothing comes over it";
    WhenDialog("FrmOption", [&](QWidget& options) {
      ++closed;
      options.close();
    });
    ++closed;
    about.close();
  });
  Main->SampleTimer().start(1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return closed == 2; }));
  Loop.OnYield = nullptr;
  Main->SampleTimer().stop();
}

TEST_F(FrmMainLive, ACommandThatIsPressedAgainInsideAReadingRunsOnce) {
  Start();
  ConnectNow();
  const bool shown = Main->ActionOf(kStatusBar)->isChecked();
  bool chosen = false;
  int opened = 0;
  Loop.OnYield = [&] {
    if (std::exchange(chosen, true)) return;
    for (int i = 0; i < 3; ++i) Main->RunCommand(kAbout);
    for (int i = 0; i < 3; ++i) Main->ActionOf(kStatusBar)->trigger();
  };
  QTimer hand;
  QObject::connect(&hand, &QTimer::timeout, &hand, [&] {
    if (QWidget* const about = QApplication::activeModalWidget()) opened += about->close() ? 1 : 0;
  });
  hand.start(5);
  Main->SampleTimer().start(1);
  QTest::qWait(300);
  Loop.OnYield = nullptr;
  Main->SampleTimer().stop();
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(Main->ActionOf(kStatusBar)->isChecked(), !shown);
}

}  // namespace
}  // namespace spectrane::testing_windows
