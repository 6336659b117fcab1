#include "modes/timescan/timescantest.h"

#include "link/linkfixture.h"
#include "modes/timescan/timescanaxes.h"

namespace spectrane::testing_link {
namespace {

using Log = std::vector<std::string>;

/// Runs on simulated time; what happens stands in Happened, each wire command and each box with the
/// millisecond since the start at which it was seen.
class TimeScanRun : public LinkFixture {
 protected:
  void SetUp() override {
    ConnectNow();
    Link.State.CurrentWavelength = 546;
    TSOption option = Document.Option();
    option.IntervalSecond = 3;  // one second
    Document.Configure(option, 2, 5);
    Test.OnBegin = [this] { Note("begin"); };
    Test.OnDelay = [this] { Note("delay"); };
    Test.OnPoint = [this](std::int32_t point) {
      Note("point " + std::to_string(point));
      if (point == StopAt) StopAtMs = Time.NowMs() + 5;
    };
    Test.OnFinished = [this] { Note(Display.TimerOn ? "finished, live" : "finished"); };
  }
  void Blank() {
    Test.mmuOperationRezero();
    ASSERT_TRUE(Test.BlankDone);
    Peer.Commands.clear();
    Boxes.Ids.clear();
  }
  TimeScanEnd Start() {
    startMs_ = Time.NowMs();
    return Test.mmuStartTest();
  }
  void Note(const std::string& what) {
    for (; told_ < Peer.Commands.size(); ++told_) Happened.push_back(Peer.Commands[told_]);
    Happened.push_back(what);
    StampsMs.push_back(Time.NowMs() - startMs_);
  }

  /// The loop of the program, which stops the test once the time has come.
  class StoppingLoop : public MessageLoop {
   public:
    StoppingLoop(TimeScanRun& run) : run_(run) {}
    void RunOnce() override {}
    void RunUntil(const Clock&, std::int64_t deadlineMs) override {
      Longest = std::max(Longest, deadlineMs - run_.Time.NowMs());
      if (deadlineMs > run_.Time.NowMs()) run_.Time.Set(deadlineMs);
      if (run_.StopAtMs >= 0 && run_.Time.NowMs() >= run_.StopAtMs) run_.Test.TestRunning = false;
    }
    std::int64_t Longest = 0;

   private:
    TimeScanRun& run_;
  };

  Log Happened;
  std::vector<std::int64_t> StampsMs;
  std::int32_t StopAt = -1;
  std::int64_t StopAtMs = -1;
  TimeScanDocument Document;
  StoppingLoop Waits{*this};
  TimeScanTest Test{
      {Link.Instrument, Link.State, Link.Live, Display, Boxes, Link.Formats}, Document, Time, Waits};

