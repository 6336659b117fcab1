#include "link/livereading.h"

#include "base/numericfault.h"
#include "link/linkfixture.h"

namespace spectrane::testing_link {
namespace {

using Commands = std::vector<std::string>;

class LiveReadingTest : public LinkFixture {
 protected:
  void SetUp() override { ConnectNow(); }
  void Tick(int times = 1) {
    for (int i = 0; i < times; ++i) Link.Live.SampleTimerTick();
  }
  static std::vector<std::string> Ten(int energy) {
    return std::vector<std::string>(10, std::to_string(energy));
  }
};

TEST_F(LiveReadingTest, EachTickTakesOneReadingOfTenSamples) {
  Tick();
  EXPECT_EQ(Peer.Commands, (Commands{"ge 10"}));
  EXPECT_EQ(Link.State.SampleIndex, 1);
  EXPECT_EQ(Link.State.EnergyRing[0], 25000);
  EXPECT_EQ(Link.State.EnergyRing[1], 50000);
  EXPECT_FALSE(Link.State.InstrumentBusy);
}

TEST_F(LiveReadingTest, DisplayChangesAfterEveryFifthReading) {
  const int before = Display.AbsChanges;
  Tick(4);
  EXPECT_EQ(Display.AbsChanges, before);
  Tick();
  EXPECT_EQ(Display.AbsChanges, before + 1);
  Tick(15);
  EXPECT_EQ(Display.AbsChanges, before + 4);
  EXPECT_EQ(Link.State.SampleIndex, 0) << "back to the start at twenty";
}

TEST_F(LiveReadingTest, NewFormatsRewriteTheValuesThatAreOnShow) {
  Link.Live.ToolsBarWaveLength(546.25);
  Link.Live.ToolsBarAbsData(0.30103);
  Link.Live.ToolsBarTransData(50.0);
  Link.Formats.AbsFormat = "0.0";
  Link.Formats.TransFormat = "0.000";
  Link.Live.FormatsChanged();
  EXPECT_NE(Display.Abs.find(" 0.3Abs"), std::string::npos) << Display.Abs;
  EXPECT_NE(Display.Trans.find("50.000%T"), std::string::npos) << Display.Trans;
  EXPECT_NE(Display.Wavelength.find("nm"), std::string::npos);
  Link.Live.ToolsBarNoValues();
  Link.Live.FormatsChanged();
  for (const std::string& field : {Display.Wavelength, Display.Abs, Display.Trans})
    EXPECT_EQ(field, "------");
}

TEST_F(LiveReadingTest, HiddenToolbarReadsNothing) {
  Display.Shown = false;
  Tick(5);
  EXPECT_TRUE(Peer.Commands.empty());
  EXPECT_EQ(Link.State.SampleIndex, 0);
}

TEST_F(LiveReadingTest, TickInsideOtherTrafficIsSkipped) {
  Link.State.InstrumentBusy = true;
  Tick();
  EXPECT_TRUE(Peer.Commands.empty());
  EXPECT_TRUE(Link.State.InstrumentBusy) << "the other routine's flag stays";
}

TEST_F(LiveReadingTest, WithoutAnInstrumentNothingIsReadAndNothingZeroed) {
  Link.State.InstrumentConnected = false;
  Tick(5);
  EXPECT_FALSE(Link.Live.mmuToolsbarReZero());
  EXPECT_TRUE(Peer.Commands.empty());
}

TEST_F(LiveReadingTest, AToolbarRezeroInsideARunDoesNothing) {
  const InstrumentRun run(Link.State);
  ASSERT_TRUE(run.Owns());
  EXPECT_FALSE(Link.Live.mmuToolsbarReZero());
  EXPECT_TRUE(Peer.Commands.empty());
}

// 20 readings of 25000: %T = (25000 - 103) / (50000 - 103) * 100 = 49.8967..., Abs = 0.30192...
TEST_F(LiveReadingTest, TwentyEqualReadingsGiveThatReading) {
  Tick(20);
  EXPECT_NEAR(Link.State.CurrentTrans, 24897.0 / 49897.0 * 100.0, 1e-12);
  EXPECT_EQ(Display.Trans, " 49.9%T");
  EXPECT_EQ(Display.Abs, " 0.302Abs");
  EXPECT_EQ(Display.Wavelength, " 546.0nm");
}

TEST_F(LiveReadingTest, FailedReadingEntersZeroAndShowsNoBox) {
  Peer.Next("ge 10", {});
  Tick();
  EXPECT_EQ(Link.State.EnergyRing[0], 0);
  EXPECT_TRUE(Boxes.Ids.empty());
  EXPECT_EQ(Display.Remark, "Communication error.Please check instrument link cable.");
  Tick();
  EXPECT_EQ(Display.Remark, "") << "the link is back";
}

TEST_F(LiveReadingTest, CableGoneWhileIdleFailsAtOnceAndStaysConnected) {
  Ports.Current->HangUp();
  const std::int64_t before = Time.NowMs();
  Tick(5);
  EXPECT_EQ(Time.NowMs(), before);
  EXPECT_TRUE(Link.State.InstrumentConnected);
  EXPECT_TRUE(Boxes.Ids.empty());
  EXPECT_EQ(Display.Remark, "Communication error.Please check instrument link cable.");
}

TEST_F(LiveReadingTest, AReleaseInsideATickShowsNoError) {
  class ReleasingLoop : public MessageLoop {
   public:
    void RunOnce() override {
      if (Release) std::exchange(Release, {})();
    }
    void RunUntil(const Clock&, std::int64_t) override {}
    std::function<void()> Release;
  } loop;
  SCI sci(Ports, Time, loop, Turn);
  Interface instrument(sci, Link.State, Settings);
  LiveReading live(sci, instrument, Link.State, Link.Formats, Display);
  Connection connection(instrument, Link.State, live, Display, Boxes, BrandRow(9));
  int number = 1;
  ASSERT_TRUE(sci.OpenPort(number));
  loop.Release = [&connection] { connection.ReleaseCommand(); };
  live.SampleTimerTick();
  EXPECT_FALSE(Link.State.InstrumentConnected);
  EXPECT_EQ(Display.Remark, "");
  EXPECT_FALSE(Link.State.InstrumentBusy);
}

TEST_F(LiveReadingTest, FieldsAreEmptyWithoutAnInstrument) {
  Link.State.InstrumentConnected = false;
  Link.Live.ToolsBarWaveLength(546.0);
  Link.Live.ToolsBarAbsData(1.0);
  Link.Live.ToolsBarTransData(10.0);
  EXPECT_EQ(Display.Wavelength + Display.Abs + Display.Trans, "");
}

TEST_F(LiveReadingTest, RezeroEnergyTakesThirtySamplesAndRefillsTheRing) {
  const std::int64_t before = Time.NowMs();
  Peer.Lines["rezero"] = {"48000", "5"};
  EXPECT_TRUE(Link.Live.mmuRezeroEnergy());
  EXPECT_EQ(Peer.Commands, (Commands{"rezero", "ge 30"}));
  EXPECT_EQ(Time.NowMs() - before, 1 + 40 + 1);
  EXPECT_EQ(Link.State.FullEnergy, 25000) << "the reading, not the reply of rezero";
  EXPECT_EQ(Link.State.GainIndex, 5);
  EXPECT_EQ(Link.State.DarkEnergy, 105);
  EXPECT_EQ(Link.State.EnergyRing[19], 25000);
  EXPECT_EQ(Display.Abs, " 0.000Abs");
  EXPECT_EQ(Display.Trans, "100.0%T");
  EXPECT_FALSE(Link.State.InstrumentBusy);
}

TEST_F(LiveReadingTest, ToolbarRezeroTakesTenSamplesAndLeavesTheRing) {
  EXPECT_TRUE(Link.Live.mmuToolsbarReZero());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "rezero", "ge 10"}));
  EXPECT_EQ(Link.State.FullEnergy, 25000);
  EXPECT_EQ(Link.State.EnergyRing[0], 50000);
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(LiveReadingTest, ToolbarRezeroBehindADeadLinkEndsAfterTheLinkTest) {
  Peer.Next("getwl", {});
  EXPECT_FALSE(Link.Live.mmuToolsbarReZero());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl"}));
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_EQ(Link.State.FullEnergy, 50000);
}

