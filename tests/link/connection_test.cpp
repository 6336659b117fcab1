#include "link/connection.h"

#include "link/linkfixture.h"

namespace spectrane::testing_link {
namespace {

using Commands = std::vector<std::string>;

class ConnectionTest : public LinkFixture {};

TEST_F(ConnectionTest, CommandOrderOnTheWire) {
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Peer.Received, "check\rcompany\rconnect\rgetwl\rgetdark\rrezero\rgetsampler\rstartwl\rendwl\r");
}

TEST_F(ConnectionTest, StateAfterASuccessfulConnection) {
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  const InstrumentState& s = Link.State;
  EXPECT_TRUE(s.InstrumentConnected);
  EXPECT_TRUE(s.PortOpen);
  EXPECT_FALSE(s.InstrumentBusy);
  EXPECT_EQ(s.CurrentWavelength, 546.0);
  EXPECT_EQ(s.FullEnergy, 50000);
  EXPECT_EQ(s.DarkEnergy, 103) << "that of gain 3";
  EXPECT_EQ(s.GainIndex, 3);
  EXPECT_EQ(s.WavelengthMin, 195.0);
  EXPECT_EQ(s.WavelengthMax, 1020.0);
  EXPECT_FALSE(s.SamplerPresent);
  for (std::size_t i = 0; i < 20; ++i) EXPECT_EQ(s.EnergyRing[i], 50000) << i;
  EXPECT_EQ(Display.Wavelength, " 546.0nm");
  EXPECT_EQ(Display.Abs, " 0.000Abs");
  EXPECT_EQ(Display.Trans, "100.0%T");
  EXPECT_EQ(Display.Panes[1], "connectted.");
  EXPECT_EQ(Display.Panes[2], "Manually sample shelf.");
  EXPECT_FALSE(Display.Panes.contains(3));
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_FALSE(Display.Locked);
  EXPECT_TRUE(Boxes.Ids.empty());
}

class SlitBrandTest : public LinkFixture {
 protected:
  SlitBrandTest() : LinkFixture(3) {}
};

TEST_F(SlitBrandTest, TwoBrandsAskForTheSlit) {
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Peer.Received,
            "check\rcompany\rconnect\rgetwl\rgetdark\rrezero\rgetsampler\rgetslip\rstartwl\rendwl\r");
  EXPECT_EQ(Display.Panes[3], "Slip width 2.0 nm");
}

TEST_F(SlitBrandTest, AQueryThatFailsShowsNoWidth) {
  Display.Panes[3] = "Slip width 2.0 nm";
  Peer.Next("getslip", {});
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Display.Panes[3], "Slip width ");
}

TEST_F(ConnectionTest, ConnectingTwiceKeepsTheLine) {
  ConnectNow();
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_TRUE(Peer.Commands.empty());
}

/// Connects again at every yield, as a timer would.
class ConnectingLoop : public MessageLoop {
 public:
  void RunOnce() override {
    if (Connect) Connect();
  }
  void RunUntil(const Clock&, std::int64_t) override {}
  std::function<void()> Connect;
};

TEST_F(ConnectionTest, ASecondAttemptInsideTheFirstDoesNothing) {
  ConnectingLoop loop;
  SCI sci(Ports, Time, loop, Turn);
  InstrumentState state;
  Interface instrument(sci, state, Settings);
  LiveReading live(sci, instrument, state, Link.Formats, Display);
  Connection connection(instrument, state, live, Display, Boxes, BrandRow(9));
  loop.Connect = [&connection] { connection.mmuOperationConnect(); };
  EXPECT_TRUE(connection.mmuOperationConnect());
  EXPECT_EQ(Peer.Received, "check\rcompany\rconnect\rgetwl\rgetdark\rrezero\rgetsampler\rstartwl\rendwl\r");
  EXPECT_EQ(Ports.Opened, (std::vector<int>{1}));
}