 private:
  std::int64_t startMs_ = 0;
  std::size_t told_ = 0;
};

TEST_F(TimeScanRun, GoesFromTheDelayThroughThePointsToItsEnd) {
  Blank();
  EXPECT_EQ(Start(), TimeScanEnd::Finished);
  EXPECT_EQ(Happened, (Log{"begin", "delay", "ge 20", "point 0", "ge 20", "point 1", "ge 20", "point 2",
                           "ge 20", "point 3", "finished"}));
  ASSERT_EQ(Document.DataCount(), 4);
  EXPECT_EQ(Document.Point(0).Time, 2);
  EXPECT_EQ(Document.Point(3).Time, 5);
  EXPECT_EQ(Document.Point(3).Energy, 25000);
  EXPECT_EQ(Document.Option().FullEnergy, 25000);
  EXPECT_EQ(Document.Option().DarkEnergy, 103);
  EXPECT_EQ(Document.Option().GainNo, 3);
  EXPECT_TRUE(Document.IsModified());
  EXPECT_FALSE(Test.TestRunning);
  EXPECT_FALSE(Link.State.InstrumentBusy);
  EXPECT_FALSE(Link.State.RunUnderWay);
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(TimeScanRun, WaitsTheStartSecondAndOneIntervalAfterEachPoint) {
  Blank();
  Start();
  // begin, delay, four points, the end: readings take the time of the line.
  ASSERT_EQ(StampsMs.size(), 7u);
  EXPECT_EQ(StampsMs[1], 0);
  EXPECT_GE(StampsMs[2], 2000);
  EXPECT_LT(StampsMs[2], 2100);
  for (std::size_t i = 3; i < 6; ++i) {
    EXPECT_GE(StampsMs[i] - StampsMs[i - 1], 1000);
    EXPECT_LT(StampsMs[i] - StampsMs[i - 1], 1100);
  }
  EXPECT_EQ(StampsMs[6] - StampsMs[5], 1000) << "a wait follows the last point too";
  EXPECT_LE(Waits.Longest, 10) << "a stop is seen soon";
}

TEST_F(TimeScanRun, StoppedInAWaitItDropsThePointReadLast) {
  Blank();
  StopAt = 2;
  EXPECT_EQ(Start(), TimeScanEnd::Stopped);
  EXPECT_EQ(Happened.back(), "point 2");
  EXPECT_EQ(Document.DataCount(), 2);
  EXPECT_TRUE(Document.IsModified());
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_FALSE(Link.State.InstrumentBusy);
}

TEST_F(TimeScanRun, StoppedInTheDelayItHasNothingToSave) {
  Blank();
  StopAtMs = Time.NowMs() + 1500;
  EXPECT_EQ(Start(), TimeScanEnd::StoppedBefore);
  EXPECT_EQ(Happened, (Log{"begin", "delay"}));
  EXPECT_TRUE(Peer.Commands.empty());
  EXPECT_FALSE(Document.IsModified());
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(TimeScanRun, AReadingThatFailsOnceIsTakenAgainAtOnce) {
  Blank();
  Peer.Next("ge 20", {});
  EXPECT_EQ(Start(), TimeScanEnd::Finished);
  EXPECT_EQ(Document.DataCount(), 4);
  EXPECT_EQ(Peer.Commands.size(), 5u);
  EXPECT_TRUE(Boxes.Ids.empty());
}

// It stands at another gain and wavelength by then, and would answer with energies of that place.
TEST_F(TimeScanRun, AnInstrumentThatRestartsEndsTheTestAtOnce) {
  Blank();
  Peer.NextText("ge 20", ScriptedPeer::Reply("ge 20", Log(20, "30000")));
  Peer.NextText("ge 20", "Spectrophotometer V1.0\r\n>");
  EXPECT_EQ(Start(), TimeScanEnd::Stopped);
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{1096}));
  EXPECT_EQ(Document.DataCount(), 1);
  EXPECT_EQ(Peer.Commands.size(), 2u);
  EXPECT_FALSE(Test.BlankHolds());
}

TEST_F(TimeScanRun, AMoveThatFailsLeavesNoBlank) {
  Blank();
  EXPECT_TRUE(Test.BlankHolds());
  Peer.Next("swl  500", {});
  double wavelength = 500;
  EXPECT_FALSE(Link.Instrument.SetWavelength(wavelength));
  EXPECT_FALSE(Test.BlankHolds());
}

TEST_F(TimeScanRun, ABlankAtAGainWithoutADarkEnergySaysSo) {
  Peer.Lines["rezero"] = {"50000", "9"};
  Blank();
  EXPECT_EQ(Display.Remark, "The instrument's dark table is incomplete.");
  Peer.Lines["rezero"] = {"50000", "8"};
  Blank();
  EXPECT_EQ(Display.Remark, "");
}

TEST_F(TimeScanRun, ABlankThatFailsLeavesTheOldReferenceAndItsDarkEnergy) {
  Peer.Lines["rezero"] = {"50000", "3"};
  Blank();
  ASSERT_TRUE(Test.BlankHolds());
  const std::int32_t full = Link.State.FullEnergy;
  EXPECT_EQ(Link.State.DarkEnergy, Link.State.DarkEnergies[3]);
  Peer.NextText("rezero", ScriptedPeer::Reply("rezero", {"48000", "8"}));
  Peer.Next("ge 30", {});
  Test.mmuOperationRezero();
  EXPECT_EQ(Link.State.FullEnergy, full);
  EXPECT_EQ(Link.State.DarkEnergy, Link.State.DarkEnergies[3]);
  EXPECT_FALSE(Test.BlankHolds());
}

TEST_F(TimeScanRun, ABlankThatIsNotToldWhereTheDriveStandsMovesIt) {
  Link.State.CurrentWavelength = 546;
  Peer.NextText("getwl", ScriptedPeer::Reply("getwl"));
  Peer.Next("swl  546", {});
  Peer.Commands.clear();
  Test.mmuOperationRezero();
  EXPECT_FALSE(Test.BlankDone);
  EXPECT_EQ(Peer.Commands, (Log{"getwl", "swl  546"}));
  EXPECT_EQ(Link.State.CurrentWavelength, 546);
}

TEST_F(TimeScanRun, AReadingThatFailsTwiceEndsTheTestAndKeepsThePoints) {
  Blank();
  Peer.NextText("ge 20", ScriptedPeer::Reply("ge 20", Log(20, "30000")));
  Peer.Next("ge 20", {});
  Peer.Next("ge 20", {});
  EXPECT_EQ(Start(), TimeScanEnd::Stopped);
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{1096}));
  ASSERT_EQ(Document.DataCount(), 1);
  EXPECT_EQ(Document.Point(0).Energy, 30000);
  EXPECT_TRUE(Document.IsModified());
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(TimeScanRun, WithoutAnInstrumentItSaysSo) {
  Link.State.InstrumentConnected = false;
  EXPECT_EQ(Start(), TimeScanEnd::NotBegun);
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{976}));
  EXPECT_TRUE(Happened.empty());
}