TEST_F(LiveReadingTest, FailedRezeroLeavesTheOldValuesAndShowsNoBox) {
  for (const char* failing : {"rezero", "ge 30"}) {
    Peer.Next(failing, {});
    EXPECT_FALSE(Link.Live.mmuRezeroEnergy()) << failing;
    EXPECT_EQ(Link.State.FullEnergy, 50000) << failing;
    EXPECT_EQ(Link.State.DarkEnergy, 103) << failing;
    EXPECT_FALSE(Link.State.InstrumentBusy) << failing;
    EXPECT_TRUE(Boxes.Ids.empty()) << failing;
  }
}

TEST_F(LiveReadingTest, ARezeroThatIsShortOfALineLeavesTheOldValues) {
  Peer.Next("rezero", {{1, ScriptedPeer::Reply("rezero", {"48000"})}});
  EXPECT_FALSE(Link.Live.mmuRezeroEnergy());
  EXPECT_EQ(Link.State.FullEnergy, 50000);
  EXPECT_EQ(Link.State.GainIndex, 3);
  EXPECT_EQ(Peer.Commands.back(), "rezero") << "no reading with a gain that is not known";
  EXPECT_FALSE(Link.State.InstrumentBusy);
}

TEST_F(LiveReadingTest, ABlankWithoutLightIsSaidInTheStatusBar) {
  Peer.Next("ge 30", {{1, ScriptedPeer::Reply("ge 30", std::vector<std::string>(30, "90"))}});
  EXPECT_TRUE(Link.Live.mmuRezeroEnergy());
  EXPECT_EQ(Display.Remark, "The blank gives no light.");
  EXPECT_EQ(Display.Abs, " 3.000Abs");
  EXPECT_EQ(Display.Trans, "  -1.0%T");
}

