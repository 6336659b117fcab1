#include "link/sci.h"

#include <functional>
#include <limits>
#include <utility>

#include "link/linkfixture.h"

namespace spectrane::testing_link {
namespace {

class SCITest : public LinkFixture {
 protected:
  bool Exchange(const std::string& command, int timeout = 3) {
    const std::int64_t before = Time.NowMs();
    const bool passed = Link.Transport.Exchange(command, Reply, timeout);
    Took = Time.NowMs() - before;
    return passed;
  }
  std::string Reply;
  std::int64_t Took = 0;
};

TEST_F(SCITest, SendsTheCommandAndOneCarriageReturnAndNothingElse) {
  OpenLine();
  EXPECT_TRUE(Exchange("getwl"));
  EXPECT_EQ(Peer.Received, "getwl\r");
  EXPECT_EQ(Reply, "getwl\r\n546.0\r\n>");
  EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::Passed);
}

TEST_F(SCITest, EverySplitPointOfAReplyGivesTheSameResult) {
  OpenLine();
  const std::string whole = ScriptedPeer::Reply("ge 2", {"11", "22"});
  for (std::size_t split = 0; split <= whole.size(); ++split) {
    Peer.Next("ge 2", {{1, whole.substr(0, split)}, {400, whole.substr(split)}});
    EXPECT_TRUE(Exchange("ge 2")) << split;
    EXPECT_EQ(Reply, whole) << split;
  }
}

TEST_F(SCITest, OneByteAMillisecondAndOneByteASecond) {
  OpenLine();
  const std::string whole = ScriptedPeer::Reply("getwl", {"546.0"});
  for (const int pace : {1, 1000}) {
    std::vector<Delivery> bytes;
    for (const char c : whole) bytes.push_back({pace, std::string(1, c)});
    Peer.Next("getwl", bytes);
    EXPECT_TRUE(Exchange("getwl", 30)) << pace;
    EXPECT_EQ(Reply, whole) << pace;
    EXPECT_EQ(Took, pace * static_cast<int>(whole.size())) << pace;
  }
}

TEST_F(SCITest, NoReplyFailsAtTheTimeOutWithWhatHadArrived) {
  OpenLine();
  Peer.Next("getwl", {{10, "getwl\r\n54"}});
  EXPECT_FALSE(Exchange("getwl", 3));
  EXPECT_EQ(Reply, "getwl\r\n54");
  EXPECT_EQ(Took, 3000);
  EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::TimedOut);
}

TEST_F(SCITest, PromptExactlyAtTheTimeOutIsTooLate) {
  OpenLine();
  Peer.Next("getwl", {{2999, "getwl\r\n546.0\r\n>"}});
  EXPECT_TRUE(Exchange("getwl", 3));
  Peer.Next("getwl", {{3000, "getwl\r\n546.0\r\n>"}});
  EXPECT_FALSE(Exchange("getwl", 3));
}

TEST_F(SCITest, EmptyReplyGivesFalseWithAnEmptyText) {
  OpenLine();
  Reply = "old";
  Peer.Next("getwl", {});
  EXPECT_FALSE(Exchange("getwl", 1));
  EXPECT_EQ(Reply, "");
}

TEST_F(SCITest, EchoIsComparedExactly) {
  OpenLine();
  const std::pair<const char*, const char*> cases[] = {
      {"no echo", "546.0\r\n>"},
      {"other case", "GETWL\r\n546.0\r\n>"},
      {"echo of the previous command", "ge 10\r\n1\r\n>"},
      {"noise before", "\xff\x01getwl\r\n546.0\r\n>"},
      {"prompt only", ">"},
  };
  for (const auto& [name, reply] : cases) {
    Peer.NextText("getwl", reply);
    EXPECT_FALSE(Exchange("getwl", 1)) << name;
    EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::WrongEcho) << name;
    EXPECT_TRUE(Exchange("getwl")) << "the clean exchange after: " << name;
  }
}

TEST_F(SCITest, DoubledEchoPassesTheComparisonOfTheFirstCharacters) {
  OpenLine();
  Peer.NextText("getwl", "getwlgetwl\r\n546.0\r\n>");
  EXPECT_TRUE(Exchange("getwl"));
}

TEST_F(SCITest, PromptAlonePassesForAnEmptyCommand) {
  OpenLine();
  Peer.NextText("", ">");
  EXPECT_TRUE(Exchange(""));
  EXPECT_EQ(Reply, ">");
}