TEST_F(TimeScanRun, WithoutABlankItAsksAndTheLiveReadingStaysOff) {
  EXPECT_EQ(Start(), TimeScanEnd::NotBegun);
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{971}));
  EXPECT_TRUE(Test.TestRunning);
  EXPECT_FALSE(Display.TimerOn);
  EXPECT_FALSE(Link.State.RunUnderWay) << "another command may come";
  Blank();
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_EQ(Start(), TimeScanEnd::Finished);
}

TEST_F(TimeScanRun, AtAnotherWavelengthItMovesAndTakesItsOwnBlank) {
  Link.State.CurrentWavelength = 500;
  EXPECT_EQ(Start(), TimeScanEnd::Finished);
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{977, 978}));
  EXPECT_EQ((Log{Peer.Commands.begin(), Peer.Commands.begin() + 5}),
            (Log{"swl  546", "getwl", "rezero", "ge 30", "ge 20"}));
  EXPECT_EQ(Display.Panes[4], "546.0nm");
}

TEST_F(TimeScanRun, AMoveThatFailsEndsItAndTheLiveReadingRuns) {
  Link.State.CurrentWavelength = 500;
  Peer.Next("swl  546", {});
  EXPECT_EQ(Start(), TimeScanEnd::NotBegun);
  EXPECT_TRUE(Boxes.Ids.empty());
  EXPECT_FALSE(Test.TestRunning);
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(TimeScanRun, NeverMovesBeyondTheRange) {
  TSOption option = Document.Option();
  option.WorkWL = 2000;
  Document.Configure(option, 0, 5);
  EXPECT_EQ(Start(), TimeScanEnd::NotBegun);
  EXPECT_TRUE(Peer.Commands.empty());
  EXPECT_NE(Display.Remark.find("2000.0nm"), std::string::npos) << Display.Remark;
}

TEST_F(TimeScanRun, ABlankTakenElsewhereDoesNotHold) {
  Blank();
  Link.State.GainIndex = 4;
  EXPECT_EQ(Start(), TimeScanEnd::NotBegun);
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{971}));
}

TEST_F(TimeScanRun, ABlankOfAnotherWavelengthDoesNotHold) {
  Blank();
  TSOption option = Document.Option();
  option.WorkWL = 500;
  Document.Configure(option, 2, 5);
  Link.State.CurrentWavelength = 500;
  EXPECT_FALSE(Test.BlankHolds());
  EXPECT_EQ(Start(), TimeScanEnd::NotBegun);
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{971}));
  EXPECT_TRUE(Peer.Commands.empty());
}

