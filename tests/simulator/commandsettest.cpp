#include <gtest/gtest.h>

#include "base/clock.h"
#include "link/memoryport.h"
#include "simulator/commandset.h"
#include "simulator/exactinstrument.h"
#include "simulator/simulatedline.h"

namespace spectrane {
namespace {

std::string Ask(SimulatedLine& line, const std::string& command) {
  return BytesOf(line.Receive(command + "\r", 0));
}

struct ShapeCase {
  const char* Name;
  const char* Command;
  const char* Reply;
};

class ReplyShape : public testing::TestWithParam<ShapeCase> {};

TEST_P(ReplyShape, IsExact) {
  SimulatedLine line(Exact());
  EXPECT_EQ(Ask(line, GetParam().Command), GetParam().Reply);
}

INSTANTIATE_TEST_SUITE_P(
    Verbs, ReplyShape,
    testing::Values(ShapeCase{"check", "check", "check\r\nInvalid Command.\r\n>"},
                    ShapeCase{"company", "company", "company\r\nSimulated instrument\r\n>"},
                    ShapeCase{"connect", "connect", "connect\r\nok.\r\n>"},
                    ShapeCase{"quit", "quit", "quit\r\n>"},
                    ShapeCase{"getdark", "getdark",
                              "getdark\r\n52\r\n55\r\n60\r\n68\r\n80\r\n98\r\n124\r\n162\r\n>"},
                    ShapeCase{"resetdark", "resetdark",
                              "resetdark\r\n52\r\n55\r\n60\r\n68\r\n80\r\n98\r\n124\r\n162\r\n>"},
                    ShapeCase{"swl", "swl 500.5", "swl 500.5\r\n>"},
                    ShapeCase{"swlTwoBlanks", "swl  546.5", "swl  546.5\r\n>"},
                    ShapeCase{"adjustwl", "adjustwl", "adjustwl\r\n>"},
                    ShapeCase{"getwl", "getwl", "getwl\r\n546.0\r\n>"}, ShapeCase{"sa", "sa 3", "sa 3\r\n>"},
                    ShapeCase{"setlampwl", "setlampwl 350.0", "setlampwl 350.0\r\n>"},
                    ShapeCase{"getlampwl", "getlampwl", "getlampwl\r\n340.0\r\n>"},
                    ShapeCase{"wuon", "wuon", "wuon\r\n>"}, ShapeCase{"wuoff", "wuoff", "wuoff\r\n>"},
                    ShapeCase{"getwu", "getwu", "getwu\r\n1\r\n>"}, ShapeCase{"d2on", "d2on", "d2on\r\n>"},
                    ShapeCase{"d2off", "d2off", "d2off\r\n>"}, ShapeCase{"getd2", "getd2", "getd2\r\n1\r\n>"},
                    ShapeCase{"getslip", "getslip", "getslip\r\n2\r\n>"},
                    ShapeCase{"setslip", "setslip 5", "setslip 5\r\n>"},
                    ShapeCase{"getsampler", "getsampler", "getsampler\r\n0\r\n>"},
                    ShapeCase{"startwl", "startwl", "startwl\r\n190.0\r\n>"},
                    ShapeCase{"endwl", "endwl", "endwl\r\n1100.0\r\n>"}, ShapeCase{"onlyCr", "", "\r\n>"},
                    ShapeCase{"upperCase", "GETWL", "GETWL\r\nInvalid Command.\r\n>"},
                    ShapeCase{"unknownWord", "gettype", "gettype\r\nInvalid Command.\r\n>"},
                    ShapeCase{"argumentMissing", "ge", "ge\r\nInvalid Command.\r\n>"},
                    ShapeCase{"argumentNoNumber", "swl abc", "swl abc\r\nInvalid Command.\r\n>"},
                    ShapeCase{"argumentNotWanted", "getwl 5", "getwl 5\r\nInvalid Command.\r\n>"},
                    ShapeCase{"countZero", "ge 0", "ge 0\r\nInvalid Command.\r\n>"},
                    ShapeCase{"countNotWhole", "ge 2.5", "ge 2.5\r\nInvalid Command.\r\n>"},
                    ShapeCase{"countTooLarge", "ge 201", "ge 201\r\nInvalid Command.\r\n>"},
                    ShapeCase{"gainTooHigh", "sa 9", "sa 9\r\nInvalid Command.\r\n>"},
                    ShapeCase{"slitTooHigh", "setslip 6", "setslip 6\r\nInvalid Command.\r\n>"},
                    ShapeCase{"samplerAbsent", "setsampler 2", "setsampler 2\r\nInvalid Command.\r\n>"}),
    [](const auto& shape) { return shape.param.Name; });

TEST(CommandSet, GetEnergyGivesOneLineForEachSample) {
  SimulatedLine line(Exact());
  const std::string energy = std::to_string(line.Model().Energy(0));
  EXPECT_EQ(Ask(line, "ge 3"), "ge 3\r\n" + energy + "\r\n" + energy + "\r\n" + energy + "\r\n>");
}

TEST(CommandSet, RezeroGivesFullEnergyAndGain) {
  SimulatedLine line(Exact());
  const std::string reply = Ask(line, "rezero");
  EXPECT_EQ(reply, "rezero\r\n" + std::to_string(line.Model().Energy(0)) + "\r\n" +
                       std::to_string(line.Model().Gain()) + "\r\n>");
}

TEST(CommandSet, ElevenGainsGiveElevenDarkLines) {
  InstrumentOptions options = Exact();
  options.Gains = 11;
  SimulatedLine line(options);
  EXPECT_EQ(Ask(line, "getdark"),
            "getdark\r\n52\r\n55\r\n60\r\n68\r\n80\r\n98\r\n124\r\n162\r\n218\r\n300\r\n420\r\n>");
  EXPECT_EQ(Ask(line, "sa 11"), "sa 11\r\n>");
}

TEST(CommandSet, WavelengthIsClampedAndRoundedToTheDrive) {
  SimulatedLine line(Exact());
  const std::pair<const char*, double> cases[] = {{"swl 0", 190.0},      {"swl 5000", 1100.0},
                                                  {"swl  260", 260.0},   {"swl 260.04", 260.0},
                                                  {"swl 260.06", 260.1}, {"swl -5", 190.0}};
  for (const auto& [command, nm] : cases) {
    Ask(line, command);
    EXPECT_DOUBLE_EQ(line.Model().Wavelength(), nm) << command;
  }
}

TEST(CommandSet, LampsAnswerWhetherTheyAreLit) {
  SimulatedLine line(Exact());
  Ask(line, "wuoff");
  Ask(line, "d2off");
  EXPECT_EQ(Ask(line, "getwu"), "getwu\r\n0\r\n>");
  EXPECT_EQ(Ask(line, "getd2"), "getd2\r\n0\r\n>");
  Ask(line, "wuon");
  EXPECT_EQ(Ask(line, "getwu"), "getwu\r\n1\r\n>");
  EXPECT_EQ(Ask(line, "getd2"), "getd2\r\n0\r\n>");
}

TEST(CommandSet, BusyInstrumentRefusesConnect) {
  SimulatedLine line(Exact());
  line.Model().Busy = true;
  EXPECT_EQ(Ask(line, "connect"), "connect\r\nbusy.\r\n>");
}

TEST(CommandSet, EveryCommandEndsWithinTheProgramsTimeout) {
  InstrumentOptions options;
  options.Gains = 11;
  options.Sampler = true;
  InstrumentModel model(options);
  for (const CommandEntry& entry : Commands()) {
    std::string text(entry.Verb);
    if (text == "ge") text += " 200";
    if (text == "sa" || text == "setsampler") text += " 8";
    if (text == "setslip") text += " 5";
    if (text == "swl" || text == "setlampwl") text += " 190";
    const CommandResult result = RunCommand(model, text, 0, 1.0);
    EXPECT_TRUE(result.Lines.empty() || result.Lines[0] != InvalidCommand) << text;
    EXPECT_GT(result.DurationMs, 0) << text;
    EXPECT_LT(result.DurationMs, entry.TimeoutMs) << text;
    if (text == "d2off" || text == "wuoff") RunCommand(model, text.substr(0, 2) + "on", 0, 1.0);
  }
  RunCommand(model, "d2off", 0, 1.0);
  EXPECT_EQ(RunCommand(model, "d2on", 0, 1.0).DurationMs, 18'120);
  RunCommand(model, "swl 1100", 0, 1.0);
  EXPECT_EQ(RunCommand(model, "swl 190", 0, 1.0).DurationMs, 150 + 9100 + 0);
}

TEST(SimulatedLine, SpeaksOverAPortInMemory) {
  ManualClock clock;
  SimulatedLine line({.Instant = true, .Noise = 0.0});
  MemoryPort port(clock, line);
  ASSERT_TRUE(port.Open("anything"));
  ASSERT_TRUE(port.Write("getwl\r", 100));
  EXPECT_EQ(port.Read(100), "getwl\r\n546.0\r\n>");
}

TEST(SimulatedLine, EchoComesAtOnceAndTheDataWhenTheWorkIsDone) {
  SimulatedLine line;
  const Deliveries pieces = line.Receive("connect\r", 1000);
  ASSERT_EQ(pieces.size(), 2U);
  EXPECT_EQ(pieces[0].DelayMs, 0);
  EXPECT_EQ(pieces[0].Bytes, "connect\r\n");
  EXPECT_EQ(pieces[1].DelayMs, 250);
  EXPECT_EQ(pieces[1].Bytes, "ok.\r\n>");
  EXPECT_EQ(line.BusyUntilMs(), 1250);
}

TEST(SimulatedLine, SpeedDividesTheTimes) {
  InstrumentOptions options;
  options.Speed = 10.0;
  SimulatedLine line(options);
  EXPECT_EQ(DurationOf(line.Receive("adjustwl\r", 0)), 9000);
}

TEST(SimulatedLine, CommandsWaitForTheRunningOne) {
  SimulatedLine line;
  line.Receive("adjustwl\r", 0);
  const Deliveries pieces = line.Receive("connect\r", 1000);
  EXPECT_EQ(pieces.front().DelayMs, 89'000);
  EXPECT_EQ(DurationOf(pieces), 89'250);
}

TEST(SimulatedLine, TwoCommandsInOnePieceAreAnsweredInOrder) {
  SimulatedLine line(Exact());
  EXPECT_EQ(BytesOf(line.Receive("getwl\rgetlampwl\r", 0)), "getwl\r\n546.0\r\n>getlampwl\r\n340.0\r\n>");
}

TEST(SimulatedLine, CommandMayComeInPiecesAndWithLineFeed) {
  SimulatedLine line(Exact());
  EXPECT_TRUE(line.Receive("get", 0).empty());
  EXPECT_EQ(BytesOf(line.Receive("wl\r\n", 5)), "getwl\r\n546.0\r\n>");
  EXPECT_EQ(Ask(line, "getd2"), "getd2\r\n1\r\n>");
}

TEST(SimulatedLine, CommandOf256IsTakenAndOneOf257Dropped) {
  SimulatedLine line(Exact());
  const std::string longest(256, 'x');
  EXPECT_EQ(Ask(line, longest), longest + "\r\nInvalid Command.\r\n>");
  EXPECT_EQ(Ask(line, longest + "x"), "");
  EXPECT_EQ(Ask(line, "getd2"), "getd2\r\n1\r\n>");
}

TEST(SimulatedLine, EachRequestIsReported) {
  SimulatedLine line(Exact());
  std::vector<ExchangeRecord> seen;
  line.OnExchange = [&](const ExchangeRecord& record) { seen.push_back(record); };
  line.Receive("getwl\rfoo\r", 77);
  ASSERT_EQ(seen.size(), 2U);
  EXPECT_EQ(seen[1].Number, 2);
  EXPECT_EQ(seen[1].AtMs, 77);
  EXPECT_EQ(seen[1].Request, "foo");
  EXPECT_EQ(seen[1].Answer, "foo\r\nInvalid Command.\r\n>");
  EXPECT_EQ(seen[1].Fault, "");
}

}  // namespace
}  // namespace spectrane
