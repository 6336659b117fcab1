#include "modes/photometry/photometrytest.h"

#include "link/linkfixture.h"
#include "tools/setup.h"

namespace spectrane::testing_link {
namespace {

using Commands = std::vector<std::string>;

class PhotometryRun : public LinkFixture {
 protected:
  void SetUp() override {
    ConnectNow();
    Peer.Lines["ge 30"] = std::vector<std::string>(30, "48000");
  }
  void Blank() {
    Test.mmuOperationRezero();
    ASSERT_TRUE(Test.BlankDone);
    Peer.Commands.clear();
  }
  void FitSampler() { Link.State.SamplerPresent = true; }

  PhotometryDocument Document;
  PhotometryTest Test{{Link.Instrument, Link.State, Link.Live, Display, Boxes, Link.Formats}, Document};
};

TEST_F(PhotometryRun, BlankOrderOnTheWireWhenTheWavelengthIsRight) {
  Test.mmuOperationRezero();
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "rezero", "ge 30"}));
  EXPECT_TRUE(Test.BlankDone);
  EXPECT_EQ(Test.BlankFullEnergy, 48000);
  EXPECT_EQ(Test.BlankDarkEnergy, 103);
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_FALSE(Link.State.InstrumentBusy);
  EXPECT_EQ(Display.Panes[4], "546.0nm");
  EXPECT_EQ(Display.Wavelength, " 546.0nm");
}

TEST_F(PhotometryRun, BlankMovesSamplerAndMonochromatorFirst) {
  FitSampler();
  Link.State.SamplerZeroPosition = 5;
  Test.WaveLength = 500.5;
  Test.mmuOperationRezero();
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "setsampler 5", "swl  500.5", "rezero", "ge 30"}));
  EXPECT_EQ(Link.State.CurrentWavelength, 500.5);
}

TEST_F(PhotometryRun, WavelengthOutsideTheRangeIsHeldAtItsLimit) {
  Test.WaveLength = 2000.0;
  Test.mmuOperationRezero();
  EXPECT_EQ(Peer.Commands[1], "swl  1020");
  EXPECT_EQ(Test.WaveLength, 1020.0) << "rows are labelled with the wavelength that was set";
}

TEST_F(PhotometryRun, BlankWithoutAConnectionDoesNothing) {
  Link.State.InstrumentConnected = false;
  Test.mmuOperationRezero();
  EXPECT_TRUE(Peer.Commands.empty());
  EXPECT_FALSE(Test.BlankDone);
}

TEST_F(PhotometryRun, EachFailureOfTheBlankLeavesNoBlankAndTheLiveReadingRuns) {
  FitSampler();
  Test.WaveLength = 500.0;
  for (const char* failing : {"getwl", "setsampler 1", "swl  500", "rezero", "ge 30"}) {
    Boxes.Ids.clear();
    Display.TimerOn = false;
    Peer.Next(failing, {});
    Test.mmuOperationRezero();
    EXPECT_FALSE(Test.BlankDone) << failing;
    EXPECT_FALSE(Link.State.InstrumentBusy) << failing;
    EXPECT_TRUE(Display.TimerOn) << failing;
    const bool sampler = std::string(failing) == "setsampler 1";
    EXPECT_EQ(Boxes.Ids, sampler ? std::vector<int>{1912} : std::vector<int>{}) << failing;
  }
}

TEST_F(PhotometryRun, AFailedBlankForgetsTheOldOneOnceRezeroWasSent) {
  Blank();
  Peer.Next("getwl", {});
  Test.mmuOperationRezero();
  EXPECT_TRUE(Test.BlankDone) << "the instrument was not asked to change anything";
  Peer.Next("rezero", {});
  Test.mmuOperationRezero();
  EXPECT_FALSE(Test.BlankDone);
  EXPECT_EQ(Test.BlankFullEnergy, 48000) << "the old values stay in place";
}

