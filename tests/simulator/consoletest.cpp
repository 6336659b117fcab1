#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/console.h"
#include "simulator/exactinstrument.h"

namespace spectrane {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

class ConsoleTest : public testing::Test {
 protected:
  std::string Run(const std::string& text) { return console_.Execute(text).Text(); }

  ManualClock clock_;
  SimulatedLine line_{Exact()};
  bool plugged_ = true;
  Deliveries played_;
  std::vector<std::string> remarks_;
  Console console_{line_,
                   clock_,
                   {[this] { plugged_ = false; },
                    [this]() -> std::optional<std::string> {
                      plugged_ = true;
                      return std::nullopt;
                    },
                    [this] { return plugged_; }, [this](const Deliveries& pieces) { played_ = pieces; },
                    [this](const std::string& text) { remarks_.push_back(text); }}};
};

TEST_F(ConsoleTest, BeamPutsASampleIn) {
  EXPECT_EQ(Run("beam dye-3"), "ok\n");
  EXPECT_EQ(line_.Model().InBeam().Name, "dye-3");
  EXPECT_EQ(Run("beam nothing"), "error: unknown sample: nothing\n");
  EXPECT_EQ(line_.Model().InBeam().Name, "dye-3");
}

TEST_F(ConsoleTest, StateTellsTheTrueAbsorbance) {
  Run("beam dye-3");
  const ConsoleAnswer answer = console_.Execute("state");
  EXPECT_THAT(answer.Lines, Contains("wavelength=546.0"));
  EXPECT_THAT(answer.Lines, Contains("absorbance=0.400000"));
  EXPECT_THAT(answer.Lines, Contains("beam=dye-3"));
  EXPECT_THAT(answer.Lines, Contains("sampler=off"));
  EXPECT_THAT(answer.Lines, Contains("plugged=yes"));
  Run("beam closed");
  EXPECT_THAT(console_.Execute("state").Lines, Contains("absorbance=inf"));
}

TEST_F(ConsoleTest, StateTellsOfUpkeep) {
  EXPECT_THAT(console_.Execute("state").Lines, Contains("dark=52 55 60 68 80 98 124 162"));
  EXPECT_THAT(console_.Execute("state").Lines, Contains("dark_measurements=0"));
  EXPECT_THAT(console_.Execute("state").Lines, Contains("calibrations=0"));
  line_.Receive("resetdark\r", 0);
  line_.Receive("adjustwl\r", 0);
  line_.Receive("adjustwl\r", 0);
  EXPECT_THAT(console_.Execute("state").Lines, Contains("dark_measurements=1"));
  EXPECT_THAT(console_.Execute("state").Lines, Contains("calibrations=2"));
}

TEST_F(ConsoleTest, CellsAndSampler) {
  EXPECT_EQ(Run("cell 4 holmium"), "ok\n");
  EXPECT_EQ(line_.Model().CellName(4), "holmium");
  EXPECT_EQ(Run("sampler on"), "ok\n");
  EXPECT_EQ(BytesOf(line_.Receive("getsampler\r", 0)), "getsampler\r\n1\r\n>");
  line_.Receive("setsampler 4\r", 0);
  EXPECT_EQ(line_.Model().InBeam().Name, "holmium");
  EXPECT_EQ(Run("sampler off"), "ok\n");
  EXPECT_EQ(line_.Model().InBeam().Name, "blank");
  EXPECT_EQ(Run("sampler maybe"), "error: expected on or off: maybe\n");
  for (const char* wrong :
       {"cell 0 blank", "cell 9 blank", "cell 1.5 blank", "cell x blank", "cell 1 nothing"}) {
    EXPECT_THAT(Run(wrong), StartsWith("error: ")) << wrong;
  }
}

TEST_F(ConsoleTest, FaultByHandSpoilsTheNextMatchingAnswer) {
  EXPECT_EQ(Run("fault no-reply"), "ok\n");
  EXPECT_EQ(BytesOf(line_.Receive("getwl\r", 0)), "");
  EXPECT_EQ(BytesOf(line_.Receive("getwl\r", 0)), "getwl\r\n546.0\r\n>");
  EXPECT_EQ(Run("fault cut getd2 2 3"), "ok\n");
  EXPECT_EQ(BytesOf(line_.Receive("getd2\r", 0)), "getd2\r\n1\r\n>");
  EXPECT_EQ(BytesOf(line_.Receive("getd2\r", 0)), "get");
  EXPECT_THAT(Run("fault explode"), HasSubstr("unknown fault"));
  Run("fault cut getwl");
  EXPECT_EQ(Run("faults clear"), "ok\n");
  EXPECT_EQ(BytesOf(line_.Receive("getwl\r", 0)), "getwl\r\n546.0\r\n>");
  EXPECT_EQ(console_.Execute("faults").Lines.size(), 18U);
}

TEST_F(ConsoleTest, NoiseStrayLampJamBusy) {
  EXPECT_EQ(Run("noise 2.5"), "ok\n");
  EXPECT_EQ(line_.Model().Noise, 2.5);
  Run("noise off");
  EXPECT_EQ(line_.Model().Noise, 0.0);
  Run("noise on");
  EXPECT_EQ(line_.Model().Noise, 1.0);
  EXPECT_THAT(Run("noise -1"), StartsWith("error: "));
  EXPECT_EQ(Run("stray 0.001"), "ok\n");
  EXPECT_EQ(line_.Model().StrayBase, 0.001);
  Run("lamp tungsten dead");
  EXPECT_TRUE(line_.Model().Tungsten.Dead);
  EXPECT_FALSE(line_.Model().Deuterium.Dead);
  Run("lamp tungsten good");
  EXPECT_FALSE(line_.Model().Tungsten.Dead);
  EXPECT_THAT(Run("lamp candle dead"), StartsWith("error: "));
  Run("jam on");
  EXPECT_TRUE(line_.Model().Jammed);
  Run("busy on");
  EXPECT_TRUE(line_.Model().Busy);
}

TEST_F(ConsoleTest, CableAndPower) {
  Run("unplug");
  EXPECT_FALSE(plugged_);
  EXPECT_THAT(console_.Execute("state").Lines, Contains("plugged=no"));
  Run("plug");
  EXPECT_TRUE(plugged_);
  line_.Receive("swl  300\r", 0);
  Run("restart");
  EXPECT_EQ(BytesOf(played_), "\r\nSimulated instrument\r\nready.\r\n>");
  EXPECT_EQ(line_.Model().Wavelength(), 546.0);
}

TEST_F(ConsoleTest, WithoutACableSaysSo) {
  Console bare(line_, clock_);
  EXPECT_THAT(bare.Execute("unplug").Error, HasSubstr("no cable"));
  EXPECT_THAT(bare.Execute("plug").Error, HasSubstr("no cable"));
  EXPECT_EQ(bare.Execute("restart").Error, "");
}

TEST_F(ConsoleTest, ListsAndRefusals) {
  EXPECT_EQ(console_.Execute("samples").Lines.size(), AllSamples().size());
  EXPECT_THAT(Run("help"), HasSubstr("beam SAMPLE"));
  EXPECT_EQ(Run(""), "ok\n");
  EXPECT_EQ(Run("beam"), "error: usage: beam SAMPLE\n");
  EXPECT_THAT(Run("dance"), HasSubstr("unknown command: dance"));
  EXPECT_TRUE(console_.Execute("quit").Quit);
  EXPECT_FALSE(console_.Execute("state").Quit);
}

TEST_F(ConsoleTest, ChangesAreRemarkedAndQuestionsAreNot) {
  Run("state");
  Run("beam  dye-1\n");
  Run("beam nothing");
  EXPECT_THAT(remarks_, testing::ElementsAre("beam dye-1"));
}

}  // namespace
}  // namespace spectrane
