#include "link/interface.h"

#include <functional>
#include <limits>

#include "link/linkfixture.h"

namespace spectrane::testing_link {
namespace {

class InterfaceTest : public LinkFixture {
 protected:
  void SetUp() override { OpenLine(); }
  Interface& I() { return Link.Instrument; }
  std::string Sent() {
    const std::string last = Peer.Commands.empty() ? "" : Peer.Commands.back();
    Peer.Commands.clear();
    return last;
  }
};

struct Row {
  const char* Name;
  std::function<bool(Interface&)> Call;
  const char* Text;
  int TimeoutSeconds;
};

// Text on the wire and time-out of every command, against a peer that never answers.
TEST_F(InterfaceTest, EveryCommandSendsItsTextAndWaitsItsTime) {
  std::int32_t n = 10;
  std::int32_t other = 0;
  double w = 546.5;
  double lamp = 340.0;
  double out = 0.0;
  bool lit = false;
  std::int32_t gain = 3;
  std::int32_t slip = 2;
  std::int32_t cell = 4;
  DarkEnergyTable table{};
  const Row rows[] = {
      {"company", [](Interface& i) { return i.CheckCompany(); }, "company", 3},
      {"connect", [](Interface& i) { return i.ConnectInstrument(); }, "connect", 3},
      {"quit", [](Interface& i) { return i.QuitInstrument(); }, "quit", 10},
      {"rezero", [&](Interface& i) { return i.Rezero(n, other); }, "rezero", 10},
      {"resetdark", [&](Interface& i) { return i.ResetDark(table); }, "resetdark", 15},
      {"getdark", [&](Interface& i) { return i.GetDark(table); }, "getdark", 15},
      {"ge", [&](Interface& i) { return i.GetEnergy(n) != 0; }, "ge 10", 15},
      {"swl", [&](Interface& i) { return i.SetWavelength(w); }, "swl  546.5", 80},
      {"adjustwl", [](Interface& i) { return i.AdjustWavelength(); }, "adjustwl", 180},
      {"getwl", [&](Interface& i) { return i.GetWavelength(out); }, "getwl", 3},
      {"sa", [&](Interface& i) { return i.SetGain(gain); }, "sa 3", 3},
      {"setlampwl", [&](Interface& i) { return i.SetLampWavelength(lamp); }, "setlampwl 340.0", 5},
      {"getlampwl", [&](Interface& i) { return i.GetLampWavelength(out); }, "getlampwl", 5},
      {"wuon", [](Interface& i) { return i.TungstenLampOn(); }, "wuon", 5},
      {"wuoff", [](Interface& i) { return i.TungstenLampOff(); }, "wuoff", 5},
      {"getwu", [&](Interface& i) { return i.GetTungstenLamp(lit); }, "getwu", 5},
      {"d2on", [](Interface& i) { return i.DeuteriumLampOn(); }, "d2on", 30},
      {"d2off", [](Interface& i) { return i.DeuteriumLampOff(); }, "d2off", 5},
      {"getd2", [&](Interface& i) { return i.GetDeuteriumLamp(lit); }, "getd2", 5},
      {"getslip", [&](Interface& i) { return i.GetSlip(other); }, "getslip", 5},
      {"getsampler", [&](Interface& i) { return i.GetSampler(other); }, "getsampler", 5},
      {"setslip", [&](Interface& i) { return i.SetSlip(slip); }, "setslip 2", 15},
      {"setsampler", [&](Interface& i) { return i.SetSampler(cell); }, "setsampler 4", 15},
      {"startwl", [&](Interface& i) { return i.GetStartWavelength(out); }, "startwl", 3},
      {"endwl", [&](Interface& i) { return i.GetEndWavelength(out); }, "endwl", 3},
  };
  for (const Row& row : rows) {
    Peer.Next(row.Text, {});
    OpenLine();  // a fresh line: no quiet time left over from the failure before
    const std::int64_t before = Time.NowMs();
    EXPECT_FALSE(row.Call(I())) << row.Name;
    EXPECT_EQ(Time.NowMs() - before, row.TimeoutSeconds * 1000) << row.Name;
    EXPECT_EQ(Sent(), row.Text) << row.Name;
    EXPECT_EQ(Interface::TimeoutFor(row.Text), row.TimeoutSeconds) << row.Name;
  }
  EXPECT_EQ(Interface::TimeoutFor("gettype"), 3);
  EXPECT_EQ(Interface::TimeoutFor("ge"), 3);
}

TEST_F(InterfaceTest, SampleCountIsClampedInTheCallersVariable) {
  for (const auto& [given, sent] :
       {std::pair{0, "ge 1"}, {-5, "ge 1"}, {1, "ge 1"}, {200, "ge 200"}, {500, "ge 200"}}) {
    std::int32_t n = given;
    I().GetEnergy(n);
    EXPECT_EQ(Sent(), sent) << given;
    EXPECT_EQ("ge " + std::to_string(n), sent) << given;
  }
}

TEST_F(InterfaceTest, GainSlitAndSamplerAreClampedInTheCallersVariable) {
  std::int32_t gain = 0;
  I().SetGain(gain);
  EXPECT_EQ(Sent(), "sa 1");
  EXPECT_EQ(gain, 1);
  gain = 99;
  I().SetGain(gain);
  EXPECT_EQ(Sent(), "sa 8");
  Link.State.GainCount = 11;
  gain = 99;
  I().SetGain(gain);
  EXPECT_EQ(Sent(), "sa 11");
  std::int32_t slip = 6;
  I().SetSlip(slip);
  EXPECT_EQ(Sent(), "setslip 5");
  EXPECT_EQ(slip, 5);
  std::int32_t cell = 9;
  I().SetSampler(cell);
  EXPECT_EQ(Sent(), "setsampler 8");
  cell = 0;
  I().SetSampler(cell);
  EXPECT_EQ(Sent(), "setsampler 1");
  EXPECT_EQ(cell, 1);
}

TEST_F(InterfaceTest, WavelengthTextHasABlankForTheSignAndNoPadding) {
  const std::tuple<double, const char*, double> cases[] = {
      {546.0, "swl  546", 546.0},
      {546.5, "swl  546.5", 546.5},
      {260.25, "swl  260.25", 260.25},
      {5000.0, "swl  1100", 1100.0},
      {1100.0, "swl  1100", 1100.0},
      {189.9, "swl  190", 190.0},
      {-3.0, "swl  190", 190.0},
      {std::numeric_limits<double>::quiet_NaN(), "swl  190", 190.0},
      {std::numeric_limits<double>::infinity(), "swl  1100", 1100.0},
  };
  for (const auto& [given, text, after] : cases) {
    double w = given;
    EXPECT_TRUE(I().SetWavelength(w));
    EXPECT_EQ(Sent(), text) << given;
    EXPECT_EQ(w, after) << given;
  }
}

TEST_F(InterfaceTest, WavelengthCorrectionCountsBelowFiveOnly) {
  for (const auto& [correction, text] : {std::pair{4.5, "swl  504.5"},
                                         {-4.5, "swl  495.5"},
                                         {5.0, "swl  500"},
                                         {-5.0, "swl  500"},
                                         {60.0, "swl  500"}}) {
    Link.State.WavelengthCorrection = correction;
    double w = 500.0;
    I().SetWavelength(w);
    EXPECT_EQ(Sent(), text) << correction;
  }
}

TEST_F(InterfaceTest, LampWavelengthIsClampedAndWrittenWithOneDecimal) {
  double w = 340.25;
  I().SetLampWavelength(w);
  EXPECT_EQ(Sent(), "setlampwl 340.3");
  w = 2000.0;
  I().SetLampWavelength(w);
  EXPECT_EQ(Sent(), "setlampwl 1100.0");
  EXPECT_EQ(w, 1100.0);
  Link.State.WavelengthCorrection = 3.0;
  w = 340.0;
  I().SetLampWavelength(w);
  EXPECT_EQ(Sent(), "setlampwl 340.0") << "no correction here";
}

TEST_F(InterfaceTest, RezeroHandsOverEnergyAndGain) {
  std::int32_t energy = 0;
  std::int32_t gain = 0;
  EXPECT_TRUE(I().Rezero(energy, gain));
  EXPECT_EQ(energy, 50000);
  EXPECT_EQ(gain, 3);
  EXPECT_TRUE(I().LastReply().Complete());
}

TEST_F(InterfaceTest, RezeroKeepsWhatDidNotCome) {
  std::int32_t energy = 7;
  std::int32_t gain = 5;
  Peer.NextText("rezero", "rezero\r\n41000\r\n>");
  EXPECT_TRUE(I().Rezero(energy, gain));
  EXPECT_EQ(energy, 41000);
  EXPECT_EQ(gain, 5);
  EXPECT_FALSE(I().LastReply().Complete());
  Peer.NextText("rezero", "rezero\r\nabc\r\n2\r\n>");
  EXPECT_TRUE(I().Rezero(energy, gain));
  EXPECT_EQ(energy, 41000);
  EXPECT_EQ(gain, 2);
}

TEST_F(InterfaceTest, UnreadableIntegersLeaveTheValue) {
  for (const char* line :
       {"abc", "", "1e999", "NaN", "2147483648", "-2147483649", "12,5", "0x10", "1 2", "--1"}) {
    std::int32_t kind = 77;
    Peer.NextText("getsampler", std::string("getsampler\r\n") + line + "\r\n>");
    EXPECT_TRUE(I().GetSampler(kind)) << line;
    EXPECT_EQ(kind, 77) << line;
    EXPECT_EQ(I().LastReply().LinesLost, 1) << line;
  }
  const std::pair<const char*, std::int32_t> readable[] = {
      {"-1", -1},
      {" 12 ", 12},
      {"2147483647", 2147483647},
      {"-2147483648", std::numeric_limits<std::int32_t>::min()},
      {"+5", 5},
      {"2.5", 2},
      {"3.5", 4}};
  for (const auto& [line, value] : readable) {
    std::int32_t kind = 77;
    Peer.NextText("getsampler", std::string("getsampler\r\n") + line + "\r\n>");
    EXPECT_TRUE(I().GetSampler(kind)) << line;
    EXPECT_EQ(kind, value) << line;
    EXPECT_TRUE(I().LastReply().Complete()) << line;
  }
}

TEST_F(InterfaceTest, WavelengthsAreReadByTheirLeadingNumber) {
  const std::pair<const char*, double> cases[] = {{"546.0", 546.0}, {"546.5nm", 546.5}, {" 260", 260.0},
                                                  {"abc", 0.0},     {"", 0.0},          {"NaN", 0.0},
                                                  {"12,5", 12.0}};
  for (const auto& [line, value] : cases) {
    double w = 1.0;
    Peer.NextText("getwl", std::string("getwl\r\n") + line + "\r\n>");
    EXPECT_TRUE(I().GetWavelength(w)) << line;
    EXPECT_EQ(w, value) << line;
  }
  double w = 1.0;
  Peer.NextText("getwl", "getwl\r\n1e999\r\n>");
  EXPECT_TRUE(I().GetWavelength(w));
  EXPECT_EQ(w, 1.0);
  EXPECT_FALSE(I().LastReply().Complete());
  Peer.NextText("getwl", "getwl\r\n546.0>");
  EXPECT_TRUE(I().GetWavelength(w)) << "a line without a CR";
  EXPECT_EQ(w, 1.0);
  EXPECT_FALSE(I().LastReply().Complete());
}

TEST_F(InterfaceTest, ALampIsLitOnlyByExactlyOne) {
  for (const auto& [line, lit] :
       {std::pair{"1", true}, {"0", false}, {"2", false}, {"-1", false}, {"11", false}}) {
    bool tungsten = !lit;
    Peer.NextText("getwu", std::string("getwu\r\n") + line + "\r\n>");
    EXPECT_TRUE(I().GetTungstenLamp(tungsten));
    EXPECT_EQ(tungsten, lit) << line;
    bool deuterium = !lit;
    Peer.NextText("getd2", std::string("getd2\r\n") + line + "\r\n>");
    EXPECT_TRUE(I().GetDeuteriumLamp(deuterium));
    EXPECT_EQ(deuterium, lit) << line;
  }
}

TEST_F(InterfaceTest, SlitCodeIsZeroedFirst) {
  std::int32_t code = 4;
  Peer.Next("getslip", {});
  EXPECT_FALSE(I().GetSlip(code));
  EXPECT_EQ(code, 0);
  EXPECT_TRUE(I().GetSlip(code));
  EXPECT_EQ(code, 3);
}

TEST_F(InterfaceTest, ConnectNeedsExactlyOk) {
  for (const auto& [line, ok] : {std::pair{"ok.", true},
                                 {"ok", false},
                                 {"OK.", false},
                                 {"ok. ", false},
                                 {" ok.", false},
                                 {"busy.", false},
                                 {"", false},
                                 {"ok.\n", false}}) {
    Peer.NextText("connect", std::string("connect\r\n") + line + "\r\n>");
    EXPECT_EQ(I().ConnectInstrument(), ok) << line;
  }
  Peer.NextText("connect", "connect\r\rok.\r\r>");
  EXPECT_TRUE(I().ConnectInstrument()) << "CR CR line ends";
  Peer.NextText("connect", "connect\n\rok.\n\r>");
  EXPECT_FALSE(I().ConnectInstrument()) << "LF CR line ends leave the LF in the line";
  Peer.NextText("connect", "connect\r\nok.>");
  EXPECT_FALSE(I().ConnectInstrument()) << "no CR behind the answer";
}

TEST_F(InterfaceTest, DarkTableOfEachGainAndTheRestStays) {
  DarkEnergyTable table{};
  table[0] = -7;
  EXPECT_TRUE(I().GetDark(table));
  EXPECT_EQ(table, (DarkEnergyTable{-7, 101, 102, 103, 104, 105, 106, 107, 108, 0, 0, 0}));
  EXPECT_TRUE(I().ResetDark(table));
  EXPECT_EQ(table[8], 208);
}

TEST_F(InterfaceTest, DarkTableWithThreeOfEightLines) {
  DarkEnergyTable table{};
  table.fill(9);
  Peer.NextText("getdark", "getdark\r\n11\r\n12\r\n13\r\n>");
  EXPECT_TRUE(I().GetDark(table));
  EXPECT_EQ(table, (DarkEnergyTable{9, 11, 12, 13, 9, 9, 9, 9, 9, 9, 9, 9}));
  EXPECT_EQ(I().LastReply().LinesLost, 5);
}

TEST_F(InterfaceTest, DarkTableWithMoreLinesThanGainsIgnoresTheRest) {
  DarkEnergyTable table{};
  Peer.NextText("getdark",
                ScriptedPeer::Reply("getdark", {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}));
  EXPECT_TRUE(I().GetDark(table));
  EXPECT_EQ(table[8], 8);
  EXPECT_EQ(table[9], 0);
}

TEST_F(InterfaceTest, ElevenGainsFillElevenEntriesAndMoreGainsThanTheTableLoseTheRest) {
  Link.State.GainCount = 11;
  DarkEnergyTable table{};
  std::vector<std::string> lines;
  for (int i = 1; i <= 14; ++i) lines.push_back(std::to_string(i * 10));
  Peer.NextText("getdark", ScriptedPeer::Reply("getdark", lines));
  EXPECT_TRUE(I().GetDark(table));
  EXPECT_EQ(table[11], 110);
  Link.State.GainCount = 14;
  Peer.NextText("getdark", ScriptedPeer::Reply("getdark", lines));
  EXPECT_TRUE(I().GetDark(table));
  EXPECT_EQ(table[11], 110);
}

TEST_F(InterfaceTest, EnergyWithSevenOfTenLinesIsFlagged) {
  std::int32_t n = 10;
  Peer.NextText("ge 10", ScriptedPeer::Reply("ge 10", {"1", "2", "3", "4", "5", "6", "7"}));
  EXPECT_EQ(I().GetEnergy(n), 5);
  EXPECT_EQ(I().LastReply().LinesLost, 3);
  EXPECT_FALSE(I().LastReply().Complete());
}

TEST_F(InterfaceTest, EnergyWithoutDataIsZeroAndFlagged) {
  std::int32_t n = 10;
  Peer.NextText("ge 10", "ge 10\r\n>");
  EXPECT_EQ(I().GetEnergy(n), 0);
  EXPECT_EQ(I().LastReply().LinesLost, 10);
}

TEST_F(InterfaceTest, AnEnergyThatIsNoNumberLeavesZeroInItsPlace) {
  std::int32_t n = 1;
  Peer.NextText("ge 1", "ge 1\r\nabc\r\n>");
  EXPECT_EQ(I().GetEnergy(n), 0);
  EXPECT_FALSE(I().LastReply().Complete());
  n = 2;
  Peer.NextText("ge 2", "ge 2\r\nabc\r\n31\r\n>");
  EXPECT_EQ(I().GetEnergy(n), 16) << "(0 + 31) / 2, half to even";
}

TEST_F(InterfaceTest, FailedEnergyIsZeroAndTellsThatItFailed) {
  std::int32_t n = 10;
  Peer.Next("ge 10", {});
  EXPECT_EQ(I().GetEnergy(n), 0);
  EXPECT_EQ(I().LastReply().End, ExchangeEnd::TimedOut);
  EXPECT_FALSE(I().LastReply().Complete());
  Peer.NextText("ge 10", ScriptedPeer::Reply("ge 10", std::vector<std::string>(10, "0")));
  EXPECT_EQ(I().GetEnergy(n), 0);
  EXPECT_TRUE(I().LastReply().Complete()) << "an energy of 0 is a reading";
}

TEST_F(InterfaceTest, MoreLinesThanAskedAreIgnored) {
  std::int32_t n = 1;
  Peer.NextText("ge 1", "ge 1\r\n5\r\n6\r\n7\r\n>");
  EXPECT_EQ(I().GetEnergy(n), 5);
  EXPECT_TRUE(I().LastReply().Complete());
}

// Cut where its data should begin, it would be read as a first energy of 3 and a wavelength of 0.
TEST_F(InterfaceTest, AnEchoThatGoesOnIsNoWholeReply) {
  std::int32_t n = 3;
  Peer.NextText("ge 3", "ge 3ge 3\r\n25000\r\n25001\r\n25002\r\n>");
  I().GetEnergy(n);
  EXPECT_FALSE(I().LastReply().Complete());
  double wavelength = 500;
  Peer.NextText("getwl", "getwlgetwl\r\n546.0\r\n>");
  I().GetWavelength(wavelength);
  EXPECT_FALSE(I().LastReply().Complete());
  EXPECT_TRUE(I().GetWavelength(wavelength));
  EXPECT_TRUE(I().LastReply().Complete());
  EXPECT_EQ(wavelength, 546.0);
}

// By hand: one pass carries the highest sample to the end, then the sample at place n / 2 is taken.
TEST(EnergyOfSamples, OnePassAndAPlace) {
  struct Case {
    const char* Name;
    std::vector<std::int32_t> Samples;
    std::int32_t Energy;
  };
  const Case cases[] = {
      {"none", {}, 0},
      {"one", {42}, 42},
      {"two, even sum", {10, 20}, 15},
      {"two, half to the even neighbour below", {10, 15}, 12},
      {"two, half to the even neighbour above", {10, 13}, 12},
      {"two negative", {-3, -2}, -2},
      {"two highest do not wrap", {2147483647, 2147483647}, 2147483647},
      {"three: 1.5 gives place 2", {30, 20, 10}, 10},          // 20 10 30
      {"five: 2.5 gives place 2", {5, 4, 3, 2, 1}, 3},         // 4 3 2 1 5
      {"seven: 3.5 gives place 4", {1, 9, 2, 3, 4, 5, 6}, 4},  // 1 2 3 4 5 6 9
      {"ten: place 5, the order kept but for the highest", {9, 1, 8, 2, 7, 3, 6, 4, 5, 0}, 3},
      {"six: place 3, not what a full sort would give", {6, 5, 1, 2, 3, 4}, 2},  // 5 1 2 3 4 6
  };
  for (const Case& c : cases) EXPECT_EQ(EnergyOfSamples(c.Samples), c.Energy) << c.Name;
}

class SearchTest : public LinkFixture {
 protected:
  Interface& I() { return Link.Instrument; }
  ScriptedPeer Other;
};

TEST_F(SearchTest, FindsTheInstrumentOnPortSevenAndStoresIt) {
  ScriptedPeer instrument;
  Other.Lines["check"] = {"OK"};
  Ports.Put(1, Other);
  Ports.Put(7, instrument);
  EXPECT_TRUE(I().FindInstrument());
  EXPECT_EQ(I().GetPortID(), 7);
  EXPECT_EQ(Settings.GetSetting("Option", "Port ID"), "7");
  EXPECT_TRUE(Link.Transport.IsPortOpen());
  EXPECT_EQ(Other.Commands, (std::vector<std::string>{"check"})) << "nothing else is sent to other devices";
  Link.Instrument.ReleaseInstrument();
  Ports.Opened.clear();
  EXPECT_TRUE(I().FindInstrument());
  EXPECT_EQ(Ports.Opened.front(), 1) << "the next search starts at the first port again";
}

TEST_F(SearchTest, SilentPortCostsOneSecondAndSixteenPortsSixteen) {
  for (int n = 1; n <= 20; ++n) Ports.Put(n, Other);
  Other.Lines.erase("check");
  for (int n = 1; n <= 16; ++n) Other.Next("check", {});
  std::vector<int> probed;
  I().OnProbe = [&probed](int n) { probed.push_back(n); };
  EXPECT_FALSE(I().FindInstrument());
  EXPECT_EQ(Time.NowMs(), 16000);
  EXPECT_EQ(Ports.Opened.back(), 16) << "never beyond the sixteenth";
  EXPECT_EQ(probed.size(), 16u);
  EXPECT_FALSE(Link.Transport.IsPortOpen());
}

TEST_F(SearchTest, DevicesThatAnswerOtherwiseArePassedOver) {
  ScriptedPeer instrument;
  Ports.Put(2, instrument);
  Ports.Put(1, Other);
  for (const char* answer : {"check\r\n>", "check\r\nInvalid Command\r\n>", "Invalid Command.\r\n>", "OK\r\n",
                             "check\r", "$GPGGA,1\r\n$GPGSV,2\r\n", "check\r\nInvalid Command. \r\n>"}) {
    Other.NextText("check", answer);
    EXPECT_TRUE(I().FindInstrument()) << answer;
    EXPECT_EQ(I().GetPortID(), 2) << answer;
    I().ReleaseInstrument();
  }
}

TEST_F(SearchTest, FixedPortOutsideOneToEightTouchesNoPort) {
  ScriptedPeer instrument;
  Ports.Put(9, instrument);
  Link.State.PortSearchMode = 1;
  EXPECT_FALSE(I().FindInstrument()) << "no such key";
  for (const char* stored : {"9", "0", "-1", "COM3", "1e9", "99999999999"}) {
    Settings.PutSetting("Option", "Port ID", stored);
    EXPECT_FALSE(I().FindInstrument()) << stored;
  }
  EXPECT_TRUE(Ports.Opened.empty());
}

TEST_F(SearchTest, FixedPortIsTheOnlyOneTried) {
  ScriptedPeer instrument;
  Ports.Put(3, instrument);
  Link.State.PortSearchMode = 1;
  Settings.PutSetting("Option", "Port ID", "3");
  EXPECT_TRUE(I().FindInstrument());
  EXPECT_EQ(Ports.Opened, (std::vector<int>{3}));
  instrument.NextText("check", "check\r\nno\r\n>");
  I().ReleaseInstrument();
  EXPECT_FALSE(I().FindInstrument());
  EXPECT_FALSE(Link.Transport.IsPortOpen());
}

TEST_F(SearchTest, ReleaseTellsWhetherAPortWasOpenAndAlwaysClearsTheFlag) {
  Link.State.PortOpen = true;
  EXPECT_FALSE(I().ReleaseInstrument());
  EXPECT_FALSE(Link.State.PortOpen);
  EXPECT_TRUE(I().FindInstrument());
  Link.State.PortOpen = true;
  EXPECT_TRUE(I().ReleaseInstrument());
  EXPECT_FALSE(Link.State.PortOpen);
}

/// The instrument's adapter comes back under another number after it was pulled.
class WanderingPorts : public MemoryPortList {
 public:
  WanderingPorts(ManualClock& clock, LinePeer& peer) : MemoryPortList(clock), peer_(peer) {}
  void Refresh() override { Put(++Looks, peer_); }
  std::string Path(int number) const override {
    return number == Looks ? MemoryPortList::Path(number) : std::string();
  }
  int Looks = 0;