TEST_F(PhotometryRun, StartWithoutAConnection) {
  Link.State.InstrumentConnected = false;
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{970}));
  EXPECT_TRUE(Peer.Commands.empty());
}

TEST_F(PhotometryRun, StartWithoutABlankSendsNothing) {
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{971}));
  EXPECT_TRUE(Peer.Commands.empty());
  EXPECT_FALSE(Test.TestRunning);
}

TEST_F(PhotometryRun, OneSampleByHand) {
  Blank();
  std::vector<std::int32_t> told;
  Test.OnRow = [&told](std::int32_t row) { told.push_back(row); };
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "ge 10"}));
  ASSERT_EQ(Document.RecordCount(), 1);
  EXPECT_EQ(Document.RecordEnergy(0), 25000);
  EXPECT_EQ(Document.RecordFullEnergy(0), 48000);
  EXPECT_EQ(Document.RecordDarkEnergy(0), 103);
  EXPECT_EQ(Document.RecordWavelength(0), 546.0);
  EXPECT_EQ(Document.RecordNote(0), "");
  EXPECT_EQ(told, (std::vector<std::int32_t>{0}));
  // (25000 - 103) / (48000 - 103) * 100 = 51.98..., -log10(0.5198...) = 0.2841...
  EXPECT_EQ(Display.Trans, " 52.0%T");
  EXPECT_EQ(Display.Abs, " 0.284Abs");
  EXPECT_FALSE(Test.TestRunning);
  EXPECT_FALSE(Link.State.InstrumentBusy);
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_EQ(Link.State.FullEnergy, 48000);
}

TEST_F(PhotometryRun, StartMovesBackToTheTestWavelength) {
  Blank();
  Peer.Lines["getwl"] = {"600.0"};
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  546", "ge 10"}));
}

TEST_F(PhotometryRun, TheSamplerMeasuresThePositionsInUse) {
  FitSampler();
  Blank();
  Link.State.SamplerPositions = {false, true, false, true, false, false, false, false, true};
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Peer.Commands,
            (Commands{"getwl", "setsampler 1", "ge 10", "setsampler 3", "ge 10", "setsampler 8", "ge 10"}));
  ASSERT_EQ(Document.RecordCount(), 3);
  EXPECT_EQ(Document.RecordNote(0), "Sampler Position 1");
  EXPECT_EQ(Document.RecordNote(1), "Sampler Position 3");
  EXPECT_EQ(Document.RecordNote(2), "Sampler Position 8");
}

TEST_F(PhotometryRun, ASamplerThatFailsAtPositionFiveKeepsFourRows) {
  FitSampler();
  Blank();
  Peer.Next("setsampler 5", {});
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{972}));
  EXPECT_EQ(Document.RecordCount(), 4);
  EXPECT_EQ(Peer.Commands.back(), "setsampler 5") << "nothing is measured behind the failure";
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_FALSE(Test.TestRunning);
  EXPECT_FALSE(Link.State.InstrumentBusy);
}

TEST_F(PhotometryRun, AReadingThatFailsStoresNoRow) {
  Blank();
  const std::vector<Delivery> failures[] = {
      {},
      {{1, "ge 10\r\n1\r\n2\r\n>"}},
      {{1, "ge 10\r\n>"}},
      {{1, ScriptedPeer::Reply("ge 10", {"1", "2", "3", "4", "x", "6", "7", "8", "9", "10"})}},
      {{1, "ge 10\r\n250", true}},
  };
  for (const auto& failure : failures) {
    Boxes.Ids.clear();
    Peer.Next("ge 10", failure);
    EXPECT_FALSE(Test.mmuStartTest());
    EXPECT_EQ(Boxes.Ids, (std::vector<int>{972}));
    EXPECT_EQ(Document.RecordCount(), 0);
    EXPECT_TRUE(Test.BlankDone);
  }
}

