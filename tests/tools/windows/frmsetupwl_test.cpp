#include "tools/windows/frmsetupwl.h"

#include "tools/windows/toolfixture.h"

namespace spectrane::testing_windows {
namespace {

class SetupWL : public ToolFixture {
 protected:
  void Ask(std::function<void(QWidget&)> act) { Open<FrmSetupWL>("CloseCmd", std::move(act)); }
};

TEST_F(SetupWL, BeginsWithWhereTheInstrumentStands) {
  Connect();
  Model().MoveTo(612.3);
  Ask([this](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Set Wavelength"));
    EXPECT_EQ(Find<QLabel>(dialog, "LabelWavelength")->text().remove(u'&'), QStringLiteral("Wavelength"));
    EXPECT_EQ(Find<QPushButton>(dialog, "OKCmd")->text().remove(u'&'), QStringLiteral("OK"));
    EXPECT_EQ(Find<QPushButton>(dialog, "ZeroCmd")->text().remove(u'&'), QStringLiteral("Zero"));
    EXPECT_EQ(Find<QPushButton>(dialog, "CloseCmd")->text().remove(u'&'), QStringLiteral("Close"));
    EXPECT_EQ(FieldText(dialog), "612.3");
    EXPECT_EQ(FocusName(), QStringLiteral("WavelengthText"));
    EXPECT_TRUE(Find<QPushButton>(dialog, "OKCmd")->isDefault());
    EXPECT_FALSE(Display.TimerOn) << "the live reading stands while the dialog is open";
    ExpectNamesEverywhere(dialog);
    EXPECT_EQ(AccessKeys(dialog).size(), 4);
  });
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_EQ(Commands, std::vector<std::string>({"getwl"}));
}

TEST_F(SetupWL, OKMovesTheInstrumentAndShowsWhereItIsThen) {
  Connect();
  Ask([this](QWidget& dialog) {
    Type(dialog, "600");
    Press(dialog, Qt::Key_Return);
    EXPECT_EQ(Model().Wavelength(), 600.0);
    EXPECT_EQ(FieldText(dialog), "600.0");
    EXPECT_EQ(Display.Wavelength, " 600.0nm");
    EXPECT_EQ(Link.State.CurrentWavelength, 600.0);
    EXPECT_TRUE(dialog.isVisible());
    Type(dialog, " 333.33 ");
    Click(dialog, "OKCmd");
    EXPECT_EQ(Model().Wavelength(), 333.3);
    EXPECT_EQ(FieldText(dialog), "333.3");
    EXPECT_FALSE(Display.TimerOn);
  });
  EXPECT_EQ(Commands, std::vector<std::string>({"getwl", "swl  600", "getwl", "swl  333.3", "getwl"}));
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(SetupWL, TheEndsOfTheRangeAreWavelengthsAndWhatIsBeyondIsNot) {
  Connect();
  Ask([this](QWidget& dialog) {
    for (const auto& [text, nm] : std::initializer_list<std::pair<const char*, double>>{
             {"1100", 1100.0}, {"190", 190.0}, {"1099.96", 1100.0}, {"190.04", 190.0}}) {
      Model().MoveTo(500.0);
      Type(dialog, text);
      Click(dialog, "OKCmd");
      EXPECT_EQ(Model().Wavelength(), nm) << text;
    }
    EXPECT_EQ(Sent("swl  1100"), 2) << "the limit itself goes over the line";
    Commands.clear();
    for (const char* text : {"1100.01", "189.99", "-546", "0", "1e300"}) {
      Type(dialog, text);
      Boxes.ExpectMessage(1139);
      Click(dialog, "OKCmd");
      EXPECT_EQ(FieldText(dialog), text) << "what was typed stays to be mended";
      EXPECT_EQ(Find<QLineEdit>(dialog, "WavelengthText")->selectedText().toStdString(), text);
    }
  });
  EXPECT_EQ(Model().Wavelength(), 190.0);
  EXPECT_EQ(Commands, std::vector<std::string>());
}

TEST_F(SetupWL, ATextThatIsNoNumberIsRefused) {
  Connect();
  Ask([this](QWidget& dialog) {
    for (const char* text : {"", "   ", "abc", "546,5", "546 nm", "0x10", "nan", "1e999", "5..4"}) {
      Type(dialog, text);
      Boxes.ExpectMessage(1138);
      Click(dialog, "OKCmd");
      EXPECT_TRUE(Boxes.AllAsked()) << text;
    }
  });
  EXPECT_EQ(Commands, std::vector<std::string>({"getwl"}));
}

TEST_F(SetupWL, TheRangeIsThatOfTheInstrument) {
  SimulatedLine other(NarrowInstrument());
  Ports.Put(1, other);
  ConnectNow();
  Ask([&](QWidget& dialog) {
    Type(dialog, "1000");
    Click(dialog, "OKCmd");
    EXPECT_EQ(other.Model().Wavelength(), 1000.0);
    for (const char* text : {"1000.1", "324.9"}) {
      Type(dialog, text);
      Boxes.ExpectMessage(1139);
      Click(dialog, "OKCmd");
    }
    EXPECT_EQ(other.Model().Wavelength(), 1000.0);
  });
}

TEST_F(SetupWL, ZeroTakesAReferenceThere) {
  Connect();
  Insert("dye-2");
  const std::int32_t before = Link.State.FullEnergy;
  Ask([&](QWidget& dialog) {
    Type(dialog, "546");
    Click(dialog, "OKCmd");
    Commands.clear();
    TryToLeaveAtEachYield(dialog, {"OKCmd", "ZeroCmd", "CloseCmd"});
    Click(dialog, "ZeroCmd");
    Loop.OnYield = {};
    EXPECT_EQ(Commands, std::vector<std::string>({"rezero", "ge 30"}));
    for (const char* button : {"OKCmd", "ZeroCmd", "CloseCmd"}) EXPECT_TRUE(IsEnabled(dialog, button));
    EXPECT_EQ(Link.State.FullEnergy, Model().Energy(Time.NowMs()));
    EXPECT_EQ(Link.State.GainIndex, Model().Gain());
    EXPECT_EQ(Display.Abs, " 0.000Abs");
    EXPECT_EQ(Display.Trans, "100.0%T");
    EXPECT_FALSE(Display.TimerOn);
  });
  EXPECT_GE(Yields, 4);
  EXPECT_NE(Link.State.FullEnergy, 0);
  EXPECT_NE(before, 0);
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(SetupWL, NothingLeavesTheDialogWhileTheInstrumentMoves) {
  Connect();
  Ask([this](QWidget& dialog) {
    Type(dialog, "700");
    TryToLeaveAtEachYield(dialog, {"OKCmd", "ZeroCmd", "CloseCmd"});
    Click(dialog, "OKCmd");
  });
  EXPECT_GE(Yields, 4);
  EXPECT_EQ(Model().Wavelength(), 700.0);
  EXPECT_EQ(Commands, std::vector<std::string>({"getwl", "swl  700", "getwl"}));
  EXPECT_EQ(Main.RunDepth, 0);
}

TEST_F(SetupWL, TheWaitIsShownWithItsTimesWhileTheInstrumentMoves) {
  Connect();
  Ask([this](QWidget& dialog) {
    Fail("swl", "late-reply", {"20000"});
    std::vector<std::string> shown;
    Instrument.OnExchange = [&](const ExchangeRecord&) { shown.push_back(WaitTimeText()); };
    Type(dialog, "700");
    Click(dialog, "OKCmd");
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0], "0 s of at most 83 s");
    EXPECT_EQ(shown[1], "21 s of at most 83 s") << "20 s and the move itself";
    EXPECT_EQ(WaitTimeText(), "no box");
  });
}

TEST_F(SetupWL, AMoveThatFailedShowsTheRealPosition) {
  Connect();
  for (const char* fault : {"no-reply", "wrong-echo", "cut"}) {
    Model().MoveTo(546.0);
    Model().Jammed = true;
    Ask([&](QWidget& dialog) {
      Fail("swl", fault);
      Type(dialog, "600");
      Click(dialog, "OKCmd");
      EXPECT_EQ(FieldText(dialog), "546.0") << fault;
      EXPECT_EQ(State(dialog), "The instrument stands at 546.0 nm.") << fault;
      EXPECT_EQ(Link.State.CurrentWavelength, 546.0);
      EXPECT_EQ(Display.Wavelength, " 546.0nm");
    });
    EXPECT_TRUE(Display.TimerOn);
    Model().Jammed = false;
  }
}

TEST_F(SetupWL, WithoutAnInstrumentItSaysSoAndSendsNothing) {
  Ask([this](QWidget& dialog) {
    EXPECT_EQ(FieldText(dialog), "");
    EXPECT_EQ(State(dialog), "No instrument connected.");
    Boxes.ExpectMessage(1138);
    Click(dialog, "OKCmd");
    Type(dialog, "600");
    Click(dialog, "OKCmd");
    EXPECT_EQ(FieldText(dialog), "600");
    EXPECT_EQ(State(dialog), "No instrument connected.");
    Click(dialog, "ZeroCmd");
    EXPECT_EQ(State(dialog), "No instrument connected.");
  });
  EXPECT_EQ(Commands, std::vector<std::string>());
  EXPECT_EQ(Model().Wavelength(), 546.0);
  EXPECT_NE(Link.State.CurrentWavelength, 600.0);
}

TEST_F(SetupWL, WithoutAnInstrumentNobodyBlamesTheCable) {
  Ask([this](QWidget& dialog) {
    Type(dialog, "600");
    for (const char* button : {"OKCmd", "ZeroCmd"}) {
      Click(dialog, button);
      EXPECT_EQ(State(dialog), "No instrument connected.") << button;
      EXPECT_EQ(Display.Remark, "") << button;
      EXPECT_FALSE(Link.Live.LinkLost()) << button;
    }
  });
}

TEST_F(SetupWL, ASilentInstrumentLeavesTheLastValueAndTheDialogUsable) {
  Connect();
  const std::int64_t begin = Time.NowMs();
  Ask([&](QWidget& dialog) {
    FallSilent();
    Type(dialog, "600");
    Click(dialog, "OKCmd");
    EXPECT_EQ(State(dialog), "Communication error.Please check instrument link cable.");
    EXPECT_EQ(Display.Remark, Text(1096));
    EXPECT_EQ(FieldText(dialog), "600");
    EXPECT_TRUE(IsEnabled(dialog, "OKCmd"));
    Click(dialog, "ZeroCmd");
    EXPECT_EQ(State(dialog), "Communication error.Please check instrument link cable.");
  });
  EXPECT_LT(Time.NowMs() - begin, 97'000) << "80 s, 3 s and 10 s, and the quiet line between them";
  EXPECT_EQ(Link.State.CurrentWavelength, 546.0);
  EXPECT_TRUE(Display.TimerOn) << "even after an exchange that failed";
}

TEST_F(SetupWL, AnInstrumentThatDiesInTheMiddleIsToldAtOnce) {
  Connect();
  Ask([this](QWidget& dialog) {
    Fail("swl", "hang-up", {"3"});
    const std::int64_t begin = Time.NowMs();
    Type(dialog, "600");
    Click(dialog, "OKCmd");
    EXPECT_LT(Time.NowMs() - begin, 1000);
    EXPECT_EQ(Display.Remark, Text(1096));
    EXPECT_TRUE(IsEnabled(dialog, "CloseCmd"));
  });
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_FALSE(Link.State.InstrumentBusy);
  EXPECT_FALSE(Link.State.RunUnderWay);
}

TEST_F(SetupWL, AnAnswerThatIsNoWavelengthIsNotShownAsOne) {
  Connect();
  for (const char* answer : {"abc", "", "-1", "0"}) {
    Ask([&](QWidget& dialog) {
      Fail("getwl", "bad-number", {answer});
      Type(dialog, "600");
      Click(dialog, "OKCmd");
      EXPECT_EQ(FieldText(dialog), "600") << answer;
      EXPECT_EQ(State(dialog), "Communication error.Please check instrument link cable.");
    });
    EXPECT_EQ(Link.State.CurrentWavelength, 546.0) << answer;
  }
}

TEST_F(SetupWL, EscAndTheCloseBoxStartTheLiveReadingToo) {
  Connect();
  Ask([](QWidget& dialog) { Press(dialog, Qt::Key_Escape); });
  EXPECT_TRUE(Display.TimerOn);
  Ask([](QWidget& dialog) { dialog.close(); });
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(SetupWL, ACommandInsideALiveReadingWaitsForItsEnd) {
  Connect();
  Ask([this](QWidget& dialog) {
    Link.State.InstrumentBusy = true;
    Type(dialog, "600");
    Click(dialog, "OKCmd");
    QTest::qWait(40);
    EXPECT_EQ(Sent("swl  600"), 0);
    Link.State.InstrumentBusy = false;
    EXPECT_TRUE(QTest::qWaitFor([this] { return Model().Wavelength() == 600.0; }));
  });
}

}  // namespace
}  // namespace spectrane::testing_windows