TEST_F(ConnectionTest, TheStatusBarOfAnEarlierLinkDoesNotWipeTheDarkTableRemark) {
  ConnectNow();
  Ports.Current->HangUp();
  Link.Live.SampleTimerTick();
  Link.Connect.ReleaseCommand();
  EXPECT_EQ(Display.Remark, "");
  Peer.NextText("getdark", "getdark\r\n11\r\n12\r\n13\r\n>");
  Link.Connect.ConnectCommand();
  Link.Live.SampleTimerTick();
  EXPECT_EQ(Display.Remark, "The instrument's dark table is incomplete.");
}

TEST(SlipWidthText, OfEachCode) {
  EXPECT_EQ(SlipWidthText(1), "Slip width 0.5 nm");
  EXPECT_EQ(SlipWidthText(2), "Slip width 1.0 nm");
  EXPECT_EQ(SlipWidthText(3), "Slip width 2.0 nm");
  EXPECT_EQ(SlipWidthText(4), "Slip width 4.0 nm");
  EXPECT_EQ(SlipWidthText(5), "Slip width 5.0 nm");
  EXPECT_EQ(SlipWidthText(0), "Slip width ");
  EXPECT_EQ(SlipWidthText(6), "Slip width ");
}

TEST_F(ConnectionTest, NoAnswerOnAnyPort) {
  Peer.NextText("check", "check\r\nHello\r\n>");
  EXPECT_FALSE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{1097}));
  EXPECT_FALSE(Link.State.InstrumentConnected);
  EXPECT_FALSE(Link.State.PortOpen);
  EXPECT_FALSE(Link.State.InstrumentBusy);
  EXPECT_FALSE(Display.Locked);
  EXPECT_FALSE(Display.TimerOn);
  EXPECT_FALSE(Link.Transport.IsPortOpen());
}

TEST_F(ConnectionTest, FixedPortOutsideItsRangeFailsWithoutTouchingAPort) {
  Link.State.PortSearchMode = 1;
  Settings.PutSetting("Option", "Port ID", "9");
  EXPECT_FALSE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{1097}));
  EXPECT_TRUE(Ports.Opened.empty());
}

TEST_F(ConnectionTest, NoCompanyReplyEndsTheAttempt) {
  Peer.Next("company", {});
  EXPECT_FALSE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{1099}));
  EXPECT_EQ(Peer.Commands, (Commands{"check", "company"}));
  EXPECT_FALSE(Link.State.PortOpen);
}

TEST_F(ConnectionTest, WhateverTheCompanyTextSaysTheSequenceGoesOn) {
  for (const char* reply : {"company\r\n\r\n>", "company\r\n>", "company\r\nAnybody\r\n>",
                            "company\r\nQvr Works\r\nModel 8000\r\n>"}) {
    Peer.NextText("company", reply);
    EXPECT_TRUE(Link.Connect.mmuOperationConnect()) << reply;
    Link.Connect.ReleaseConnection();
  }
}

TEST_F(ConnectionTest, P05_LinesBehindTheFirstOneDoNotMatter) {
  Peer.NextText("check", "check\r\nInvalid Command.\r\nType help.\r\n>");
  Peer.NextText("connect", "connect\r\nok.\r\nLamps are warming up.\r\n>");
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_TRUE(Boxes.Ids.empty());
}

TEST_F(ConnectionTest, P15_MissingDarkEnergiesAreToldWithoutAReferenceToo) {
  Peer.NextText("getdark", ScriptedPeer::Reply("getdark", {"101"}));
  Peer.Next("rezero", {});
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Display.Remark, "The instrument's dark table is incomplete.");
}

TEST_F(ConnectionTest, ConnectThatIsNotOkEndsTheAttemptWithoutQuit) {
  Peer.NextText("connect", "connect\r\nbusy.\r\n>");
  EXPECT_FALSE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{1099}));
  EXPECT_EQ(Peer.Commands, (Commands{"check", "company", "connect"}));
  EXPECT_FALSE(Link.State.InstrumentConnected);
  EXPECT_FALSE(Link.State.InstrumentBusy);
  EXPECT_FALSE(Display.Locked);
}