TEST_F(PhotometryRun, AnEnergyOfZeroIsARow) {
  Blank();
  Peer.Lines["ge 10"] = std::vector<std::string>(10, "0");
  EXPECT_TRUE(Test.mmuStartTest());
  ASSERT_EQ(Document.RecordCount(), 1);
  EXPECT_EQ(Document.RecordEnergy(0), 0);
  EXPECT_EQ(Display.Abs, " 3.000Abs");
}

TEST_F(PhotometryRun, DarkEnergiesBecomeValidRows) {
  Blank();
  Peer.Lines["ge 10"] = std::vector<std::string>(10, "103");
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Document.RecordAbs(0), 3.0);
  EXPECT_EQ(Document.RecordTrans(0), 0.0);
}

TEST_F(PhotometryRun, TheLinkTestThatFailsEndsTheRunWithoutABox) {
  Blank();
  Peer.Next("getwl", {});
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_TRUE(Boxes.Ids.empty());
  EXPECT_EQ(Display.Remark, "Communication error.Please check instrument link cable.");
  EXPECT_EQ(Peer.Commands, (Commands{"getwl"}));
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_FALSE(Test.TestRunning);
}

TEST_F(PhotometryRun, ARestartedInstrumentAsksForANewBlank) {
  Blank();
  Peer.NextText("ge 10", "Spectrophotometer 1.0\r\nready\r\n>");
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{972}));
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{972, 971}));
}

TEST_F(PhotometryRun, ABlankOfAnotherGainCountsAsMissing) {
  Blank();
  Peer.Lines["rezero"] = {"50000", "4"};
  ASSERT_TRUE(Link.Live.mmuRezeroEnergy());
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{971}));
}

TEST_F(PhotometryRun, ABlankHoldsForItsWavelengthOnly) {
  Blank();
  EXPECT_TRUE(Test.BlankHolds());
  Test.WaveLength = 600.0;
  EXPECT_FALSE(Test.BlankHolds());
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{971}));
  EXPECT_TRUE(Peer.Commands.empty());
  Test.WaveLength = 546.0;
  EXPECT_TRUE(Test.mmuStartTest());
}

TEST_F(PhotometryRun, AStopIsLookedAtBetweenAnyTwoCommandsOfARun) {
  FitSampler();
  Blank();
  Link.State.SamplerPositions = {false, true, true, false, false, false, false, false, false};
  Peer.Lines["getwl"] = {"600.0"};
  const Commands all = {"getwl", "swl  546", "setsampler 1", "ge 10", "setsampler 2", "ge 10"};
  for (std::size_t wanted = 1; wanted < all.size(); ++wanted) {
    Peer.Commands.clear();
    const std::int32_t rows = Document.RecordCount();
    Test.StopWanted = [&] { return Peer.Commands.size() >= wanted; };
    EXPECT_FALSE(Test.mmuStartTest());
    EXPECT_EQ(Peer.Commands, Commands(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(wanted)));
    EXPECT_EQ(Document.RecordCount() - rows, wanted < 4 ? 0 : 1) << "what was read is kept";
    EXPECT_TRUE(Boxes.Ids.empty());
    EXPECT_TRUE(Display.TimerOn);
    EXPECT_FALSE(Test.TestRunning);
    EXPECT_FALSE(Link.State.InstrumentBusy);
  }
}

TEST_F(PhotometryRun, AStopIsLookedAtBetweenTheCommandsOfABlank) {
  FitSampler();
  Test.WaveLength = 500.0;
  const Commands all = {"getwl", "setsampler 1", "swl  500"};
  for (std::size_t wanted = 1; wanted <= all.size(); ++wanted) {
    Peer.Commands.clear();
    Test.StopWanted = [&] { return Peer.Commands.size() >= wanted; };
    Test.mmuOperationRezero();
    EXPECT_EQ(Peer.Commands, Commands(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(wanted)));
    EXPECT_FALSE(Test.BlankDone);
    EXPECT_TRUE(Boxes.Ids.empty());
    EXPECT_TRUE(Display.TimerOn);
  }
}

