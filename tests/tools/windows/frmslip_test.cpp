#include "tools/windows/frmslip.h"

#include <QGroupBox>
#include <QRadioButton>

#include "tools/windows/toolfixture.h"

namespace spectrane::testing_windows {
namespace {

constexpr const char* kSlitOptions[] = {"OptionSlip05nm", "OptionSlip10nm", "OptionSlip20nm",
                                        "OptionSlip40nm", "OptionSlip50nm"};
constexpr const char* kSlitWidths[] = {"0.5 nm", "1.0 nm", "2.0 nm", "4.0 nm", "5.0 nm"};

class Slip : public ToolFixture {
 protected:
  void Ask(std::function<void(QWidget&)> act) { Open<FrmSlip>("CommandClose", std::move(act)); }
  static int Checked(QWidget& dialog) {
    for (int i = 0; i < 5; ++i) {
      if (Find<QRadioButton>(dialog, kSlitOptions[i])->isChecked()) return i + 1;
    }
    return 0;
  }
};

TEST_F(Slip, BeginsWithTheSlitOfTheInstrument) {
  Connect();
  for (int code = 1; code <= 5; ++code) {
    int takes = 0;
    Model().SetSlit(code, takes);
    Ask([&](QWidget& dialog) {
      EXPECT_EQ(Checked(dialog), code);
      EXPECT_FALSE(Display.TimerOn);
    });
    EXPECT_TRUE(Display.TimerOn);
  }
  EXPECT_EQ(Commands, std::vector<std::string>(5, "getslip"));
}

TEST_F(Slip, HasItsWords) {
  Connect();
  Ask([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Setup Slip"));
    EXPECT_EQ(Find<QGroupBox>(dialog, "FrameSlip")->title(), QStringLiteral("Setup Slip"));
    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(Find<QRadioButton>(dialog, kSlitOptions[i])->text().remove(u'&').toStdString(),
                std::string(kSlitWidths[i]) + " Slip Width");
    }
    EXPECT_EQ(Find<QPushButton>(dialog, "CommandClose")->text().remove(u'&'), QStringLiteral("Close"));
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(AccessKeys(dialog).size(), 7);
  });
}

TEST_F(Slip, SetupSetsTheSlitAndThePane) {
  Connect();
  Ask([this](QWidget& dialog) {
    for (int i = 4; i >= 0; --i) {
      Click(dialog, kSlitOptions[i]);
      Boxes.ExpectMessage(1807, [&] { EXPECT_FALSE(IsEnabled(dialog, "CommandSetup")); });
      Click(dialog, "CommandSetup");
      EXPECT_EQ(Model().SlitCode(), i + 1);
      EXPECT_EQ(Display.Panes[3], std::string("Slip width ") + kSlitWidths[i]);
      EXPECT_TRUE(IsEnabled(dialog, "CommandSetup"));
    }
  });
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(Slip, ARefusalLeavesThePaneAlone) {
  Connect();
  Display.Panes[3] = "as it was";
  for (const char* fault : {"no-reply", "wrong-echo", "cut", "hang-up"}) {
    Ask([&](QWidget& dialog) {
      Click(dialog, "OptionSlip40nm");
      Fail("setslip", fault);
      Boxes.ExpectMessage(1808);
      Click(dialog, "CommandSetup");
      EXPECT_TRUE(Boxes.AllAsked()) << fault;
      EXPECT_EQ(Display.Panes[3], "as it was") << fault;
      EXPECT_TRUE(IsEnabled(dialog, "CommandSetup"));
    });
    EXPECT_TRUE(Display.TimerOn) << fault;
  }
}

TEST_F(Slip, NothingChosenIsAnError) {
  for (const bool connected : {false, true}) {
    if (connected) {
      Connect();
      Fail("getslip", "bad-number", {"7"});
    }
    Ask([&](QWidget& dialog) {
      EXPECT_EQ(Checked(dialog), 0);
      EXPECT_EQ(State(dialog), connected ? Words(1092).toStdString() : "No instrument connected.");
      Boxes.ExpectMessage(1808);
      Click(dialog, "CommandSetup");
      EXPECT_EQ(Model().SlitCode(), 2);
      if (connected) return;
      // Chosen, but there is nobody to set it.
      Click(dialog, "OptionSlip05nm");
      Boxes.ExpectMessage(1808);
      Click(dialog, "CommandSetup");
    });
  }
  EXPECT_EQ(Sent("setslip 1"), 0);
}

TEST_F(Slip, NothingLeavesItWhileTheSlitMoves) {
  Connect();
  Ask([this](QWidget& dialog) {
    Click(dialog, "OptionSlip50nm");
    Boxes.ExpectMessage(1807);
    TryToLeaveAtEachYield(dialog, {"CommandSetup", "CommandClose", "OptionSlip10nm"});
    Click(dialog, "CommandSetup");
  });
  EXPECT_GE(Yields, 2);
  EXPECT_EQ(Model().SlitCode(), 5);
  EXPECT_EQ(Sent("setslip 5"), 1);
}

TEST_F(Slip, ASilentInstrumentIsToldAfterItsTime) {
  Connect();
  Ask([this](QWidget& dialog) {
    FallSilent();
    const std::int64_t begin = Time.NowMs();
    Boxes.ExpectMessage(1808);
    Click(dialog, "CommandSetup");
    EXPECT_EQ(Time.NowMs() - begin, 15'000);
  });
  EXPECT_TRUE(Display.TimerOn);
}

}  // namespace
}  // namespace spectrane::testing_windows