TEST_F(SCITest, StaleInputIsThrownAwayBeforeTheCommand) {
  OpenLine();
  Ports.Current->Inject("stale\r\n>");
  EXPECT_TRUE(Exchange("getwl"));
  EXPECT_EQ(Reply, "getwl\r\n546.0\r\n>");
}

TEST_F(SCITest, StaleInputThatArrivesAfterTheFlushFailsTheEcho) {
  OpenLine();
  Peer.Next("getwl", {{0, "ge 10\r\n1\r\n>"}, {5, "getwl\r\n546.0\r\n>"}});
  EXPECT_FALSE(Exchange("getwl"));
  EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::WrongEcho);
}

TEST_F(SCITest, ALateReplyToTheSameCommandIsNotTakenForTheNextOne) {
  OpenLine();
  Peer.Next("getwl", {{3050, "getwl\r\n111.0\r\n>"}});
  EXPECT_FALSE(Exchange("getwl", 3));
  EXPECT_TRUE(Exchange("getwl", 3));
  EXPECT_EQ(Reply, "getwl\r\n546.0\r\n>");
  EXPECT_EQ(Peer.Received, "getwl\rgetwl\r") << "nothing extra is sent";
}

TEST_F(SCITest, AfterATimeOutTheLineMustBeQuietForATenthOfASecond) {
  OpenLine();
  Peer.Next("getwl", {});
  EXPECT_FALSE(Exchange("getwl", 1));
  EXPECT_TRUE(Exchange("getwl", 3));
  EXPECT_EQ(Took, 1101) << "before it, and a second after the answer, which may be that to the first request";
  EXPECT_TRUE(Exchange("getwl", 1));
  EXPECT_EQ(Took, 1) << "only the exchange after the failed one waits";
}

TEST_F(SCITest, ALineThatNeverFallsQuietIsWaitedForOneSecondAtMost) {
  OpenLine();
  Peer.Next("getwl", {});
  EXPECT_FALSE(Exchange("getwl", 1));
  for (int at = 50; at <= 5000; at += 50) Ports.Current->Inject("x", at);
  EXPECT_TRUE(Exchange("getwl", 2));
  EXPECT_EQ(Took, 2001) << "before it, and for an answer behind the first one";
  EXPECT_EQ(Reply, "getwl\r\n546.0\r\n>");
}

TEST_F(SCITest, RestOfAReplyThatEndedEarlyDoesNotLeakIntoTheNextButOne) {
  OpenLine();
  Peer.Next("ge 2", {{1, "ge 2\r\n1>"}, {30, "2\r\n22\r\n>"}});
  EXPECT_TRUE(Exchange("ge 2")) << "a piece that ends in the prompt ends the wait";
  Time.Advance(100);
  EXPECT_TRUE(Exchange("getwl"));
  EXPECT_EQ(Reply, "getwl\r\n546.0\r\n>");
}

TEST_F(SCITest, FloodWithoutPromptFailsAtTheTimeOutWithCappedText) {
  OpenLine();
  std::vector<Delivery> flood;
  for (int i = 0; i < 300; ++i) flood.push_back({1, std::string(1024, 'x')});
  Peer.Next("getwl", flood);
  EXPECT_FALSE(Exchange("getwl", 1));
  EXPECT_EQ(Reply.size(), 65536u);
  EXPECT_EQ(Took, 1000);
  EXPECT_TRUE(Exchange("getwl"));
}

