// Each of the eighteen ways in which an answer can go wrong, at the level of one exchange and of the
// connection, with the simulated instrument on a line in memory.

#include "link/linkfixture.h"
#include "simulator/faultscript.h"
#include "simulator/simulatedline.h"

namespace spectrane::testing_link {
namespace {

InstrumentOptions Exact() {
  InstrumentOptions options;
  options.Noise = 0.0;
  return options;
}

class FaultTest : public LinkFixture {
 protected:
  FaultTest() { Ports.Put(1, Line); }

  void Script(const std::string& entries) {
    Line.Faults().Clear();
    const auto problem = Line.Faults().Load(entries);
    ASSERT_FALSE(problem) << *problem;
  }

  SimulatedLine Line{Exact()};
};

struct Expectation {
  const char* Kind;
  /// How `ge 10` ends, and whether its reading counts.
  ExchangeEnd End;
  bool Complete;
};

// What a reading must never be: complete and another one than the instrument's.
TEST_F(FaultTest, OfAReading) {
  const Expectation expectations[] = {
      {"no-reply", ExchangeEnd::TimedOut, false},    {"late-reply", ExchangeEnd::TimedOut, false},
      {"cut", ExchangeEnd::TimedOut, false},         {"split", ExchangeEnd::Passed, true},
      {"slow", ExchangeEnd::Passed, true},           {"noise-before", ExchangeEnd::WrongEcho, false},
      {"noise-inside", ExchangeEnd::Passed, false},  {"twice", ExchangeEnd::Passed, true},
      {"previous", ExchangeEnd::WrongEcho, false},   {"hang-up", ExchangeEnd::HungUp, false},
      {"no-prompt", ExchangeEnd::TimedOut, false},   {"prompt-inside", ExchangeEnd::Passed, false},
      {"wrong-echo", ExchangeEnd::WrongEcho, false}, {"fewer-lines", ExchangeEnd::Passed, false},
      {"more-lines", ExchangeEnd::Passed, true},     {"bad-number", ExchangeEnd::Passed, false},
      {"restart", ExchangeEnd::WrongEcho, false},    {"flood", ExchangeEnd::TimedOut, false},
  };
  EXPECT_EQ(std::size(expectations), FaultKinds().size());
  for (const Expectation& expected : expectations) {
    OpenLine();
    std::int32_t n = 10;
    double w = 0.0;
    std::int32_t full = 0;
    std::int32_t gain = 0;
    ASSERT_TRUE(Link.Instrument.Rezero(full, gain));
    const std::int32_t truth = Link.Instrument.GetEnergy(n);
    ASSERT_TRUE(Link.Instrument.LastReply().Complete());
    ASSERT_GT(truth, 40000);
    ASSERT_TRUE(Link.Instrument.GetWavelength(w));
    Script(std::string("ge 1 ") + expected.Kind);
    const std::int64_t before = Time.NowMs();
    const std::int32_t energy = Link.Instrument.GetEnergy(n);
    const ReplyQuality quality = Link.Instrument.LastReply();
    EXPECT_LE(Time.NowMs() - before, 15000) << expected.Kind;
    EXPECT_EQ(quality.End, expected.End) << expected.Kind;
    EXPECT_EQ(quality.Complete(), expected.Complete) << expected.Kind;
    if (quality.Complete()) {
      EXPECT_EQ(energy, truth) << expected.Kind;
    }
    if (expected.End == ExchangeEnd::HungUp) continue;
    Time.Advance(1000);  // what is still on its way arrives
    EXPECT_TRUE(Link.Instrument.GetWavelength(w)) << "the next clean exchange after " << expected.Kind;
    Link.Instrument.GetEnergy(n);
    EXPECT_TRUE(Link.Instrument.LastReply().Complete()) << expected.Kind;
  }
}

TEST_F(FaultTest, OfEachQueryOfTheConnection) {
  for (const FaultKindEntry& kind : FaultKinds()) {
    for (const char* verb :
         {"check", "company", "connect", "getwl", "getdark", "rezero", "getsampler", "startwl", "endwl"}) {
      const std::string name = std::string(verb) + " " + std::string(kind.Name);
      Script(std::string(verb) + " 1 " + std::string(kind.Name));
      Boxes.Ids.clear();
      const bool connected = Link.Connect.mmuOperationConnect();
      EXPECT_EQ(connected, Boxes.Ids.empty()) << name;
      if (!connected) {
        // A second answer to "check" spoils the next query.
        const bool spoilt = kind.Kind == FaultKind::Twice;
        EXPECT_EQ(Boxes.Ids, (std::vector<int>{std::string(verb) == "check" && !spoilt ? 1097 : 1099}))
            << name;
      }
      EXPECT_EQ(Link.State.InstrumentConnected, connected) << name;
      EXPECT_EQ(Link.State.PortOpen, connected) << name;
      EXPECT_FALSE(Link.State.InstrumentBusy) << name;
      EXPECT_FALSE(Display.Locked) << name;
      EXPECT_GE(Link.State.WavelengthMin, 190.0) << name;
      EXPECT_LE(Link.State.WavelengthMax, 1100.0) << name;
      Link.Connect.ReleaseCommand();
      Line.Faults().Clear();
      Line.ForgetInput();
      Time.Advance(30000);
      EXPECT_TRUE(Link.Connect.mmuOperationConnect()) << "the next attempt after: " << name;
      EXPECT_TRUE(Display.TimerOn) << name;
      Link.Connect.ReleaseCommand();
    }
  }
}

TEST_F(FaultTest, RandomFaultsNeverChangeAReading) {
  for (const std::uint64_t seed : {1u, 2u, 3u, 4u, 5u}) {
    Line.Faults().Clear();
    ASSERT_TRUE(Link.Connect.mmuOperationConnect());
    std::int32_t n = 10;
    const std::int32_t truth = Link.Instrument.GetEnergy(n);
    ASSERT_TRUE(Link.Instrument.LastReply().Complete());
    Line.Faults().DrawAtRandom(seed, 0.3);
    for (int i = 0; i < 300; ++i) {
      const std::int32_t energy = Link.Instrument.GetEnergy(n);
      const bool restarted = Line.Model().Gain() == 1;
      if (Link.Instrument.LastReply().Complete() && !restarted) {
        EXPECT_EQ(energy, truth) << "seed " << seed << ", reading " << i;
      }
      if (Link.Transport.LastEnd() == ExchangeEnd::PortClosed || restarted) {
        Line.Faults().DrawAtRandom(seed, 0.0);
        Time.Advance(30000);
        Link.Connect.ReleaseCommand();
        ASSERT_TRUE(Link.Connect.mmuOperationConnect()) << "seed " << seed << ", reading " << i;
        Line.Faults().DrawAtRandom(seed + static_cast<std::uint64_t>(i) * 100, 0.3);
      }
    }
    Line.Faults().Clear();
    Time.Advance(30000);
    Link.Connect.ReleaseCommand();
  }
}

}  // namespace
}  // namespace spectrane::testing_link