/// A message loop in which a person presses a command at every yield.
class ImpatientLoop : public MessageLoop {
 public:
  void RunOnce() override {
    if (OnYield) OnYield();
  }
  void RunUntil(const Clock&, std::int64_t) override { RunOnce(); }
  std::function<void()> OnYield;
};

TEST_F(PhotometryRun, P10_ADriveThatAnswersAndDoesNotGoIsTold) {
  Blank();
  ASSERT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Display.Remark, "") << "where it was sent";
  Peer.Lines["getwl"] = {"500.0"};
  Peer.Commands.clear();
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  546", "ge 10"})) << "nothing is asked beyond the usual";
  EXPECT_NE(Display.Remark.find("stood at 500.0nm"), std::string::npos) << Display.Remark;
  // A person who moved it by the dialog is not told.
  Display.SetRemark({});
  Link.State.CurrentWavelength = 500.0;
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Display.Remark, "");
}

// It stands where a tool has sent it, though the program could not read that back.
TEST_F(PhotometryRun, ADriveThatAToolHasMovedIsNotCalledAstray) {
  Blank();
  Peer.Next("getwl", {});
  ASSERT_FALSE(MoveWavelength(Link, 600.0));
  Peer.Lines["getwl"] = {"600.0"};
  Peer.Commands.clear();
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  546", "ge 10"}));
  EXPECT_EQ(Display.Remark, "");
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_NE(Display.Remark.find("stood at 600.0nm"), std::string::npos) << "sent back, and it did not go";
}

TEST_F(PhotometryRun, AMoveOfTheTestThatFailedMakesNoAstrayWords) {
  Blank();
  Peer.Lines["getwl"] = {"600.0"};
  Peer.Next("swl  546", {});
  EXPECT_FALSE(Test.mmuStartTest());
  Display.SetRemark({});
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Display.Remark, "");
}

TEST_F(PhotometryRun, ABlankAtAGainWithoutADarkEnergySaysSo) {
  for (const char* gain : {"9", "12", "0"}) {
    Peer.Lines["rezero"] = {"50000", gain};
    Test.mmuOperationRezero();
    EXPECT_TRUE(Test.BlankDone) << gain;
    EXPECT_EQ(Display.Remark, "The instrument's dark table is incomplete.") << gain;
  }
  Peer.Lines["rezero"] = {"50000", "8"};
  Test.mmuOperationRezero();
  EXPECT_EQ(Test.BlankDarkEnergy, 108);
  EXPECT_EQ(Display.Remark, "");
}

TEST_F(PhotometryRun, ARestartSeenAtAnyCommandAsksForANewBlank) {
  Blank();
  Peer.NextText("getwl", "Spectrophotometer 1.0\r\nready\r\n>");
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_TRUE(Boxes.Ids.empty());
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{971}));
  Boxes.Ids.clear();
  Blank();
  Peer.NextText("ge 10", "Spectrophotometer 1.0\r\nready\r\n>");
  Link.Live.SampleTimerTick();
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{971})) << "the live reading met it";
}

TEST_F(PhotometryRun, NoiseBeforeTheEchoIsNoRestart) {
  Blank();
  Peer.NextText("getwl", "\xfe\x01getwl\r\n546.0\r\n>");
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Document.RecordCount(), 1);
}

TEST_F(PhotometryRun, TheRemarkOfAFailedStartStandsThoughLiveReadingsPass) {
  Blank();
  Peer.Next("getwl", {});
  EXPECT_FALSE(Test.mmuStartTest());
  Link.Live.SampleTimerTick();
  EXPECT_EQ(Display.Remark, "Communication error.Please check instrument link cable.");
}