TEST_F(SCITest, AWaitThatIsWatchedEndsAsOneThatIsNot) {
  OpenLine();
  int calls = 0;
  Link.Transport.OnWaiting = [&calls] { ++calls; };
  Peer.Next("adjustwl", {{90'100, "adjustwl\r\n", false}, {90, ">", false}});
  EXPECT_TRUE(Exchange("adjustwl", 180));
  EXPECT_EQ(Took, 90'190);
  EXPECT_GE(calls, 360) << "four times a second";
  Peer.Next("adjustwl", {});
  EXPECT_FALSE(Exchange("adjustwl", 180));
  EXPECT_EQ(Took, 180'000);
  EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::TimedOut);
  Peer.Next("adjustwl", {{1'020, "adjus", true}});
  EXPECT_FALSE(Exchange("adjustwl", 180));
  EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::HungUp);
}

TEST_F(SCITest, HangUpInMidReplyFailsAtOnce) {
  OpenLine();
  Peer.Next("adjustwl", {{20, "adjus", true}});
  EXPECT_FALSE(Exchange("adjustwl", 180));
  EXPECT_EQ(Took, 20);
  EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::HungUp);
  EXPECT_FALSE(Exchange("getwl"));
  EXPECT_EQ(Took, 0);
  EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::PortClosed);
}

class CountedExclusion : public Exclusion {
 public:
  bool Acquire() override {
    ++Acquired;
    return Available;
  }
  void Release() override { ++Released; }
  int Acquired = 0;
  int Released = 0;
  bool Available = true;
};

TEST_F(SCITest, ClosedPortFailsAtOnceAndReleasesTheExclusion) {
  CountedExclusion turn;
  SCI sci(Ports, Time, Loop, turn);
  std::string reply = "old";
  EXPECT_FALSE(sci.Exchange("getwl", reply, 3));
  EXPECT_EQ(reply, "");
  EXPECT_EQ(Time.NowMs(), 0);
  EXPECT_EQ(turn.Acquired, 1);
  EXPECT_EQ(turn.Released, 1);
}

TEST_F(SCITest, ExclusionIsHeldOnceAnExchangeAndNotWhileTheLoopRuns) {
  CountedExclusion turn;
  class WatchingLoop : public MessageLoop {
   public:
    explicit WatchingLoop(CountedExclusion& watched) : turn_(watched) {}
    void RunOnce() override {
      ++Runs;
      EXPECT_EQ(turn_.Acquired, turn_.Released);
    }
    void RunUntil(const Clock&, std::int64_t) override {}
    int Runs = 0;

   private:
    CountedExclusion& turn_;
  } loop(turn);
  SCI sci(Ports, Time, loop, turn);
  int number = 1;
  ASSERT_TRUE(sci.OpenPort(number));
  std::string reply;
  EXPECT_TRUE(sci.Exchange("getwl", reply, 3));
  EXPECT_EQ(turn.Acquired, 1);
  EXPECT_EQ(turn.Released, 1);
  EXPECT_EQ(loop.Runs, 2) << "once before and once after";
}

TEST_F(SCITest, WithoutTheExclusionNothingIsSent) {
  CountedExclusion turn;
  turn.Available = false;
  SCI sci(Ports, Time, Loop, turn);
  int number = 1;
  ASSERT_TRUE(sci.OpenPort(number));
  std::string reply;
  EXPECT_FALSE(sci.Exchange("getwl", reply, 3));
  EXPECT_EQ(Peer.Received, "");
  EXPECT_EQ(turn.Released, 0);
  EXPECT_EQ(sci.LastEnd(), ExchangeEnd::NoExclusion);
}

TEST_F(SCITest, DeadlineBeyondThirtyTwoBitsIsAnError) {
  OpenLine();
  Time.Set(std::numeric_limits<std::int32_t>::max() - 3000);
  EXPECT_TRUE(Exchange("getwl", 3)) << "the sum is just the highest value";
  EXPECT_FALSE(Exchange("getwl", 3)) << "one millisecond later it overflows";
  EXPECT_EQ(Peer.Received, "getwl\r");
}

TEST_F(SCITest, PauseLetsTheLoopRunUntilTheClockReadsThere) {
  const int before = Loop.Runs;
  Link.Transport.PauseMs(40);
  EXPECT_EQ(Time.NowMs(), 40);
  EXPECT_GT(Loop.Runs, before);
  for (const int none : {0, -5}) {
    Link.Transport.PauseMs(none);
    EXPECT_EQ(Time.NowMs(), 40);
  }
}

TEST_F(SCITest, WithoutAnyTimeNothingIsWaitedFor) {
  OpenLine();
  EXPECT_FALSE(Exchange("getwl", 0));
  EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::TimedOut);
  EXPECT_EQ(Time.NowMs(), 0);
}

TEST_F(SCITest, OpenAndCloseTellWhatTheyDid) {
  int number = 1;
  EXPECT_FALSE(Link.Transport.ClosePort());
  EXPECT_TRUE(Link.Transport.OpenPort(number));
  EXPECT_TRUE(Link.Transport.ClosePort());
  EXPECT_FALSE(Link.Transport.ClosePort());
}

TEST_F(SCITest, ALineThatGoesWhileItsRestIsWaitedForEndsAtOnce) {
  OpenLine();
  Peer.Next("getwl", {{10, "getwl"}, {3040, "", true}});
  EXPECT_FALSE(Exchange("getwl", 3));
  EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::TimedOut);
  EXPECT_FALSE(Exchange("getwl", 3));
  EXPECT_EQ(Link.Transport.LastEnd(), ExchangeEnd::HungUp);
  EXPECT_LT(Took, 100);
}

/// A message loop in which something happens once, when it is let run behind an exchange.
class LoopWithAnEvent : public MessageLoop {
 public:
  std::function<void()> Event;
  void RunOnce() override {
    if (++runs_ == 2 && Event) Event();
  }
  void RunUntil(const Clock&, std::int64_t) override {}

 private:
  int runs_ = 0;
};

TEST_F(SCITest, TheEndOfAnExchangeIsItsOwnWhateverTheLoopExchanges) {
  LoopWithAnEvent loop;
  SCI sci(Ports, Time, loop, Turn);
  int number = 1;
  ASSERT_TRUE(sci.OpenPort(number));
  Peer.Next("silent", {});
  ExchangeEnd inner = ExchangeEnd::Passed;
  loop.Event = [&] {
    std::string other;
    EXPECT_FALSE(sci.Exchange("silent", other, 1));
    inner = sci.LastEnd();
  };
  std::string reply;
  EXPECT_TRUE(sci.Exchange("getwl", reply, 3));
  EXPECT_EQ(inner, ExchangeEnd::TimedOut);
  EXPECT_EQ(sci.LastEnd(), ExchangeEnd::Passed);
  EXPECT_EQ(reply, "getwl\r\n546.0\r\n>");
}

/// Opens, and takes no byte; the line may go away at that.
class StuckPort : public Port {
 public:
  explicit StuckPort(bool goesAway) : goesAway_(goesAway) {}
  bool Open(const std::string&) override { return open_ = true; }
  bool Close() override { return std::exchange(open_, false); }
  bool IsOpen() const override { return open_; }
  void DiscardInput() override {}
  bool Write(std::string_view, int) override {
    if (goesAway_) open_ = false;
    return false;
  }
  std::string Read(int) override { return {}; }

 private:
  bool goesAway_;
  bool open_ = false;
};

class StuckPorts : public PortList {
 public:
  bool GoesAway = false;
  std::string Path(int) const override { return "stuck"; }
  std::unique_ptr<Port> MakePort(int) override { return std::make_unique<StuckPort>(GoesAway); }
};

TEST_F(SCITest, ACommandThatCannotBeSentTellsWhetherTheLineIsStillThere) {
  StuckPorts ports;
  SCI sci(ports, Time, Loop, Turn);
  const std::pair<bool, ExchangeEnd> rows[] = {{false, ExchangeEnd::WriteFailed},
                                               {true, ExchangeEnd::HungUp}};
  for (const auto& [goesAway, end] : rows) {
    ports.GoesAway = goesAway;
    int number = 1;
    ASSERT_TRUE(sci.OpenPort(number));
    std::string reply = "old";
    EXPECT_FALSE(sci.Exchange("getwl", reply, 3));
    EXPECT_EQ(sci.LastEnd(), end);
    EXPECT_EQ(reply, "");
    EXPECT_EQ(sci.IsPortOpen(), !goesAway);
  }
}

TEST(DescribeEnd, OfEachEnd) {
  EXPECT_EQ(DescribeEnd(ExchangeEnd::Passed), "");
  EXPECT_EQ(DescribeEnd(ExchangeEnd::PortClosed), "the port is not open");
  EXPECT_EQ(DescribeEnd(ExchangeEnd::WriteFailed), "the command could not be sent");
  EXPECT_EQ(DescribeEnd(ExchangeEnd::HungUp), "the line went away");
  EXPECT_EQ(DescribeEnd(ExchangeEnd::TimedOut), "no whole answer came in time");
  EXPECT_EQ(DescribeEnd(ExchangeEnd::WrongEcho), "the answer does not begin with the command");
  EXPECT_EQ(DescribeEnd(ExchangeEnd::NoExclusion),
            "the lock that keeps programs apart on the line cannot be had");
}

TEST_F(SCITest, OpenTellsItsCauses) {
  Ports.Refuse(2, PortFault::NoRights, "no right");
  int missing = 9;
  EXPECT_FALSE(Link.Transport.OpenPort(missing));
  EXPECT_EQ(Link.Transport.LastOpenFault(), PortFault::Missing);
  int barred = 2;
  EXPECT_FALSE(Link.Transport.OpenPort(barred));
  EXPECT_EQ(Link.Transport.LastOpenFault(), PortFault::NoRights);
  EXPECT_EQ(Link.Transport.LastOpenReason(), "no right");
  EXPECT_FALSE(Link.Transport.IsPortOpen());
}

}  // namespace
}  // namespace spectrane::testing_link
