// Which of several requests an answer belongs to.

#include <algorithm>
#include <random>

#include "link/linkfixture.h"

namespace spectrane::testing_link {
namespace {

/// Works on one request after the other and stands still in between. Each number in an answer is that of the
/// request, counted from 1.
class PilingPeer : public LinePeer {
 public:
  struct Standstill {
    std::int64_t FromMs;
    std::int64_t ToMs;
  };
  std::vector<Standstill> Standstills;
  /// Numbers of requests that get no answer. One that waits behind others is not lost: whether its answer or
  /// theirs came, nobody could tell.
  std::vector<int> Lost;
  int Requests = 0;

  std::vector<Delivery> Receive(std::string_view bytes, std::int64_t nowMs) override {
    pending_ += bytes;
    std::vector<Delivery> all;
    std::int64_t at = nowMs;
    for (std::size_t end; (end = pending_.find('\r')) != std::string::npos; pending_.erase(0, end + 1)) {
      const std::string command = pending_.substr(0, end);
      ++Requests;
      const bool waits = freeMs_ > nowMs || AwakeAt(nowMs) > nowMs;
      if (!waits && std::ranges::count(Lost, Requests) > 0) continue;
      const std::int64_t start = AwakeAt(std::max(nowMs, freeMs_));
      const std::int64_t half = AwakeAt(start + WorkMs(command) / 2);
      const std::int64_t done = AwakeAt(half + WorkMs(command) / 2);
      const std::string number = std::to_string(Requests);
      const std::size_t lines = command == "rezero"  ? 2
                                : command == "getwl" ? 1
                                                     : std::stoul(command.substr(3));
      const std::string data =
          ScriptedPeer::Reply(command, std::vector<std::string>(lines, number)).substr(command.size() + 2);
      all.push_back({start - at, command + "\r\n"});
      all.push_back({half - start, data.substr(0, data.size() / 2)});
      all.push_back({done - half, data.substr(data.size() / 2)});
      at = freeMs_ = done;
    }
    return all;
  }

 private:
  std::int64_t AwakeAt(std::int64_t ms) const {
    for (const Standstill& still : Standstills) {
      if (ms >= still.FromMs && ms < still.ToMs) return still.ToMs;
    }
    return ms;
  }
  static std::int64_t WorkMs(const std::string& command) {
    return command == "rezero" ? 1500 : command == "getwl" ? 4 : 3 * std::stol(command.substr(3));
  }