TEST_F(TimeScanRun, OnlyOneRunOwnsTheInstrument) {
  Blank();
  TimeScanEnd second = TimeScanEnd::Finished;
  Test.OnDelay = [this, &second] { second = Test.mmuStartTest(); };
  EXPECT_EQ(Start(), TimeScanEnd::Finished);
  EXPECT_EQ(second, TimeScanEnd::NotBegun);
  EXPECT_EQ(Document.DataCount(), 4);
}

TEST_F(TimeScanRun, WhoseEndIsBeforeItsStartHasNoPoints) {
  Blank();
  Document.Configure(Document.Option(), 5, 1);
  EXPECT_EQ(Start(), TimeScanEnd::Finished);
  EXPECT_EQ(Happened, (Log{"begin", "delay", "finished"}));
  EXPECT_EQ(Document.DataCount(), 0);
}

TEST_F(TimeScanRun, BlankMovesFirstWhereTheInstrumentStandsElsewhere) {
  Peer.Lines["getwl"] = {"500.0"};
  Test.mmuOperationRezero();
  EXPECT_EQ(Peer.Commands, (Log{"getwl", "swl  546", "rezero", "ge 30"}));
  EXPECT_EQ(Boxes.Ids, (std::vector<int>{978}));
  EXPECT_EQ(Display.Abs, " 0.000Abs");
  EXPECT_EQ(Display.Trans, "100.0%T");
}

TEST_F(TimeScanRun, EachFailureOfTheBlankLeavesTheLiveReadingRunning) {
  Peer.Lines["getwl"] = {"500.0"};
  for (const char* failing : {"getwl", "swl  546", "rezero", "ge 30"}) {
    Display.TimerOn = false;
    Peer.Next(failing, {});
    Test.mmuOperationRezero();
    EXPECT_FALSE(Test.BlankHolds()) << failing;
    EXPECT_FALSE(Link.State.InstrumentBusy) << failing;
    EXPECT_TRUE(Display.TimerOn) << failing;
  }
}

TEST_F(TimeScanRun, PointsOfATestKeepTheirBlank) {
  Blank();
  Start();
  const double abs = Document.PointAbs(0);
  Peer.Lines["rezero"] = {"40000", "4"};
  Peer.NextText("ge 30", ScriptedPeer::Reply("ge 30", Log(30, "40000")));
  Test.mmuOperationRezero();
  EXPECT_EQ(Document.PointAbs(0), abs);
  EXPECT_EQ(Document.Option().FullEnergy, 25000);
  EXPECT_EQ(Document.Option().GainNo, 3);
  Start();
  EXPECT_EQ(Document.Option().FullEnergy, 40000) << "the next test has the new one";
  EXPECT_EQ(Document.Option().GainNo, 4);
}

