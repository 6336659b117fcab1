#include "tools/windows/frmlampswitch.h"

#include "tools/windows/toolfixture.h"

namespace spectrane::testing_windows {
namespace {

class LampSwitch : public ToolFixture {
 protected:
  void Ask(std::function<void(QWidget&)> act) { Open<FrmLampSwitch>("CloseCmd", std::move(act)); }
};

TEST_F(LampSwitch, BeginsWithWhatTheInstrumentHas) {
  Connect();
  Model().SetLampSwitch(355.5);
  Ask([this](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Lamp Switch Wavelength"));
    EXPECT_EQ(Find<QPushButton>(dialog, "OKCmd")->text().remove(u'&'), QStringLiteral("Setup"));
    EXPECT_EQ(Find<QPushButton>(dialog, "CloseCmd")->text().remove(u'&'), QStringLiteral("Close"));
    EXPECT_EQ(FieldText(dialog), "355.5");
    EXPECT_FALSE(Display.TimerOn);
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(AccessKeys(dialog).size(), 3);
  });
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_EQ(Commands, std::vector<std::string>({"getlampwl"}));
}

TEST_F(LampSwitch, SetsWhatWasTypedTheTwoLimitsIncluded) {
  Connect();
  Ask([this](QWidget& dialog) {
    for (const auto& [text, nm] : std::initializer_list<std::pair<const char*, double>>{
             {"300", 300.0}, {"400.0", 400.0}, {"350.26", 350.3}, {"399.96", 400.0}}) {
      Model().SetLampSwitch(340.0);
      Type(dialog, text);
      Click(dialog, "OKCmd");
      EXPECT_EQ(Model().LampSwitch(), nm) << text;
      EXPECT_TRUE(dialog.isVisible());
    }
    EXPECT_EQ(FieldText(dialog), "400.0");
  });
  EXPECT_EQ(Sent("setlampwl 300.0"), 1);
  EXPECT_EQ(Sent("setlampwl 400.0"), 2);
}

TEST_F(LampSwitch, BeyondTheLimitsAndWhatIsNoNumberIsRefused) {
  Connect();
  Ask([this](QWidget& dialog) {
    for (const char* text : {"299.9", "299.96", "400.04", "400.1", "-300", "0", "1e9"}) {
      Type(dialog, text);
      Boxes.ExpectMessage(1130);
      Click(dialog, "OKCmd");
      EXPECT_TRUE(Boxes.AllAsked()) << text;
    }
    for (const char* text : {"", " ", "abc", "350,5", "350nm"}) {
      Type(dialog, text);
      Boxes.ExpectMessage(1129);
      Click(dialog, "OKCmd");
      EXPECT_TRUE(Boxes.AllAsked()) << text;
    }
  });
  EXPECT_EQ(Model().LampSwitch(), 340.0);
  EXPECT_EQ(Commands, std::vector<std::string>({"getlampwl"}));
}

TEST_F(LampSwitch, AFailedSettingSaysNothingAndShowsWhatTheInstrumentHas) {
  Connect();
  Ask([this](QWidget& dialog) {
    Fail("setlampwl", "wrong-echo");
    Type(dialog, "380");
    Click(dialog, "OKCmd");
    EXPECT_EQ(FieldText(dialog), "380.0") << "only the answer was spoiled";
    EXPECT_EQ(Model().LampSwitch(), 380.0);
    Fail("setlampwl", "no-reply");
    Type(dialog, "390");
    Click(dialog, "OKCmd");
    EXPECT_EQ(State(dialog), FieldText(dialog) == "390.0" ? "" : "The instrument changes lamps at 380.0 nm.");
  });
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(LampSwitch, WithoutASilentAndWithADyingInstrumentItStaysUsable) {
  Ask([this](QWidget& dialog) {
    EXPECT_EQ(State(dialog), "No instrument connected.");
    Type(dialog, "350");
    Click(dialog, "OKCmd");
    EXPECT_EQ(State(dialog), "No instrument connected.");
  });
  EXPECT_EQ(Model().LampSwitch(), 340.0);
  Connect();
  Ask([this](QWidget& dialog) {
    FallSilent();
    Type(dialog, "350");
    Click(dialog, "OKCmd");
    EXPECT_EQ(State(dialog), "Communication error.Please check instrument link cable.");
    EXPECT_EQ(FieldText(dialog), "350");
    Instrument.Faults().Clear();
    Fail("setlampwl", "hang-up");
    Click(dialog, "OKCmd");
    EXPECT_EQ(Display.Remark, Text(1096));
    EXPECT_TRUE(IsEnabled(dialog, "OKCmd"));
  });
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_FALSE(Link.State.InstrumentBusy);
}

TEST_F(LampSwitch, NothingLeavesItWhileTheInstrumentAnswers) {
  Connect();
  Ask([this](QWidget& dialog) {
    Type(dialog, "360");
    TryToLeaveAtEachYield(dialog, {"OKCmd", "CloseCmd"});
    Click(dialog, "OKCmd");
  });
  EXPECT_GE(Yields, 4);
  EXPECT_EQ(Model().LampSwitch(), 360.0);
  EXPECT_EQ(Sent("setlampwl 360.0"), 1);
}

}  // namespace
}  // namespace spectrane::testing_windows