TEST_F(ConnectionTest, FailedGetwlKeepsTheWavelengthField) {
  Peer.Next("getwl", {});
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Display.Wavelength, "unset");
  EXPECT_TRUE(Boxes.Ids.empty());
  EXPECT_TRUE(Link.State.InstrumentConnected);
}

TEST_F(ConnectionTest, FailedGetdarkLeavesTheTimerOffButRezeroIsSent) {
  Peer.Next("getdark", {});
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_FALSE(Display.TimerOn);
  EXPECT_TRUE(Link.State.InstrumentConnected);
  EXPECT_EQ(Link.State.FullEnergy, 0);
  EXPECT_TRUE(Boxes.Ids.empty());
  EXPECT_EQ(Peer.Commands[5], "rezero");
}

TEST_F(ConnectionTest, FailedRezeroLeavesTheTimerOff) {
  Peer.NextText("rezero", "rezero\r\n50000\r\n>");
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_FALSE(Display.TimerOn) << "a reply without its gain is no reference";
  EXPECT_EQ(Link.State.FullEnergy, 0);
}

TEST_F(ConnectionTest, AReconnectionWithoutAReferenceKeepsTheGainThatIsKnown) {
  ConnectNow();
  EXPECT_EQ(Link.State.GainIndex, 3);
  Link.Connect.ReleaseConnection();
  Peer.NextText("rezero", "rezero\r\n50000\r\n>");
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Link.State.GainIndex, 3);
}

TEST_F(ConnectionTest, TheReportTellsOfTheLastAttemptAlone) {
  ConnectNow();
  EXPECT_TRUE(Link.Connect.Report().HasWavelength && Link.Connect.Report().HasReference);
  Link.Connect.ReleaseConnection();
  Peer.Next("company", {});
  EXPECT_FALSE(Link.Connect.mmuOperationConnect());
  EXPECT_FALSE(Link.Connect.Report().HasWavelength);
  EXPECT_FALSE(Link.Connect.Report().HasDark);
  EXPECT_FALSE(Link.Connect.Report().HasReference);
}

TEST_F(ConnectionTest, IncompleteDarkTableIsSaidInTheStatusBar) {
  Peer.NextText("getdark", "getdark\r\n11\r\n12\r\n13\r\n>");
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Link.State.DarkEnergies[3], 13);
  EXPECT_EQ(Link.State.DarkEnergy, 13);
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_EQ(Display.Remark, "The instrument's dark table is incomplete.");
}

TEST_F(ConnectionTest, DarkEnergiesOfAnEarlierInstrumentDoNotSurvive) {
  ConnectNow();
  ASSERT_EQ(Link.State.DarkEnergies[3], 103);
  Link.Connect.ReleaseConnection();
  Peer.NextText("getdark", "getdark\r\n11\r\n12\r\n>");
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Link.State.DarkEnergies, (DarkEnergyTable{0, 11, 12}));
  Link.Connect.ReleaseConnection();
  Peer.Next("getdark", {});
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Link.State.DarkEnergies, DarkEnergyTable{});
  EXPECT_TRUE(Link.Live.mmuRezeroEnergy());
  EXPECT_EQ(Link.State.DarkEnergy, 0) << "no figure of another instrument";
}

TEST_F(ConnectionTest, GainsOutsideTheTableLeaveTheDarkEnergy) {
  for (const char* gain : {"12", "-1", "1000000000"}) {
    Link.State.DarkEnergy = 77;
    Peer.NextText("rezero", std::string("rezero\r\n50000\r\n") + gain + "\r\n>");
    EXPECT_TRUE(Link.Connect.mmuOperationConnect()) << gain;
    EXPECT_EQ(Link.State.DarkEnergy, 77) << gain;
    Link.Connect.ReleaseConnection();
  }
  Peer.NextText("rezero", "rezero\r\n50000\r\n0\r\n>");
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Link.State.DarkEnergy, 0) << "entry 0 of the table";
}