  std::string pending_;
  std::int64_t freeMs_ = 0;
};

class InStep : public LinkFixture {
 protected:
  InStep() { Ports.Put(1, Pile); }
  /// The number in the reply; 0 when the exchange failed.
  int Ask(const std::string& command) {
    const bool passed = Link.Transport.Exchange(command, Reply, Interface::TimeoutFor(command));
    return passed ? std::stoi(Reply.substr(command.size() + 2)) : 0;
  }
  PilingPeer Pile;
  std::string Reply;
};

TEST_F(InStep, P01_S15_AnswersThatPiledUpAreNotTakenForTheNext) {
  OpenLine();
  Pile.Standstills = {{0, 50'000}};
  EXPECT_EQ(Ask("ge 20"), 0);
  EXPECT_EQ(Ask("ge 20"), 0);
  EXPECT_EQ(Ask("ge 10"), 0) << "the live reading between two runs";
  Time.Set(49'800);  // it is quiet until the request is sent
  EXPECT_EQ(Ask("ge 20"), 4);
  EXPECT_EQ(Reply, ScriptedPeer::Reply("ge 20", std::vector<std::string>(20, "4")));
  const std::int64_t before = Time.NowMs();
  EXPECT_EQ(Ask("ge 20"), 5);
  EXPECT_EQ(Time.NowMs() - before, 60) << "in step again";
}

TEST_F(InStep, P01_TheRestOfAnAnswerThatBeganIsNotTakenForTheNext) {
  OpenLine();
  Pile.Standstills = {{20, 16'500}};  // in the middle of the first answer
  EXPECT_EQ(Ask("ge 20"), 0);
  Time.Set(16'300);
  EXPECT_EQ(Ask("ge 20"), 0) << "it begins with the rest of another one";
  EXPECT_EQ(Ask("ge 20"), 3);
}

TEST_F(InStep, P01_RequestsThatWereLostCostASecondAndNoReading) {
  OpenLine();
  Pile.Lost = {1, 2};
  EXPECT_EQ(Ask("ge 20"), 0);
  EXPECT_EQ(Ask("ge 20"), 0);
  const std::int64_t before = Time.NowMs();
  EXPECT_EQ(Ask("ge 20"), 3);
  EXPECT_EQ(Time.NowMs() - before, 100 + 60 + 1000);
  EXPECT_EQ(Ask("ge 20"), 4);
}

// Whatever stands still, is lost and is asked: what is taken is the answer to that very sending.
TEST_F(InStep, P01_S15_WhatIsTakenIsTheAnswerToThatSendingWhateverWasAsked) {
  constexpr const char* commands[] = {"ge 20", "ge 20", "ge 20", "ge 10", "ge 30", "getwl", "rezero"};
  int taken = 0;
  for (unsigned seed = 1; seed <= 400; ++seed) {
    std::mt19937 draw(seed);
    const auto below = [&draw](unsigned limit) { return static_cast<int>(draw() % limit); };
    OpenLine();
    Pile = {};
    // A pile is worked off before the next standstill.
    for (std::int64_t at = Time.NowMs(); Pile.Standstills.size() < 4;) {
      const std::int64_t from = at + below(30'000);
      const std::int64_t to = from + below(60'000);
      Pile.Standstills.push_back({from, to});
      at = to + 30'000;
    }
    for (int i = 0; i < 3; ++i) Pile.Lost.push_back(below(40));
    for (int i = 0; i < 40; ++i) {
      const std::string command = commands[below(std::size(commands))];
      if (const int number = Ask(command)) {
        ++taken;
        ASSERT_EQ(number, Pile.Requests) << "seed " << seed << ", request " << i << ": " << command;
      }
      Time.Advance(below(3) == 0 ? below(3000) : below(60));
    }
    Time.Advance(400'000);
    Pile.Lost.clear();
    EXPECT_EQ(Ask("ge 20"), Pile.Requests) << "seed " << seed << ", the clean exchange behind it all";
  }
  EXPECT_GT(taken, 400 * 20);
}

struct UntoldRow {
  const char* Name;
  Delivery Older;
  Delivery Own;
};

TEST_F(LinkFixture, P01_WhereAnOlderAnswerCannotBeToldFromTheOwnOneThereIsNoReading) {
  OpenLine();
  const UntoldRow rows[] = {
      {"half a second before the end of the time, the own one after it",
       {29'600, ScriptedPeer::Reply("ge 1", {"100"})},
       {15'100, ScriptedPeer::Reply("ge 1", {"200"})}},
      {"the echo of the own one is damaged",
       {15'600, ScriptedPeer::Reply("ge 1", {"100"})},
       {900, "ge? 1\r\n200\r\n>"}},
      {"and the older one lost its prompt", {15'600, "ge 1\r\n100\r\n"}, {900, "ge? 1\r\n200\r\n>"}},
  };
  for (const UntoldRow& row : rows) {
    SCOPED_TRACE(row.Name);
    std::int32_t count = 1;
    Peer.Next("ge 1", {row.Older});
    Peer.Next("ge 1", {row.Own});
    EXPECT_EQ(Link.Instrument.GetEnergy(count), 0);
    EXPECT_EQ(Link.Instrument.GetEnergy(count), 0);
    EXPECT_EQ(Link.Instrument.LastReply().End, ExchangeEnd::TimedOut);
    EXPECT_EQ(Link.Instrument.GetEnergy(count), 25000);
  }
}

TEST_F(LinkFixture, P01_AnOlderAnswerThatLostItsEndIsNotTakenForTheOneBehindIt) {
  OpenLine();
  std::int32_t count = 1;
  Peer.Next("ge 1", {{15'600, "ge 1\r\n100\r\n"}});
  Peer.Next("ge 1", {{600, ScriptedPeer::Reply("ge 1", {"200"})}});
  EXPECT_EQ(Link.Instrument.GetEnergy(count), 0);
  EXPECT_EQ(Link.Instrument.GetEnergy(count), 200);
}

// Less than the second that is waited elsewhere: that is all its time-out.
TEST_F(LinkFixture, P01_AProbeWhoseForerunnerWasLostPasses) {
  OpenLine();
  Peer.Next("check", {});
  std::string reply;
  EXPECT_FALSE(Link.Transport.Exchange("check", reply, 1));
  EXPECT_TRUE(Link.Transport.Exchange("check", reply, 1));
  EXPECT_EQ(reply, ScriptedPeer::Reply("check", {"Invalid Command."}));
}

TEST_F(LinkFixture, P01_S02_ACableThatGoesWhileTheOwnAnswerIsAwaitedEndsItAtOnce) {
  OpenLine();
  std::int32_t count = 1;
  Peer.Next("ge 1", {{15'600, ScriptedPeer::Reply("ge 1", {"100"})}});
  Peer.Next("ge 1", {{700, "", true}});
  EXPECT_EQ(Link.Instrument.GetEnergy(count), 0);
  EXPECT_EQ(Link.Instrument.GetEnergy(count), 0);
  EXPECT_EQ(Link.Instrument.LastReply().End, ExchangeEnd::HungUp);
  EXPECT_EQ(Time.NowMs(), 15'000 + 100 + 700);
}

TEST_F(LinkFixture, P01_AnOlderNameThatLostItsEndIsNotTakenForTheOneBehindIt) {
  OpenLine();
  Peer.Next("company", {{3'600, "company\r\nOne\r\n"}});
  Peer.Next("company", {{600, "comp?any\r\nTwo\r\n>"}});
  EXPECT_FALSE(Link.Instrument.CheckCompany());
  EXPECT_FALSE(Link.Instrument.CheckCompany());
  EXPECT_TRUE(Link.Instrument.CheckCompany());
  EXPECT_EQ(Link.Instrument.Company(), "Qvr Works");
}

// What a probe passed with may be older: so short a silence does not say that what was asked before is lost.
TEST_F(LinkFixture, P01_WhatWasAskedBeforeAProbeIsAwaitedStill) {
  OpenLine();
  std::string reply;
  std::int32_t count = 1;
  Peer.Next("check", {{16'300, ScriptedPeer::Reply("check", {"Invalid Command."})}});
  Peer.Next("ge 1", {{16'100, ScriptedPeer::Reply("ge 1", {"100"})}});
  Peer.Next("check", {{1'100, ScriptedPeer::Reply("check", {"Invalid Command."})}});
  Peer.Next("ge 1", {{600, ScriptedPeer::Reply("ge 1", {"200"})}});
  EXPECT_FALSE(Link.Transport.Exchange("check", reply, 1));
  EXPECT_EQ(Link.Instrument.GetEnergy(count), 0);
  EXPECT_TRUE(Link.Transport.Exchange("check", reply, 1));
  EXPECT_EQ(Link.Instrument.GetEnergy(count), 200);
  EXPECT_EQ(Link.Instrument.GetEnergy(count), 25000);
}

TEST_F(LinkFixture, P02_TheRestOfAReplyThatEndedEarlyDoesNotReachTheNextCommand) {
  OpenLine();
  std::int32_t count = 3;
  for (const char* begin : {"ge 3\r\n1>", "ge 3\r\n11\r\n>", "ge 3\r\n11\r\n22\r\n>"}) {
    const std::string whole = ScriptedPeer::Reply("ge 3", {"11", "22", "33"});
    Peer.Next("ge 3", {{1, begin}, {30, whole.substr(std::string(begin).size() - 1)}});
    Link.Instrument.GetEnergy(count);
    EXPECT_FALSE(Link.Instrument.LastReply().Complete()) << begin;
    EXPECT_EQ(Link.Instrument.GetEnergy(count), 25000) << begin;
    EXPECT_TRUE(Link.Instrument.LastReply().Complete()) << begin;
  }
  Peer.Next("sa 3", {{1, "sa 3>"}, {30, "\r\n>"}});
  std::int32_t gain = 3;
  EXPECT_TRUE(Link.Instrument.SetGain(gain));
  EXPECT_EQ(Link.Instrument.GetEnergy(count), 25000);
  EXPECT_TRUE(Link.Instrument.LastReply().Complete());
}

}  // namespace
}  // namespace spectrane::testing_link
