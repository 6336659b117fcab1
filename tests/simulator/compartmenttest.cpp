#include "simulator/compartment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "simulator/facewords.h"
#include "simulator/samplecolour.h"

namespace spectrane {
namespace {

using testing::HasSubstr;

/// An instrument with its window's view of it, and requests without a wire.
class CompartmentTest : public testing::Test {
 protected:
  explicit CompartmentTest(const InstrumentOptions& options = {.Noise = 0.0})
      : line_(options), console_(line_, clock_), view_(line_, clock_, console_, [this] { return Plugged; }) {
    line_.OnExchange = [this](const ExchangeRecord& record) { view_.NoteRequest(record); };
    view_.OnChange = [this] { ++Changes; };
    view_.NoteJoined("/tmp/line");
  }
  /// A request, and all the time that its answer takes.
  void Ask(const std::string& request) {
    line_.Receive(request + "\r", clock_.NowMs());
    clock_.Set(std::max(clock_.NowMs(), line_.BusyUntilMs()));
  }
  CompartmentState See() const { return view_.State(); }

  ManualClock clock_{1000};
  SimulatedLine line_;
  Console console_;
  Compartment view_;
  bool Plugged = true;
  int Changes = 0;
};

TEST_F(CompartmentTest, ShowsWhatTheOperatorPutsIntoTheBeam) {
  EXPECT_EQ(See().Beam->Name, "blank");
  EXPECT_EQ(AbsorbanceWords(See()), "0.000 Abs");
  EXPECT_EQ(view_.Perform("beam dye-3"), "");
  EXPECT_EQ(See().Beam->Name, "dye-3");
  EXPECT_EQ(AbsorbanceWords(See()), "0.400 Abs");
  EXPECT_EQ(view_.Perform("beam closed"), "");
  EXPECT_EQ(AbsorbanceWords(See()), "no light");
}

TEST_F(CompartmentTest, ShowsTheSamplerAndItsCells) {
  EXPECT_FALSE(See().SamplerFitted);
  view_.Perform("sampler on");
  view_.Perform("cell 5 holmium");
  Ask("setsampler 5");
  const CompartmentState state = See();
  EXPECT_TRUE(state.SamplerFitted);
  EXPECT_EQ(state.Cell, 5);
  EXPECT_EQ(state.Beam->Name, "holmium");
  EXPECT_EQ(state.Cells[4]->Name, "holmium");
  EXPECT_EQ(state.Cells[7]->Name, "dye-7");
  EXPECT_THAT(BeamPathWords(state), HasSubstr("Holmium solution in cell 5"));
}

TEST_F(CompartmentTest, FollowsRequestsOfTheProgram) {
  Ask("swl 260");
  Ask("sa 4");
  Ask("setslip 5");
  const CompartmentState state = See();
  EXPECT_EQ(WavelengthWords(state), "260.0 nm, deuterium lamp");
  EXPECT_THAT(GainWords(state), HasSubstr("gain 4 of 8"));
  EXPECT_EQ(state.SlitCode, 5);
  EXPECT_EQ(state.Requests, 3);
  EXPECT_EQ(state.LastRequest, "setslip 5");
}

TEST_F(CompartmentTest, TellsLampsThatWarmUpBurnOutAndGoDark) {
  EXPECT_EQ(See().Deuterium, LampShow::Lit);
  Ask("d2off");
  EXPECT_EQ(See().Deuterium, LampShow::Off);
  Ask("d2on");
  EXPECT_EQ(See().Deuterium, LampShow::Warming);
  EXPECT_EQ(See().Tungsten, LampShow::Lit);
  clock_.Advance(600'000);
  EXPECT_EQ(See().Deuterium, LampShow::Lit);
  view_.Perform("lamp tungsten dead");
  EXPECT_EQ(See().Tungsten, LampShow::Dead);
  EXPECT_TRUE(See().TungstenDead);
  Ask("wuoff");
  EXPECT_EQ(See().Tungsten, LampShow::Dead);
  view_.Perform("lamp tungsten good");
  EXPECT_EQ(See().Tungsten, LampShow::Off);
}

TEST_F(CompartmentTest, KnowsOfTheProgramWhatTheLineTells) {
  EXPECT_EQ(See().Program, FarEnd::Nobody);
  Ask("company");
  EXPECT_EQ(See().Program, FarEnd::Asking);
  Ask("connect");
  EXPECT_EQ(See().Program, FarEnd::Connected);
  Ask("getwl");
  EXPECT_EQ(See().Program, FarEnd::Connected);
  Ask("quit");
  EXPECT_EQ(See().Program, FarEnd::Left);
  Ask("connect");
  view_.NoteBroken();
  EXPECT_EQ(See().Program, FarEnd::Nobody);
}

TEST_F(CompartmentTest, ARefusedConnectionIsNone) {
  view_.Perform("busy on");
  Ask("connect");
  EXPECT_EQ(See().Program, FarEnd::Asking);
  EXPECT_TRUE(See().Busy);
}

TEST_F(CompartmentTest, TellsTheLastRequestItsAgeAndItsFault) {
  EXPECT_EQ(RequestWords(See()), "No request yet.");
  Ask("getwl");
  EXPECT_EQ(RequestWords(See()), "Request 1: getwl, just now");
  clock_.Advance(5000);
  EXPECT_EQ(RequestWords(See()), "Request 1: getwl, 5 s ago");
  clock_.Advance(180'000);
  EXPECT_EQ(RequestWords(See()), "Request 1: getwl, 3 min ago");
  view_.Perform("fault no-reply");
  EXPECT_EQ(See().PendingFaults, 1U);
  Ask("getd2");
  EXPECT_EQ(See().PendingFaults, 0U);
  EXPECT_THAT(RequestWords(See()), HasSubstr("spoilt: no-reply"));
}

TEST_F(CompartmentTest, AnUnpluggedCableIsSaidFirst) {
  Ask("connect");
  Plugged = false;
  EXPECT_FALSE(See().Plugged);
  EXPECT_EQ(ProgramWords(See()), "The cable is unplugged.");
  EXPECT_EQ(See().Path, "/tmp/line");
}

TEST_F(CompartmentTest, GivesTheReasonOfACommandThatFailed) {
  EXPECT_EQ(view_.Perform("beam nothing"), "unknown sample: nothing");
  EXPECT_EQ(view_.Perform("plug"), "there is no cable here");
}

TEST_F(CompartmentTest, NoticesEveryChange) {
  const int before = Changes;
  view_.Perform("jam on");
  Ask("getwl");
  view_.NoteBroken();
  EXPECT_EQ(Changes, before + 3);
}

TEST_F(CompartmentTest, AStateIsEqualUntilSomethingHappens) {
  const CompartmentState before = See();
  EXPECT_EQ(See(), before);
  view_.Perform("noise on");
  EXPECT_NE(See(), before);
}

TEST(SampleLabel, EachSampleHasOneOfItsOwnThatFitsAList) {
  std::set<std::string> seen;
  for (const Sample& sample : AllSamples()) {
    EXPECT_FALSE(sample.Label.empty()) << sample.Name;
    EXPECT_LE(sample.Label.size(), 26U) << sample.Label;
    EXPECT_TRUE(seen.insert(sample.Label).second) << sample.Label;
  }
  EXPECT_EQ(FindSample("dye-4")->Label, "Red dye 6 mg/L");
  EXPECT_EQ(FindSample("protein-0.5")->Label, "Protein 0.5 mg/mL");
  EXPECT_EQ(FindSample("mix-1")->Label, "DNA 45 ug/mL + protein 0.1");
}

TEST(FaultWord, EachKindHasOneOfItsOwn) {
  std::set<std::string_view> seen;
  for (const FaultKindEntry& entry : FaultKinds()) {
    EXPECT_FALSE(FaultWords(entry.Kind).empty()) << entry.Name;
    EXPECT_TRUE(seen.insert(FaultWords(entry.Kind)).second) << entry.Name;
  }
}

TEST(SampleColour, FollowsTheSpectrum) {
  const auto of = [](const char* name) { return ColourOf(*FindSample(name)); };
  EXPECT_EQ(of("blank"), (ScreenColour{255, 255, 255}));
  EXPECT_EQ(of("closed"), (ScreenColour{0, 0, 0}));
  const ScreenColour grey = of("filter-1.0");
  EXPECT_EQ(grey.Red, grey.Green);
  EXPECT_EQ(grey.Green, grey.Blue);
  EXPECT_LT(grey.Green, 128);
  // The dye takes the green out, and the more the stronger it is.
  EXPECT_GT(of("dye-4").Red, of("dye-4").Green + 50);
  EXPECT_LT(of("dye-8").Green, of("dye-4").Green);
  EXPECT_LT(of("dye-4").Green, of("dye-1").Green);
  // Dichromate takes the blue out: yellow.
  EXPECT_LT(of("dichromate-100").Blue, of("dichromate-100").Green);
  EXPECT_EQ(of("toluene"), of("blank"));
}

TEST(LightColour, RunsFromVioletToRed) {
  const ScreenColour blue = ColourOfLight(450);
  const ScreenColour green = ColourOfLight(530);
  const ScreenColour red = ColourOfLight(650);
  EXPECT_TRUE(blue.Blue == 255 && blue.Red < 200 && blue.Green < 200);
  EXPECT_TRUE(green.Green == 255 && green.Blue < 160);
  EXPECT_TRUE(red.Red == 255 && red.Green < 100 && red.Blue < 60);
  EXPECT_EQ(ColourOfLight(200), ColourOfLight(300));
  EXPECT_EQ(ColourOfLight(900), ColourOfLight(1100));
}

}  // namespace
}  // namespace spectrane
