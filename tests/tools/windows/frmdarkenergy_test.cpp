#include "tools/windows/frmdarkenergy.h"

#include <QTableView>

#include "tools/windows/toolfixture.h"

namespace spectrane::testing_windows {
namespace {

class DarkEnergy : public ToolFixture {
 protected:
  void Ask(std::function<void(QWidget&)> act) { Open<FrmDarkEnergy>("CmdClose", std::move(act)); }
  static std::string Cell(QWidget& dialog, int row, int column) {
    const auto* const grid = Find<QTableView>(dialog, "DarkEnergyGrid");
    return grid->model()->index(row, column).data().toString().toStdString();
  }
  static void ExpectNoEnergies(QWidget& dialog) {
    for (int row = 0; row < 8; ++row) EXPECT_EQ(Cell(dialog, row, 1), "") << row;
  }
};

TEST_F(DarkEnergy, HasItsWordsAndARowForEachGain) {
  Connect();
  Ask([this](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Setup Energy( 0%T )"));
    EXPECT_EQ(Find<QPushButton>(dialog, "CmdTest")->text().remove(u'&'), QStringLiteral("Test"));
    EXPECT_EQ(Find<QPushButton>(dialog, "CmdClose")->text().remove(u'&'), QStringLiteral("Close"));
    EXPECT_EQ(Find<QTableView>(dialog, "DarkEnergyGrid")->model()->rowCount(), 8);
    EXPECT_EQ(Cell(dialog, 7, 0), "8");
    ExpectNoEnergies(dialog);
    EXPECT_TRUE(Display.TimerOn) << "the live reading goes on until the test";
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(AccessKeys(dialog).size(), 2);
  });
  EXPECT_EQ(Commands, std::vector<std::string>());
}

TEST_F(DarkEnergy, TestMeasuresEveryGainAnew) {
  Connect();
  Model().Noise = 40.0;
  const std::vector<int> before = Model().StoredDark();
  Ask([&](QWidget& dialog) {
    TryToLeaveAtEachYield(dialog, {"CmdTest", "CmdClose"});
    Click(dialog, "CmdTest");
    Loop.OnYield = {};
    ASSERT_EQ(Model().DarkMeasurements(), 1);
    ASSERT_NE(Model().StoredDark(), before) << "the noise shows that they are new";
    for (int gain = 1; gain <= 8; ++gain) {
      const int energy = Model().StoredDark()[static_cast<std::size_t>(gain - 1)];
      EXPECT_EQ(Cell(dialog, gain - 1, 0), std::to_string(gain));
      EXPECT_EQ(Cell(dialog, gain - 1, 1), std::to_string(energy)) << gain;
      EXPECT_EQ(Link.State.DarkEnergies[static_cast<std::size_t>(gain)], energy);
    }
    EXPECT_TRUE(Display.TimerOn) << "on again as soon as the test is over";
  });
  EXPECT_GE(Yields, 4);
  EXPECT_EQ(Commands, std::vector<std::string>({"getwl", "resetdark"}));
}

TEST_F(DarkEnergy, ElevenGainsFillElevenRows) {
  InstrumentOptions options = QuietInstrument();
  options.Gains = 11;
  SimulatedLine other(options);
  Ports.Put(1, other);
  Link.State.GainCount = 11;
  ConnectNow();
  Ask([&](QWidget& dialog) {
    ASSERT_EQ(Find<QTableView>(dialog, "DarkEnergyGrid")->model()->rowCount(), 11);
    Click(dialog, "CmdTest");
    EXPECT_EQ(Cell(dialog, 10, 0), "11");
    EXPECT_EQ(Cell(dialog, 10, 1), std::to_string(other.Model().StoredDark()[10]));
  });
}

TEST_F(DarkEnergy, WithoutAnInstrumentItSaysSoAtTheLoadAndAtTheTest) {
  Boxes.ExpectMessage(1120);
  Ask([this](QWidget& dialog) {
    EXPECT_TRUE(Boxes.AllAsked());
    Boxes.ExpectMessage(1120);
    Click(dialog, "CmdTest");
    ExpectNoEnergies(dialog);
  });
  EXPECT_EQ(Commands, std::vector<std::string>());
}

TEST_F(DarkEnergy, ALinkTestThatFailsEndsItAndTheLiveReadingGoesOn) {
  Connect();
  Ask([this](QWidget& dialog) {
    FallSilent();
    Click(dialog, "CmdTest");
    EXPECT_EQ(State(dialog), "Communication error.Please check instrument link cable.");
    ExpectNoEnergies(dialog);
    EXPECT_TRUE(Display.TimerOn);
    EXPECT_TRUE(IsEnabled(dialog, "CmdTest"));
  });
  EXPECT_EQ(Commands, std::vector<std::string>({"getwl"}));
}

TEST_F(DarkEnergy, AMeasurementThatFailsIsToldAndTheTableStays) {
  Connect();
  const DarkEnergyTable before = Link.State.DarkEnergies;
  for (const char* fault : {"no-reply", "cut", "wrong-echo", "hang-up"}) {
    Ask([&](QWidget& dialog) {
      Fail("resetdark", fault);
      // The live reading is off until the box is answered.
      Boxes.ExpectMessage(1121, [&] {
        EXPECT_FALSE(Display.TimerOn) << fault;
        EXPECT_FALSE(IsEnabled(dialog, "CmdTest"));
      });
      Click(dialog, "CmdTest");
      EXPECT_TRUE(Boxes.AllAsked()) << fault;
      ExpectNoEnergies(dialog);
      EXPECT_TRUE(Display.TimerOn) << fault;
      EXPECT_TRUE(IsEnabled(dialog, "CmdTest"));
    });
    EXPECT_EQ(Link.State.DarkEnergies, before) << fault;
  }
}

TEST_F(DarkEnergy, LinesThatAreMissingKeepTheirValuesAndItIsSaid) {
  Connect();
  Link.State.DarkEnergies[8] = 4711;
  Ask([this](QWidget& dialog) {
    Fail("resetdark", "fewer-lines", {"3"});
    Click(dialog, "CmdTest");
    EXPECT_EQ(Cell(dialog, 4, 1), std::to_string(Model().StoredDark()[4]));
    EXPECT_EQ(Cell(dialog, 7, 1), "4711");
    EXPECT_EQ(Display.Remark, "The instrument's dark table is incomplete.");
  });
}

TEST_F(DarkEnergy, TheWaitIsShownWithItsTimes) {
  Connect();
  Ask([this](QWidget& dialog) {
    std::vector<std::string> shown;
    Link.Transport.OnWaiting = {};
    Instrument.OnExchange = [&](const ExchangeRecord&) { shown.push_back(WaitTimeText()); };
    Click(dialog, "CmdTest");
    EXPECT_EQ(shown, std::vector<std::string>(2, "0 s of at most 18 s"));
  });
}

}  // namespace
}  // namespace spectrane::testing_windows
