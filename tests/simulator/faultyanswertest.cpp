#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/faultyanswer.h"
#include "simulator/simulatedline.h"

namespace spectrane {
namespace {

const InstrumentAnswer Two{"ge 2", {"111", "222"}, 0};
const std::string Clean = "ge 2\r\n111\r\n222\r\n>";  // 17 bytes

struct Result {
  Deliveries Pieces;
  std::string Bytes;
  std::string Description;
};

Result Spoil(FaultKind kind, std::vector<int> numbers = {}, std::optional<std::string> text = {},
             const InstrumentAnswer& answer = Two) {
  const FaultSurroundings around{"getwl\r\n546.0\r\n>", "\r\nSimulated instrument\r\nready.\r\n>", 15'000,
                                 2000};
  SeededNoise random(5);
  Result result;
  result.Pieces =
      FaultyDelivery(answer, {kind, std::move(numbers), std::move(text)}, around, random, result.Description);
  result.Bytes = BytesOf(result.Pieces);
  return result;
}

TEST(FaultyAnswer, NoReply) {
  EXPECT_TRUE(Spoil(FaultKind::NoReply).Pieces.empty());
}

TEST(FaultyAnswer, LateReplyComesAfterTheProgramsTimeout) {
  const Result late = Spoil(FaultKind::LateReply);
  EXPECT_EQ(late.Bytes, Clean);
  EXPECT_EQ(late.Pieces.front().DelayMs, 15'500);
  EXPECT_EQ(Spoil(FaultKind::LateReply, {700}).Pieces.front().DelayMs, 700);
}

TEST(FaultyAnswer, CutAtEachByte) {
  for (int k = 0; k <= 17; ++k) {
    const Result cut = Spoil(FaultKind::Cut, {k});
    EXPECT_EQ(cut.Bytes, Clean.substr(0, static_cast<std::size_t>(k))) << k;
    EXPECT_EQ(cut.Description, "cut " + std::to_string(k));
  }
  EXPECT_EQ(Spoil(FaultKind::Cut, {99}).Bytes, Clean);
  EXPECT_EQ(Spoil(FaultKind::Cut).Bytes, Clean.substr(0, 8)) << "half of it without a parameter";
}

TEST(FaultyAnswer, SplitAtEachByte) {
  for (int k = 1; k < 17; ++k) {
    const Result split = Spoil(FaultKind::Split, {k, 300});
    ASSERT_EQ(split.Pieces.size(), 2U) << k;
    EXPECT_EQ(split.Pieces[0].Bytes, Clean.substr(0, static_cast<std::size_t>(k)));
    EXPECT_EQ(split.Pieces[0].DelayMs, 0);
    EXPECT_EQ(split.Pieces[1].DelayMs, 300);
    EXPECT_EQ(split.Bytes, Clean);
  }
}

TEST(FaultyAnswer, SplitKeepsTheInstrumentsOwnPause) {
  const InstrumentAnswer slow{"getwl", {"546.0"}, 40};
  const Result split = Spoil(FaultKind::Split, {3, 100}, {}, slow);
  ASSERT_EQ(split.Pieces.size(), 3U);
  EXPECT_EQ(split.Pieces[1].DelayMs, 100);
  EXPECT_EQ(split.Pieces[2].DelayMs, 40);
  EXPECT_EQ(split.Bytes, "getwl\r\n546.0\r\n>");
  const Result atTheSeam = Spoil(FaultKind::Split, {7, 100}, {}, slow);
  ASSERT_EQ(atTheSeam.Pieces.size(), 2U);
  EXPECT_EQ(atTheSeam.Pieces[1].DelayMs, 140);
}

TEST(FaultyAnswer, SlowBytesComeOneByOne) {
  const Result slow = Spoil(FaultKind::Slow, {30});
  ASSERT_EQ(slow.Pieces.size(), 17U);
  for (const Delivery& piece : slow.Pieces) {
    EXPECT_EQ(piece.Bytes.size(), 1U);
    EXPECT_EQ(piece.DelayMs, 30);
  }
  EXPECT_EQ(slow.Bytes, Clean);
}

bool OnlyNoise(const std::string& bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char c) { return c == 0 || static_cast<unsigned char>(c) >= 0x80; });
}

TEST(FaultyAnswer, NoiseBefore) {
  const Result noise = Spoil(FaultKind::NoiseBefore, {6});
  EXPECT_TRUE(OnlyNoise(noise.Bytes.substr(0, 6)));
  EXPECT_EQ(noise.Bytes.substr(6), Clean);
}

TEST(FaultyAnswer, NoiseInside) {
  const Result noise = Spoil(FaultKind::NoiseInside, {7, 3});
  EXPECT_EQ(noise.Bytes.substr(0, 7), Clean.substr(0, 7));
  EXPECT_TRUE(OnlyNoise(noise.Bytes.substr(7, 3)));
  EXPECT_EQ(noise.Bytes.substr(10), Clean.substr(7));
}

TEST(FaultyAnswer, Twice) {
  const Result twice = Spoil(FaultKind::Twice);
  ASSERT_EQ(twice.Pieces.size(), 2U);
  EXPECT_EQ(twice.Pieces[0].Bytes, Clean);
  EXPECT_EQ(twice.Pieces[1].Bytes, Clean);
  EXPECT_EQ(twice.Pieces[1].DelayMs, 5);
}

TEST(FaultyAnswer, PreviousReplyAgain) {
  EXPECT_EQ(Spoil(FaultKind::Previous).Bytes, "getwl\r\n546.0\r\n>");
}

TEST(FaultyAnswer, HangUpAtEachByte) {
  for (int k = 0; k <= 17; ++k) {
    const Result gone = Spoil(FaultKind::HangUp, {k});
    EXPECT_EQ(gone.Bytes, Clean.substr(0, static_cast<std::size_t>(k)));
    ASSERT_FALSE(gone.Pieces.empty());
    EXPECT_TRUE(gone.Pieces.back().HangUp);
  }
}

TEST(FaultyAnswer, NoPrompt) {
  EXPECT_EQ(Spoil(FaultKind::NoPrompt).Bytes, "ge 2\r\n111\r\n222\r\n");
}

TEST(FaultyAnswer, PromptInsideEndsAPiece) {
  const Result inside = Spoil(FaultKind::PromptInside);
  EXPECT_EQ(inside.Bytes, "ge 2\r\n1>11\r\n222\r\n>");
  ASSERT_EQ(inside.Pieces.size(), 3U);
  EXPECT_EQ(inside.Pieces[1].Bytes, ">");
  EXPECT_EQ(inside.Pieces[2].DelayMs, 30);
  EXPECT_EQ(Spoil(FaultKind::PromptInside, {2}).Bytes, "ge> 2\r\n111\r\n222\r\n>");
}

TEST(FaultyAnswer, WrongEcho) {
  EXPECT_EQ(Spoil(FaultKind::WrongEcho).Bytes, "?e 2\r\n111\r\n222\r\n>");
  EXPECT_EQ(Spoil(FaultKind::WrongEcho, {}, "GE 2").Bytes, "GE 2\r\n111\r\n222\r\n>");
  EXPECT_EQ(Spoil(FaultKind::WrongEcho, {}, "").Bytes, "\r\n111\r\n222\r\n>");
}

TEST(FaultyAnswer, FewerLines) {
  EXPECT_EQ(Spoil(FaultKind::FewerLines).Bytes, "ge 2\r\n111\r\n>");
  EXPECT_EQ(Spoil(FaultKind::FewerLines, {9}).Bytes, "ge 2\r\n>");
}

TEST(FaultyAnswer, MoreLines) {
  EXPECT_EQ(Spoil(FaultKind::MoreLines, {2}).Bytes, "ge 2\r\n111\r\n222\r\n222\r\n222\r\n>");
  EXPECT_EQ(Spoil(FaultKind::MoreLines, {}, {}, {"sa 3", {}, 0}).Bytes, "sa 3\r\n0\r\n>");
}

TEST(FaultyAnswer, BadNumber) {
  EXPECT_EQ(Spoil(FaultKind::BadNumber).Bytes, "ge 2\r\nabc\r\n222\r\n>");
  EXPECT_EQ(Spoil(FaultKind::BadNumber, {2}, "1e999").Bytes, "ge 2\r\n111\r\n1e999\r\n>");
  EXPECT_EQ(Spoil(FaultKind::BadNumber, {1}, "").Bytes, "ge 2\r\n\r\n222\r\n>");
  EXPECT_EQ(Spoil(FaultKind::BadNumber, {}, {}, {"sa 3", {}, 0}).Bytes, "sa 3\r\n>");
}

TEST(FaultyAnswer, RestartSaysTheBannerInsteadOfTheAnswer) {
  const Result restart = Spoil(FaultKind::Restart);
  EXPECT_EQ(restart.Bytes, "\r\nSimulated instrument\r\nready.\r\n>");
  EXPECT_EQ(restart.Pieces.front().DelayMs, 2000);
  EXPECT_EQ(Spoil(FaultKind::Restart, {10, 6}).Bytes, "ge 2\r\n\r\nSimulated instrument\r\nready.\r\n>");
}

TEST(FaultyAnswer, FloodHasNoPromptAndThePaceOfTheWire) {
  const Result flood = Spoil(FaultKind::Flood, {11'520});
  EXPECT_EQ(flood.Bytes.size(), 11'520U);
  EXPECT_EQ(flood.Bytes.find('>'), std::string::npos);
  EXPECT_EQ(DurationOf(flood.Pieces), 1000);
}

TEST(FaultyAnswer, EachKindHasARowInTheTable) {
  ASSERT_EQ(FaultKinds().size(), 18U);
  for (std::size_t i = 0; i < 18; ++i) {
    EXPECT_EQ(FaultKinds()[i].Kind, static_cast<FaultKind>(i));
    const Result result = Spoil(FaultKinds()[i].Kind);
    EXPECT_EQ(result.Description.substr(0, FaultKinds()[i].Name.size()), FaultKinds()[i].Name);
    if (FaultKinds()[i].Kind != FaultKind::LateReply && FaultKinds()[i].Kind != FaultKind::Slow) {
      const bool sameBytesAtOnce = result.Bytes == Clean && result.Pieces.size() == 1;
      EXPECT_FALSE(sameBytesAtOnce) << FaultKinds()[i].Name << " leaves the answer as it was";
    }
  }
}

TEST(FaultyLine, RestartForgetsTheState) {
  InstrumentOptions options;
  options.Instant = true;
  SimulatedLine line(options);
  ASSERT_FALSE(line.Faults().Load("rezero 2 restart"));
  line.Receive("swl  300\rrezero\r", 0);
  EXPECT_GT(line.Model().Gain(), 1);
  EXPECT_EQ(BytesOf(line.Receive("rezero\r", 0)), "\r\nSimulated instrument\r\nready.\r\n>");
  EXPECT_EQ(line.Model().Gain(), 1);
  EXPECT_EQ(line.Model().Wavelength(), 546.0);
}

TEST(FaultyLine, PreviousReplyIsTheOneBefore) {
  InstrumentOptions options;
  options.Instant = true;
  SimulatedLine line(options);
  ASSERT_FALSE(line.Faults().Load("getwl 1 previous\ngetd2 1 previous"));
  EXPECT_EQ(BytesOf(line.Receive("getwl\r", 0)), "") << "nothing was said before";
  line.Receive("getwu\r", 0);
  EXPECT_EQ(BytesOf(line.Receive("getd2\r", 0)), "getwu\r\n1\r\n>");
  EXPECT_EQ(BytesOf(line.Receive("getd2\r", 0)), "getd2\r\n1\r\n>");
}

TEST(FaultyLine, HangUpClosesThePortInMemoryAndTheNextConnectionWorks) {
  ManualClock clock;
  InstrumentOptions options;
  options.Instant = true;
  SimulatedLine line(options);
  ASSERT_FALSE(line.Faults().Load("getwl 1 hang-up 4"));
  MemoryPort port(clock, line);
  port.Open("x");
  port.Write("getwl\rgetd2\r", 100);
  EXPECT_EQ(port.Read(1000), "getw");
  EXPECT_EQ(port.Read(1000), "");
  EXPECT_FALSE(port.IsOpen());
  port.Open("x");
  port.Write("getwl\r", 100);
  EXPECT_EQ(port.Read(1000), "getwl\r\n546.0\r\n>");
}

TEST(FaultyLine, ReportsTheFaultWithTheAnswerAsSent) {
  InstrumentOptions options;
  options.Instant = true;
  SimulatedLine line(options);
  ASSERT_FALSE(line.Faults().Load("getwl 1 cut 6"));
  ExchangeRecord seen;
  line.OnExchange = [&](const ExchangeRecord& record) { seen = record; };
  line.Receive("getwl\r", 0);
  EXPECT_EQ(seen.Fault, "cut 6");
  EXPECT_EQ(seen.Answer, "getwl\r");
}

TEST(FaultyLine, LateReplyKeepsTheInstrumentBusy) {
  SimulatedLine line;
  ASSERT_FALSE(line.Faults().Load("getwl 1 late-reply"));
  line.Receive("getwl\r", 0);
  EXPECT_EQ(line.BusyUntilMs(), 3503) << "time-out 3 s, half a second, 3 ms of work";
}

}  // namespace
}  // namespace spectrane