TEST_F(TimeScanRun, AStopWhileItMovesEndsItWithoutAnotherBox) {
  Link.State.CurrentWavelength = 500;
  Test.OnBegin = [this] { Test.TestRunning = false; };
  EXPECT_EQ(Start(), TimeScanEnd::StoppedBefore);
  EXPECT_TRUE(Boxes.Ids.empty());
  EXPECT_EQ(Peer.Commands, (Log{"swl  546"}));
  EXPECT_FALSE(Test.TestRunning);
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(TimeScanRun, WaitsTellWhatIsLeftOfThem) {
  Blank();
  std::vector<std::int64_t> rests;
  Test.OnWait = [&rests](std::int64_t restMs) { rests.push_back(restMs); };
  Start();
  ASSERT_FALSE(rests.empty());
  EXPECT_EQ(rests.front(), 2000) << "the start delay";
  EXPECT_EQ(rests[1], 1990);
  EXPECT_EQ(std::ranges::count(rests, 1000), 1 + 4) << "once in the delay, and at the begin of each interval";
  EXPECT_GT(*std::ranges::min_element(rests), 0);
}

/// The whole of a test, with the millisecond, the rows and the counts, line by line.
class TimeScanStory : public TimeScanRun {
 protected:
  void SetUp() override {
    TimeScanRun::SetUp();
    Test.OnBegin = [this] { Tell("begin"); };
    Test.OnDelay = [this] { Tell("delay"); };
    Test.OnPoint = [this](std::int32_t point) {
      if (point == StopAt) StopAtMs = Time.NowMs() + 5;
      Tell("row " + std::to_string(point + 1) + " at " + std::to_string(Document.Point(point).Time) +
           " s: " + std::to_string(Document.Point(point).Energy));
    };
    Test.OnFinished = [this] { Tell("finished"); };
    Test.OnWait = [this](std::int64_t restMs) { wait_ = std::max(wait_, restMs); };
  }
  /// What has happened since the last line: commands on the wire, boxes, the longest wait.
  void Tell(const std::string& what) {
    if (wait_ > 0) Story.push_back("wait " + std::to_string(wait_));
    wait_ = 0;
    for (; commands_ < Peer.Commands.size(); ++commands_) Story.push_back(Peer.Commands[commands_]);
    for (; boxes_ < Boxes.Ids.size(); ++boxes_) Story.push_back("box " + std::to_string(Boxes.Ids[boxes_]));
    Story.push_back(what + ", " + std::to_string(Document.DataCount()) +
                    (Test.TestRunning ? " running" : ""));
  }
  void End(TimeScanEnd end) {
    constexpr const char* kEnds[] = {"not begun", "stopped before", "stopped", "finished"};
    Tell(std::string(kEnds[static_cast<int>(end)]) + (Document.IsModified() ? ", modified" : "") +
         (Display.TimerOn ? ", live" : ""));
  }

  Log Story;

 private:
  std::int64_t wait_ = 0;
  std::size_t commands_ = 0;
  std::size_t boxes_ = 0;
};

TEST_F(TimeScanStory, OfATestThatMovesFirst) {
  Link.State.CurrentWavelength = 500;
  Peer.Commands.clear();
  End(Start());
  EXPECT_EQ(Story, (Log{"begin, 0 running",
                        "swl  546",
                        "getwl",
                        "rezero",
                        "ge 30",
                        "box 977",
                        "box 978",
                        "delay, 0 running",
                        "wait 2000",
                        "ge 20",
                        "row 1 at 2.000000 s: 25000, 1 running",
                        "wait 1000",
                        "ge 20",
                        "row 2 at 3.000000 s: 25000, 2 running",
                        "wait 1000",
                        "ge 20",
                        "row 3 at 4.000000 s: 25000, 3 running",
                        "wait 1000",
                        "ge 20",
                        "row 4 at 5.000000 s: 25000, 4 running",
                        "wait 1000",
                        "finished, 4 running",
                        "finished, modified, live, 4"}));
}

TEST_F(TimeScanStory, OfATestThatIsStopped) {
  Blank();
  StopAt = 1;
  End(Start());
  EXPECT_EQ(Story, (Log{"begin, 0 running", "delay, 0 running", "wait 2000", "ge 20",
                        "row 1 at 2.000000 s: 25000, 1 running", "wait 1000", "ge 20",
                        "row 2 at 3.000000 s: 25000, 2 running", "wait 1000", "stopped, modified, live, 1"}));
}

TEST_F(TimeScanStory, OfATestThatFails) {
  Blank();
  Peer.NextText("ge 20", ScriptedPeer::Reply("ge 20", Log(20, "30000")));
  Peer.Next("ge 20", {});
  Peer.Next("ge 20", {});
  End(Start());
  EXPECT_EQ(Story, (Log{"begin, 0 running", "delay, 0 running", "wait 2000", "ge 20",
                        "row 1 at 2.000000 s: 30000, 1 running", "wait 1000", "ge 20", "ge 20", "box 1096",
                        "stopped, modified, live, 1"}));
}

}  // namespace
}  // namespace spectrane::testing_link
