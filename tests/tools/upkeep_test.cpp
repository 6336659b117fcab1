#include "tools/upkeep.h"

#include "link/linkfixture.h"
#include "tools/setup.h"

namespace spectrane::testing_link {
namespace {

class Upkeep : public LinkFixture {
 protected:
  void SetUp() override { ConnectNow(); }
};

TEST_F(Upkeep, ALampThatIsLitGoesOffAndOneThatIsOffGoesOn) {
  const struct {
    LampKind Lamp;
    const char* Query;
    const char* Answer;
    const char* Sent;
    bool Lit;
  } cases[] = {
      {LampKind::Tungsten, "getwu", "1", "wuoff", false}, {LampKind::Tungsten, "getwu", "0", "wuon", true},
      {LampKind::Tungsten, "getwu", "2", "wuon", true},   {LampKind::Deuterium, "getd2", "1", "d2off", false},
      {LampKind::Deuterium, "getd2", "0", "d2on", true},
  };
  for (const auto& each : cases) {
    Peer.Commands.clear();
    Peer.Lines[each.Query] = {each.Answer};
    bool lit = !each.Lit;
    EXPECT_EQ(SwitchLamp(Link, each.Lamp, lit), LampEnd::Switched) << each.Sent;
    EXPECT_EQ(lit, each.Lit) << each.Sent;
    EXPECT_EQ(Peer.Commands, (std::vector<std::string>{"getwl", each.Query, each.Sent}));
  }
}

TEST_F(Upkeep, ALampWhoseStateIsUnknownIsLeftAlone) {
  const std::vector<Delivery> silent;
  for (const bool lit : {false, true}) {
    bool mark = lit;
    Peer.Next("getwl", silent);
    EXPECT_EQ(SwitchLamp(Link, LampKind::Tungsten, mark), LampEnd::LinkLost);
    Peer.Next("getwu", silent);
    EXPECT_EQ(SwitchLamp(Link, LampKind::Tungsten, mark), LampEnd::StateUnknown);
    Peer.NextText("getwu", "getwu\r\nabc\r\n>");
    EXPECT_EQ(SwitchLamp(Link, LampKind::Tungsten, mark), LampEnd::StateUnknown);
    EXPECT_EQ(mark, lit);
  }
  for (const std::string& command : Peer.Commands) EXPECT_FALSE(command.starts_with("wuo")) << command;
}

TEST_F(Upkeep, ALampThatDoesNotFollowIsWhatItWas) {
  Peer.Lines["getd2"] = {"0"};
  Peer.Next("d2on", {});
  bool lit = true;
  EXPECT_EQ(SwitchLamp(Link, LampKind::Deuterium, lit), LampEnd::NotSwitched);
  EXPECT_FALSE(lit);
  EXPECT_TRUE(Link.Live.LinkLost());
}

TEST_F(Upkeep, AResetTakesWavelengthDarkEnergiesAndReference) {
  Peer.Lines["getwl"] = {"600.5"};
  Peer.Lines["rezero"] = {"43210", "5"};
  EXPECT_EQ(ResetWavelength(Link), UpkeepEnd::Done);
  EXPECT_EQ(Link.State.CurrentWavelength, 600.5);
  EXPECT_EQ(Link.State.FullEnergy, 43210);
  EXPECT_EQ(Link.State.GainIndex, 5);
  EXPECT_EQ(Link.State.DarkEnergy, 105);
  EXPECT_EQ(Display.Wavelength, " 600.5nm");
  EXPECT_EQ(Display.Trans, "100.0%T");
}

TEST_F(Upkeep, AResetWhoseEndCannotBeReadBackCountsAsALostMove) {
  const std::int64_t before = Link.State.LostMoves;
  Peer.NextText("getwl", ScriptedPeer::Reply("getwl", {"546.0"}));
  Peer.NextText("getwl", ScriptedPeer::Reply("getwl"));
  EXPECT_EQ(ResetWavelength(Link), UpkeepEnd::Done);
  EXPECT_EQ(Link.State.LostMoves, before + 1);
  EXPECT_EQ(ResetWavelength(Link), UpkeepEnd::Done);
  EXPECT_EQ(Link.State.LostMoves, before + 1) << "one that was read back";
}

TEST_F(Upkeep, EachBlankOverAnIncompleteDarkTableSaysSoUntilItIsMeasured) {
  const auto remarkOfABlank = [this] {
    Display.SetRemark({});  // as each command does
    Link.Live.mmuOperationRezero(nullptr);
    return Display.Remark;
  };
  const char* const incomplete = "The instrument's dark table is incomplete.";
  EXPECT_EQ(remarkOfABlank(), "");
  Link.Connect.ReleaseConnection();
  Peer.Next("getdark", {});
  ASSERT_TRUE(Link.Connect.mmuOperationConnect());
  EXPECT_EQ(Display.Remark, incomplete);
  EXPECT_EQ(remarkOfABlank(), incomplete);
  EXPECT_EQ(remarkOfABlank(), incomplete);
  EXPECT_EQ(MeasureDarkEnergies(Link, Display), UpkeepEnd::Done);
  EXPECT_EQ(remarkOfABlank(), "");
  Peer.NextText("resetdark", ScriptedPeer::Reply("resetdark", {"301", "302"}));
  EXPECT_EQ(MeasureDarkEnergies(Link, Display), UpkeepEnd::Done);
  EXPECT_EQ(remarkOfABlank(), incomplete) << "energies of two measurements";
  Peer.Next("resetdark", {});
  EXPECT_EQ(MeasureDarkEnergies(Link, Display), UpkeepEnd::Failed);
  EXPECT_EQ(remarkOfABlank(), incomplete);
  EXPECT_EQ(ResetWavelength(Link), UpkeepEnd::Done);
  EXPECT_EQ(remarkOfABlank(), "") << "a reset asks for the table too";
  Peer.Next("resetdark", {});
  EXPECT_EQ(MeasureDarkEnergies(Link, Display), UpkeepEnd::Failed);
  EXPECT_EQ(remarkOfABlank(), "") << "the old ones stay";
}

TEST_F(Upkeep, ABlankWithoutLightSaysThatBeforeTheDarkTable) {
  Link.Connect.ReleaseConnection();
  Peer.Next("getdark", {});
  ASSERT_TRUE(Link.Connect.mmuOperationConnect());
  Peer.NextText("ge 30", ScriptedPeer::Reply("ge 30", std::vector<std::string>(30, "0")));
  Link.Live.mmuOperationRezero(nullptr);
  EXPECT_EQ(Display.Remark, "The blank gives no light.");
}

TEST_F(Upkeep, AGainWithoutADarkEnergyLeavesTheOneThatHolds) {
  Link.State.DarkEnergy = 77;
  Peer.Lines["rezero"] = {"43210", "12"};
  EXPECT_EQ(ResetWavelength(Link), UpkeepEnd::Done);
  EXPECT_EQ(Link.State.DarkEnergy, 77);
}

TEST(WavelengthEntryTest, TextsBecomeWavelengthsOrFaults) {
  const struct {
    const char* Typed;
    EntryFault Fault;
    double Value;
  } cases[] = {
      {"300", EntryFault::None, 300.0},        {"400.0", EntryFault::None, 400.0},
      {" 350.25 ", EntryFault::None, 350.3},   {"3.5e2", EntryFault::None, 350.0},
      {"399.99", EntryFault::None, 400.0},     {"299.99", EntryFault::OutOfRange, 0.0},
      {"400.001", EntryFault::OutOfRange, 0},  {"-350", EntryFault::OutOfRange, 0.0},
      {"", EntryFault::NoNumber, 0.0},         {"  ", EntryFault::NoNumber, 0.0},
      {"350 nm", EntryFault::NoNumber, 0.0},   {"350,5", EntryFault::NoNumber, 0.0},
      {"infinity", EntryFault::NoNumber, 0.0}, {"1e999", EntryFault::NoNumber, 0.0},
  };
  for (const auto& each : cases) {
    const WavelengthEntry entry = ReadWavelengthEntry(each.Typed, kLampSwitchLowest, kLampSwitchHighest);
    EXPECT_EQ(entry.Fault, each.Fault) << each.Typed;
    EXPECT_EQ(entry.Value, each.Value) << each.Typed;
  }
}

}  // namespace
}  // namespace spectrane::testing_link