class CountingTarget : public RezeroTarget {
 public:
  void mmuOperationRezero() override { ++Calls; }
  int Calls = 0;
};

TEST_F(LiveReadingTest, ABlankAsDarkAsTheDarkGivesNoLight) {
  Link.State.DarkEnergy = 103;
  const std::pair<std::int32_t, const char*> rows[] = {
      {102, "The blank gives no light."}, {103, "The blank gives no light."}, {104, ""}};
  for (const auto& [blank, remark] : rows) {
    Link.State.FullEnergy = blank;
    Link.Live.ShowReference();
    EXPECT_EQ(Display.Remark, remark) << blank;
  }
}

TEST_F(LiveReadingTest, EveryGainOfTheTableHasItsDarkEnergy) {
  for (std::int32_t gain = 0; gain < kGainTableSize; ++gain) {
    Link.State.DarkEnergies[static_cast<std::size_t>(gain)] = 500 + gain;
    Link.Live.TakeDarkEnergyOf(gain);
    EXPECT_EQ(Link.State.DarkEnergy, 500 + gain);
  }
  for (const std::int32_t gain : {-1, kGainTableSize, kUnknownGain}) {
    Link.Live.TakeDarkEnergyOf(gain);
    EXPECT_EQ(Link.State.DarkEnergy, 500 + kGainTableSize - 1) << gain;
  }
}

TEST_F(LiveReadingTest, UserRezeroGoesToTheActiveWindow) {
  CountingTarget window;
  Link.Live.mmuOperationRezero(&window);
  EXPECT_EQ(window.Calls, 1);
  EXPECT_TRUE(Peer.Commands.empty());
  Link.Live.mmuOperationRezero(nullptr);
  EXPECT_EQ(Peer.Commands, (Commands{"rezero", "ge 30"}));
  EXPECT_TRUE(Display.TimerOn);
  Link.State.InstrumentConnected = false;
  Link.Live.mmuOperationRezero(&window);
  Link.Live.mmuOperationRezero(nullptr);
  EXPECT_EQ(window.Calls, 1);
  EXPECT_EQ(Peer.Commands.size(), 2u);
}

TEST_F(LiveReadingTest, ReferenceHandedOverByAWindow) {
  Link.Live.ToolsBarFullEnergyData(40000, 90, 2);
  EXPECT_EQ(Link.State.FullEnergy, 40000);
  EXPECT_EQ(Link.State.DarkEnergy, 90);
  EXPECT_EQ(Link.State.GainIndex, 2);
}

InstrumentState RingOf(std::vector<std::int32_t> head, std::int32_t rest) {
  InstrumentState state;
  state.EnergyRing.fill(rest);
  std::copy(head.begin(), head.end(), state.EnergyRing.begin());
  state.EnergyRing[20] = 999999;  // not in use
  return state;
}

// By hand: (sum of 20 - highest - lowest) / 18.
TEST(TrimmedMean, DropsOneHighestAndOneLowest) {
  EXPECT_EQ(TrimmedMean(RingOf({}, 25000)), 25000);
  EXPECT_EQ(TrimmedMean(RingOf({2000000000}, 25000)), 25000) << "one spike has no effect";
  EXPECT_EQ(TrimmedMean(RingOf({43000, 43000}, 25000)), 26000) << "two spikes do: (18 * 25000 + 18000) / 18";
  EXPECT_EQ(TrimmedMean(RingOf({0}, 25000)), 25000);
  EXPECT_EQ(TrimmedMean(RingOf({0, 0}, 18)), 17) << "one of two failed readings counts: 306 / 18";
  EXPECT_EQ(TrimmedMean(RingOf({9, 0, 18}, 0)), 0) << "9 / 18 = 0.5, to the even neighbour";
  EXPECT_EQ(TrimmedMean(RingOf({27, 0, 100}, 0)), 2) << "27 / 18 = 1.5, to the even neighbour";
  EXPECT_EQ(TrimmedMean(RingOf({}, -180)), -190) << "the highest starts from 0: (-3600 - 0 + 180) / 18";
  EXPECT_EQ(TrimmedMean(RingOf({}, 180000)), 186111)
      << "the lowest starts from 70000: (3420000 - 70000) / 18";
  EXPECT_THROW(TrimmedMean(RingOf({}, 2147483647)), NumericFault)
      << "(19 * 2147483647 - 70000) / 18 does not fit";
}

}  // namespace
}  // namespace spectrane::testing_link