// Each rezero may trim the instrument anew: whoever sent it, an older reference no longer fits.
TEST_F(PhotometryRun, ABlankEndsWithTheNextRezeroOfAnybody) {
  Blank();
  EXPECT_TRUE(Test.BlankHolds());
  Link.Live.mmuRezeroEnergy();
  EXPECT_FALSE(Test.BlankHolds());
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, std::vector<int>{971});
}

TEST_F(PhotometryRun, ARangeThatHoldsTheWavelengthElsewhereEndsTheBlank) {
  Test.WaveLength = 900.0;
  Blank();
  Link.State.WavelengthMax = 800.0;
  Peer.Commands.clear();
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Boxes.Ids, std::vector<int>{971});
  EXPECT_EQ(Document.RecordCount(), 0);
}

TEST_F(PhotometryRun, ASamplerWithoutAPositionInUseSaysSo) {
  FitSampler();
  Blank();
  Link.State.SamplerPositions.fill(false);
  EXPECT_TRUE(Test.mmuStartTest()) << "there was nothing to fail";
  EXPECT_EQ(Display.Remark, "No sampler position is in use.");
}

TEST_F(PhotometryRun, TwoQuickStartsTakeOneMeasurement) {
  ImpatientLoop impatient;
  SCI sci(Ports, Time, impatient, Turn);
  Interface instrument(sci, Link.State, Settings);
  LiveReading live(sci, instrument, Link.State, Link.Formats, Display);
  PhotometryTest test({instrument, Link.State, live, Display, Boxes, Link.Formats}, Document);
  int number = 1;
  ASSERT_TRUE(sci.OpenPort(number));
  test.mmuOperationRezero();
  Peer.Commands.clear();
  impatient.OnYield = [&test, &live] {
    EXPECT_FALSE(test.mmuStartTest());
    test.mmuOperationRezero();
    live.SampleTimerTick();
  };
  EXPECT_TRUE(test.mmuStartTest());
  EXPECT_EQ(Document.RecordCount(), 1);
  EXPECT_EQ(std::count(Peer.Commands.begin(), Peer.Commands.end(), "ge 10"), 1)
      << "not even a live reading comes between";
  EXPECT_TRUE(Boxes.Ids.empty());
}

TEST_F(PhotometryRun, TwoWindowsNeverShareTheInstrument) {
  ImpatientLoop impatient;
  SCI sci(Ports, Time, impatient, Turn);
  Interface instrument(sci, Link.State, Settings);
  LiveReading live(sci, instrument, Link.State, Link.Formats, Display);
  Connection connection(instrument, Link.State, live, Display, Boxes, BrandRow(9));
  PhotometryDocument otherDocument;
  PhotometryTest test({instrument, Link.State, live, Display, Boxes, Link.Formats}, Document);
  PhotometryTest other({instrument, Link.State, live, Display, Boxes, Link.Formats}, otherDocument);
  int number = 1;
  ASSERT_TRUE(sci.OpenPort(number));
  other.mmuOperationRezero();
  test.mmuOperationRezero();
  other.WaveLength = 600.0;
  FitSampler();
  Link.State.SamplerPositions = {false, true, true, false, false, false, false, false, false};
  Peer.Commands.clear();
  impatient.OnYield = [&] {
    EXPECT_FALSE(other.mmuStartTest());
    other.mmuOperationRezero();
    live.mmuToolsbarReZero();
    live.mmuOperationRezero(nullptr);
    connection.ReleaseCommand();
    connection.ConnectCommand();
    EXPECT_TRUE(connection.mmuOperationConnect()) << "connected already: nothing to do";
  };
  EXPECT_TRUE(test.mmuStartTest());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "setsampler 1", "ge 10", "setsampler 2", "ge 10"}));
  EXPECT_TRUE(Boxes.Ids.empty());
  EXPECT_FALSE(Link.State.RunUnderWay);
}

}  // namespace
}  // namespace spectrane::testing_link