TEST_F(ConnectionTest, SamplerOfAnyKindIsPresentAndPaneTwoStays) {
  Peer.Lines["getsampler"] = {"8"};
  Display.Panes[2] = "before";
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_TRUE(Link.State.SamplerPresent);
  EXPECT_EQ(Display.Panes[2], "before");
}

TEST_F(ConnectionTest, FailedGetsamplerCountsAsManual) {
  Link.State.SamplerPresent = true;
  Peer.Next("getsampler", {});
  EXPECT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_FALSE(Link.State.SamplerPresent);
  EXPECT_EQ(Display.Panes[2], "Manually sample shelf.");
}

TEST_F(ConnectionTest, RangesThatAreNoneLeaveTheStartValues) {
  struct Case {
    const char* Start;
    const char* End;
    double Min, Max;
  };
  const Case cases[] = {{"0", "1020", 190.0, 1020.0},     {"abc", "xyz", 190.0, 1100.0},
                        {"NaN", "1000", 190.0, 1000.0},   {"900", "800", 190.0, 1100.0},
                        {"500", "500", 190.0, 1100.0},    {"-5", "900", 190.0, 900.0},
                        {"200.5", "1000", 200.5, 1000.0}, {"1200", "0", 190.0, 1100.0}};
  for (const Case& c : cases) {
    // An earlier instrument's limits do not survive.
    Link.State.WavelengthMin = 250.0;
    Link.State.WavelengthMax = 800.0;
    Peer.Lines["startwl"] = {c.Start};
    Peer.Lines["endwl"] = {c.End};
    EXPECT_TRUE(Link.Connect.mmuOperationConnect());
    EXPECT_EQ(Link.State.WavelengthMin, c.Min) << c.Start << ' ' << c.End;
    EXPECT_EQ(Link.State.WavelengthMax, c.Max) << c.Start << ' ' << c.End;
    Link.Connect.ReleaseConnection();
  }
}

TEST_F(ConnectionTest, MenuConnectDoesNothingWhenConnected) {
  ConnectNow();
  Link.Connect.ConnectCommand();
  EXPECT_TRUE(Peer.Commands.empty());
  Link.Connect.ReleaseCommand();
  EXPECT_EQ(Peer.Commands, (Commands{"quit"}));
  Link.Connect.ReleaseCommand();
  EXPECT_EQ(Peer.Commands, (Commands{"quit"})) << "released already";
}

TEST_F(ConnectionTest, ReleaseClearsTheFieldsWhateverQuitAnswers) {
  ConnectNow();
  Peer.Next("quit", {});
  Link.Connect.ReleaseConnection();
  EXPECT_FALSE(Link.State.InstrumentConnected);
  EXPECT_FALSE(Link.State.PortOpen);
  EXPECT_FALSE(Link.Transport.IsPortOpen());
  EXPECT_EQ(Display.Panes[1], "No instrument connected.");
  EXPECT_EQ(Display.Wavelength, "");
  EXPECT_EQ(Display.Abs, "");
  EXPECT_EQ(Display.Trans, "");
  EXPECT_FALSE(Display.TimerOn);
}

TEST_F(ConnectionTest, ADeadLinkStaysConnectedUntilReleaseAndConnect) {
  ConnectNow();
  Ports.Current->HangUp();
  double w = 0.0;
  EXPECT_FALSE(Link.Instrument.GetWavelength(w));
  EXPECT_TRUE(Link.State.InstrumentConnected);
  Link.Connect.ReleaseCommand();
  Link.Connect.ConnectCommand();
  EXPECT_TRUE(Link.State.InstrumentConnected);
  EXPECT_TRUE(Link.Instrument.GetWavelength(w));
}

