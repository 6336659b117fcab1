#include "tools/windows/frmresetwavelength.h"

#include "tools/windows/toolfixture.h"

namespace spectrane::testing_windows {
namespace {

class ResetWaveLength : public ToolFixture {
 protected:
  void Ask(std::function<void(QWidget&)> act) { Open<FrmResetWaveLength>("CmdClose", std::move(act)); }
  void ExpectFields(const std::string& wavelength, const std::string& abs, const std::string& trans) const {
    EXPECT_EQ(Display.Wavelength, wavelength);
    EXPECT_EQ(Display.Abs, abs);
    EXPECT_EQ(Display.Trans, trans);
  }
};

TEST_F(ResetWaveLength, HasItsWords) {
  Connect();
  Ask([this](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Reset Wavelength"));
    EXPECT_EQ(Find<QLabel>(dialog, "LabelInfor")->text(), Words(1124).trimmed());
    EXPECT_EQ(Find<QPushButton>(dialog, "CmdStart")->text().remove(u'&'), QStringLiteral("Start"));
    EXPECT_EQ(Find<QPushButton>(dialog, "CmdClose")->text().remove(u'&'), QStringLiteral("Close"));
    EXPECT_TRUE(Display.TimerOn);
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(AccessKeys(dialog).size(), 2);
  });
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_EQ(Commands, std::vector<std::string>());
}

TEST_F(ResetWaveLength, StartCalibratesAndReadsAllAnew) {
  Connect();
  Model().MoveTo(500.0);
  Insert("dye-1");
  Ask([this](QWidget& dialog) {
    TryToLeaveAtEachYield(dialog, {"CmdStart", "CmdClose"});
    Boxes.ExpectMessage(1126, [&] {
      EXPECT_TRUE(Display.TimerOn) << "the live reading begins before the box";
      EXPECT_FALSE(IsEnabled(dialog, "CmdStart"));
      EXPECT_FALSE(IsEnabled(dialog, "CmdClose"));
    });
    Click(dialog, "CmdStart");
    Loop.OnYield = {};
    EXPECT_EQ(Model().Calibrations(), 1);
    EXPECT_EQ(Link.State.FullEnergy, Model().Energy(Time.NowMs()));
    EXPECT_EQ(Link.State.GainIndex, Model().Gain());
    EXPECT_EQ(Link.State.DarkEnergy, Model().StoredDark().at(static_cast<std::size_t>(Model().Gain() - 1)));
    EXPECT_EQ(Link.State.CurrentWavelength, 500.0);
    ExpectFields(" 500.0nm", " 0.000Abs", "100.0%T");
    EXPECT_TRUE(IsEnabled(dialog, "CmdStart"));
    EXPECT_TRUE(IsEnabled(dialog, "CmdClose"));
  });
  EXPECT_GE(Yields, 10);
  EXPECT_EQ(Commands, std::vector<std::string>({"getwl", "adjustwl", "getwl", "getdark", "rezero"}));
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(ResetWaveLength, TheFieldsShowNoValuesAndTheWaitItsTimesMeanwhile) {
  Connect();
  Ask([this](QWidget& dialog) {
    std::vector<std::string> shown;
    Instrument.OnExchange = [&](const ExchangeRecord& record) {
      shown.push_back(WaitTimeText());
      if (record.Request == "adjustwl") ExpectFields("------", "------", "------");
    };
    Boxes.ExpectMessage(1126);
    Click(dialog, "CmdStart");
    ASSERT_EQ(shown.size(), 5u);
    EXPECT_EQ(shown[1], "0 s of at most 211 s");
    EXPECT_EQ(shown[3], "90 s of at most 211 s");
    EXPECT_EQ(WaitTimeText(), "no box");
  });
}

TEST_F(ResetWaveLength, WithoutAnInstrumentItSaysSoAtTheLoadAndAtTheStart) {
  Boxes.ExpectMessage(1120);
  Ask([this](QWidget& dialog) {
    EXPECT_TRUE(Boxes.AllAsked());
    Boxes.ExpectMessage(1120);
    Click(dialog, "CmdStart");
  });
  EXPECT_EQ(Model().Calibrations(), 0);
}

TEST_F(ResetWaveLength, ALinkTestThatFailsEndsItAndTheLiveReadingGoesOn) {
  Connect();
  const std::string wavelength = Display.Wavelength;
  Ask([this](QWidget& dialog) {
    FallSilent();
    Click(dialog, "CmdStart");
    EXPECT_EQ(State(dialog), "Communication error.Please check instrument link cable.");
    EXPECT_TRUE(Display.TimerOn);
    EXPECT_TRUE(IsEnabled(dialog, "CmdStart"));
  });
  EXPECT_EQ(Display.Wavelength, wavelength) << "the fields keep what they show";
  EXPECT_EQ(Commands, std::vector<std::string>({"getwl"}));
}

TEST_F(ResetWaveLength, ACalibrationThatFailsLeavesTheLiveReadingOff) {
  struct Case {
    const char* Fault;
    std::int64_t WithinMs;
  };
  for (const Case& each : {Case{"no-reply", 181'000}, Case{"hang-up", 1'000}, Case{"wrong-echo", 91'000},
                           Case{"restart", 3'000}}) {
    Link.State.InstrumentConnected = false;
    Instrument.Faults().Clear();
    Connect();
    const InstrumentState before = Link.State;
    Ask([&](QWidget& dialog) {
      Fail("adjustwl", each.Fault);
      const std::int64_t begin = Time.NowMs();
      Boxes.ExpectMessage(1125, [&] { EXPECT_FALSE(IsEnabled(dialog, "CmdClose")) << each.Fault; });
      Click(dialog, "CmdStart");
      EXPECT_LE(Time.NowMs() - begin, each.WithinMs) << each.Fault;
      EXPECT_FALSE(Display.TimerOn) << each.Fault;
      ExpectFields("------", "------", "------");
      EXPECT_TRUE(IsEnabled(dialog, "CmdStart"));
      EXPECT_TRUE(IsEnabled(dialog, "CmdClose"));
    });
    EXPECT_FALSE(Display.TimerOn) << "it stays off after the dialog: " << each.Fault;
    EXPECT_EQ(Link.State.FullEnergy, before.FullEnergy);
    EXPECT_EQ(Link.State.DarkEnergy, before.DarkEnergy);
    EXPECT_EQ(Link.State.DarkEnergies, before.DarkEnergies);
    const bool restarted = std::string(each.Fault) == "restart";
    EXPECT_EQ(Link.State.GainIndex, restarted ? kUnknownGain : before.GainIndex) << each.Fault;
    EXPECT_EQ(Link.State.CurrentWavelength, before.CurrentWavelength);
    EXPECT_FALSE(Link.State.InstrumentBusy);
  }
}

TEST_F(ResetWaveLength, AReferenceThatCannotBeReadStaysAsItWas) {
  for (const char* verb : {"getdark", "rezero"}) {
    Link.State.InstrumentConnected = false;
    Instrument.Faults().Clear();
    Connect();
    const std::int32_t full = Link.State.FullEnergy = 12345;
    const std::int32_t dark = Link.State.DarkEnergy = 67;
    Ask([&](QWidget& dialog) {
      Fail(verb, "no-reply");
      Boxes.ExpectMessage(1126);
      Click(dialog, "CmdStart");
      ExpectFields(" 546.0nm", "------", "------");
      EXPECT_TRUE(Display.TimerOn) << verb;
    });
    EXPECT_EQ(Link.State.FullEnergy, full) << verb;
    EXPECT_EQ(Link.State.DarkEnergy, dark) << verb;
  }
}

}  // namespace
}  // namespace spectrane::testing_windows