 private:
  LinePeer& peer_;
};

TEST_F(SearchTest, EachSearchLooksForThePortsAnew) {
  WanderingPorts ports(Time, Peer);
  SCI sci(ports, Time, Loop, Turn);
  Interface instrument(sci, Link.State, Settings);
  EXPECT_TRUE(instrument.FindInstrument());
  EXPECT_EQ(instrument.GetPortID(), 1);
  instrument.ReleaseInstrument();
  EXPECT_TRUE(instrument.FindInstrument());
  EXPECT_EQ(instrument.GetPortID(), 2);
}

class BarredExclusion : public Exclusion {
 public:
  bool Acquire() override { return false; }
  void Release() override {}
  std::string Reason() const override { return "/run/lock: Permission denied"; }
};

TEST_F(SearchTest, ALockThatCannotBeHadIsNotCalledAMissingInstrument) {
  BarredExclusion barred;
  SCI sci(Ports, Time, Loop, barred);
  Interface instrument(sci, Link.State, Settings);
  EXPECT_FALSE(instrument.FindInstrument());
  ASSERT_FALSE(instrument.Attempts().empty());
  EXPECT_EQ(instrument.Attempts().front().Fault, PortFault::Other);
  EXPECT_EQ(instrument.Attempts().front().Reason, "/run/lock: Permission denied");
  EXPECT_EQ(Peer.Received, "");
}

}  // namespace
}  // namespace spectrane::testing_link