// Each kind of fault in each query of the sequence: the connection comes to its defined end, and the next
// attempt on the healthy line works.
TEST_F(ConnectionTest, EveryFaultInEveryQueryEndsAsDefined) {
  const char* const verbs[] = {"check",  "company",    "connect", "getwl", "getdark",
                               "rezero", "getsampler", "startwl", "endwl"};
  const std::function<std::vector<Delivery>(const std::string&)> faults[] = {
      [](const std::string&) { return std::vector<Delivery>{}; },
      [](const std::string& r) {
        return std::vector<Delivery>{{20000, r}};
      },
      [](const std::string& r) {
        return std::vector<Delivery>{{1, r.substr(0, r.size() / 2)}};
      },
      [](const std::string& r) {
        return std::vector<Delivery>{{1, "\xfe\x01" + r}};
      },
      [](const std::string& r) {
        return std::vector<Delivery>{{1, r.substr(0, r.size() / 2), true}};
      },
      [](const std::string& r) {
        return std::vector<Delivery>{{1, r.substr(0, r.size() - 1)}};
      },
      [](const std::string& r) {
        return std::vector<Delivery>{{1, "x" + r.substr(1)}};
      },
      [](const std::string&) {
        return std::vector<Delivery>{{1, "Banner 1.0\r\nready\r\n>"}};
      },
      [](const std::string&) {
        return std::vector<Delivery>{{1, std::string(70000, 'z')}};
      },
  };
  int kind = 0;
  for (const auto& fault : faults) {
    ++kind;
    for (const char* verb : verbs) {
      Peer.Next(verb, fault(ScriptedPeer::Reply(verb, Peer.Lines[verb])));
      Boxes.Ids.clear();
      const bool connected = Link.Connect.mmuOperationConnect();
      const std::string name = std::string(verb) + ", fault " + std::to_string(kind);
      if (std::string(verb) == "check") {
        EXPECT_EQ(Boxes.Ids, (std::vector<int>{1097})) << name;
      } else if (std::string(verb) == "company" || std::string(verb) == "connect") {
        EXPECT_EQ(Boxes.Ids, (std::vector<int>{1099})) << name;
      } else {
        EXPECT_TRUE(connected) << name;
        EXPECT_TRUE(Boxes.Ids.empty()) << name;
      }
      EXPECT_EQ(Link.State.InstrumentConnected, connected) << name;
      EXPECT_FALSE(Link.State.InstrumentBusy) << name;
      EXPECT_FALSE(Display.Locked) << name;
      Link.Connect.ReleaseCommand();
      EXPECT_TRUE(Link.Connect.mmuOperationConnect()) << "the next attempt after: " << name;
      EXPECT_EQ(Link.State.FullEnergy, 50000) << name;
      Link.Connect.ReleaseCommand();
    }
  }
}

TEST(DescribeAttempts, TellsTheCausesApart) {
  const std::vector<PortAttempt> attempts = {
      {1, PortFault::Missing, ""},
      {2, PortFault::NoRights, "/dev/ttyS0: no right; its group is \"dialout\""},
      {3, PortFault::InUse, "/dev/ttyS1: locked"},
      {4, PortFault::None, ""},
      {5, PortFault::Missing, ""},
      {6, PortFault::Missing, "memory6: gone"},
      {7, PortFault::Other, "memory7: no line"}};
  EXPECT_EQ(DescribeAttempts(attempts),
            "port 2: no rights (/dev/ttyS0: no right; its group is \"dialout\")\n"
            "port 3: in use (/dev/ttyS1: locked)\n"
            "port 4: no answer of an instrument\n"
            "port 6: no such port (memory6: gone)\n"
            "port 7: cannot be opened (memory7: no line)\n"
            "no such port: 1, 5");
  EXPECT_EQ(DescribeAttempts({{4, PortFault::None, ""}}), "port 4: no answer of an instrument");
  EXPECT_EQ(DescribeAttempts({}), "No port was tried: the stored port number is not one of 1 to 8.");
}

}  // namespace
}  // namespace spectrane::testing_link
