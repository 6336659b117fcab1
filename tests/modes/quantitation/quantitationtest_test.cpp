#include "modes/quantitation/quantitationtest.h"

#include <cmath>

#include "link/linkfixture.h"
#include "tools/setup.h"

namespace spectrane::testing_link {
namespace {

using Commands = std::vector<std::string>;
using Ids = std::vector<int>;

/// Boxes with the icon of an error, apart from the others.
class TwoKindsOfBoxes : public RecordedMessages {
 public:
  void ShowError(int textId) override { Errors.push_back(textId); }
  std::vector<int> Errors;
};

class QuantitationRun : public LinkFixture {
 protected:
  void SetUp() override {
    ConnectNow();
    Peer.Lines["rezero"] = {"40103", "3"};
    Test.OnSampleBegun = [this](const std::string& name) { Seen.push_back("begun " + name); };
    Test.OnReading = [this](std::size_t i, double abs) {
      Seen.push_back("reading " + std::to_string(i));
      LastAbs = abs;
    };
    Test.OnRecord = [this](std::int32_t row) { Seen.push_back("record " + std::to_string(row)); };
    Test.OnSampleDropped = [this] { Seen.push_back("dropped"); };
  }
  /// A line without standards: concentration is ten times the absorbance.
  void UseCoefficients(std::int32_t wavelengths = 1) {
    QuantitationSettings settings;
    settings.CurveItem = 2;
    settings.FittingMethod = 0;
    settings.InputK = {0, 10, 0, 0};
    settings.WaveLengthNumber = wavelengths;
    settings.WaveLengthList = {500, 600, 700};
    settings.WaveLengthPara = {1, -0.5, 0};
    Document.Configure(settings);
  }
  void UseStandards() {
    QuantitationSettings settings;
    settings.FittingMethod = 1;
    settings.WaveLengthList = {500, 600, 700};
    Document.Configure(settings);
  }
  void Blank() {
    Test.mmuOperationRezero();
    ASSERT_TRUE(Test.BlankHolds());
    Peer.Commands.clear();
    Seen.clear();
  }
  void Readings(const std::string& energy) { Peer.Lines["ge 10"] = std::vector<std::string>(10, energy); }
  void FitSampler() { Link.State.SamplerPresent = true; }

  TwoKindsOfBoxes TwoBoxes;
  QuantitationDocument Document;
  QuantitationTest Test{{Link.Instrument, Link.State, Link.Live, Display, TwoBoxes, Link.Formats}, Document};
  std::vector<std::string> Seen;
  double LastAbs = -1;
};

TEST_F(QuantitationRun, TheBlankOfOneWavelengthMovesAndTakesTheEnergyOfItsReply) {
  UseCoefficients();
  Test.mmuOperationRezero();
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  500", "rezero"}));
  EXPECT_TRUE(Test.BlankHolds());
  EXPECT_TRUE(Document.Option().BlankDone);
  EXPECT_EQ(Document.Option().BlankFullEnergy[0], 40103);
  EXPECT_EQ(Document.Option().BlankGain[0], 3);
  EXPECT_EQ(Document.Option().BlankDarkEnergy[0], Link.State.DarkEnergies[3]);
  EXPECT_EQ(Link.State.FullEnergy, 40103) << "the live reading goes on against the new blank";
  EXPECT_TRUE(Display.TimerOn);
  EXPECT_FALSE(Link.State.InstrumentBusy);
  EXPECT_EQ(Display.Panes[4], "500.0nm");
  EXPECT_EQ(Display.Remark, "");
}

TEST_F(QuantitationRun, TheBlankOfTwoWavelengthsMovesToBothInOrder) {
  UseCoefficients(2);
  Peer.Next("rezero", {{1, Peer.Reply("rezero", {"40000", "2"}), false}});
  Peer.Next("rezero", {{1, Peer.Reply("rezero", {"50000", "4"}), false}});
  FitSampler();
  Link.State.SamplerZeroPosition = 6;
  Test.mmuOperationRezero();
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "setsampler 6", "swl  500", "rezero", "swl  600", "rezero"}));
  EXPECT_EQ(Document.Option().BlankFullEnergy, (std::array<std::int32_t, 4>{40000, 50000, 0, 0}));
  EXPECT_EQ(Document.Option().BlankGain, (std::array<std::int32_t, 4>{2, 4, 0, 0}));
  EXPECT_EQ(Document.Option().BlankDarkEnergy[1], Link.State.DarkEnergies[4]);
}

TEST_F(QuantitationRun, ThreeWavelengthsAreMeasuredLikeTwo) {
  UseCoefficients(3);
  Blank();
  Test.mmuStartTest();
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  500", "sa 3", "ge 10", "swl  600", "sa 3", "ge 10"}));
}

struct BlankFailure {
  const char* Name;
  const char* Command;
  Ids Boxes;
};

class QuantitationBlank : public QuantitationRun, public testing::WithParamInterface<BlankFailure> {};

TEST_P(QuantitationBlank, FailureLeavesNoBlankAndTheLiveReadingRuns) {
  UseCoefficients(2);
  FitSampler();
  Blank();
  Display.TimerOn = false;
  Peer.Next(GetParam().Command, {});
  Test.mmuOperationRezero();
  EXPECT_EQ(Document.Option().BlankDone, std::string(GetParam().Command) == "getwl");
  EXPECT_EQ(TwoBoxes.Ids, GetParam().Boxes);
  EXPECT_TRUE(TwoBoxes.Errors.empty());
  EXPECT_FALSE(Link.State.InstrumentBusy);
  EXPECT_FALSE(Link.State.RunUnderWay);
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(QuantitationRun, ABlankThatFailedFitsNothing) {
  UseStandards();
  Document.SetStandardConc(0, 10);
  Document.SetStandardConc(1, 20);
  for (const std::int32_t row : {0, 1}) Document.SetStandardReadings(row, 0.5);
  ASSERT_TRUE(TwoBoxes.Errors.empty());
  Peer.Next("rezero", {});
  Test.mmuOperationRezero();
  EXPECT_TRUE(TwoBoxes.Errors.empty()) << "equal absorbances have no line, which was not asked";
  Test.mmuOperationRezero();
  EXPECT_EQ(TwoBoxes.Errors, Ids{1209}) << "a blank fits anew";
}

INSTANTIATE_TEST_SUITE_P(Of, QuantitationBlank,
                         testing::Values(BlankFailure{"TheQuestionForTheWavelength", "getwl", {}},
                                         BlankFailure{"TheSampler", "setsampler 1", {1912}},
                                         BlankFailure{"TheFirstMove", "swl  500", {1045}},
                                         BlankFailure{"TheSecondMove", "swl  600", {1045}},
                                         BlankFailure{"TheRezero", "rezero", {1045}}),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST_F(QuantitationRun, AGainOutsideTheTableIsNoBlank) {
  UseCoefficients();
  for (const char* gain : {"0", "9", "11", "12", "-1", "1000000000"}) {
    TwoBoxes.Ids.clear();
    Peer.Lines["rezero"] = {"40103", gain};
    Test.mmuOperationRezero();
    EXPECT_EQ(TwoBoxes.Ids, Ids{1045}) << gain;
    EXPECT_FALSE(Test.BlankHolds()) << gain;
  }
}

// A sample at the highest gain is read at the gain of its blank.
TEST_F(QuantitationRun, TheHighestGainIsThatOfTheInstrument) {
  UseCoefficients();
  Peer.Lines["rezero"] = {"40103", "8"};
  Blank();
  Peer.Lines["getwl"] = {"500.0"};
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "sa 8", "ge 10"}));
}

TEST_F(QuantitationRun, ABlankOverAnIncompleteDarkTableSaysSo) {
  UseCoefficients(2);
  Link.Connect.ReleaseConnection();
  Peer.NextText("getdark", ScriptedPeer::Reply("getdark", {"101", "102", "103"}));
  ConnectNow();
  Display.SetRemark({});
  Test.mmuOperationRezero();
  EXPECT_TRUE(Test.BlankHolds());
  EXPECT_EQ(Display.Remark, "The instrument's dark table is incomplete.");
}

TEST_F(QuantitationRun, ABlankWithoutLightSaysSo) {
  UseCoefficients();
  Peer.Lines["rezero"] = {"0", "3"};
  Test.mmuOperationRezero();
  EXPECT_EQ(Display.Remark, "The blank gives no light at 500.0nm.");
}

TEST_F(QuantitationRun, AsMuchAsInTheDarkIsNoLight) {
  UseCoefficients();
  const std::int32_t dark = Link.State.DarkEnergies[3];
  Peer.Lines["rezero"] = {std::to_string(dark + 1), "3"};
  Test.mmuOperationRezero();
  ASSERT_EQ(Document.Option().BlankFullEnergy[0], Document.Option().BlankDarkEnergy[0] + 1);
  EXPECT_EQ(Display.Remark, "");
  Peer.Lines["rezero"] = {std::to_string(dark), "3"};
  Test.mmuOperationRezero();
  EXPECT_EQ(Display.Remark, "The blank gives no light at 500.0nm.");
}

// The drive may have slipped without knowing.
TEST_F(QuantitationRun, ABlankMovesEvenWhereTheDriveSaysItStands) {
  UseCoefficients();
  Peer.Lines["getwl"] = {"500.0"};
  Test.mmuOperationRezero();
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  500", "rezero"}));
}

TEST_F(QuantitationRun, TwoWavelengthsMoveEvenWhereTheDriveSaysItStands) {
  UseCoefficients(2);
  Blank();
  Peer.Lines["getwl"] = {"500.0"};
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  500", "sa 3", "ge 10", "swl  600", "sa 3", "ge 10"}));
}

TEST_F(QuantitationRun, AWavelengthOutsideTheRangeIsNotMeasured) {
  UseCoefficients();
  QuantitationSettings settings = Document.Settings();
  settings.WaveLengthList[0] = 1100;
  Document.Configure(settings);
  Test.mmuOperationRezero();
  EXPECT_EQ(Peer.Commands, (Commands{"getwl"}));
  EXPECT_FALSE(Test.BlankHolds());
  EXPECT_EQ(Display.Remark, "1100.0nm is outside the range of this instrument.");
}

TEST_F(QuantitationRun, StartAsksForWhatIsMissingInItsOrder) {
  UseStandards();
  Link.State.InstrumentConnected = false;
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(TwoBoxes.Ids, Ids{1044});
  Link.State.InstrumentConnected = true;
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(TwoBoxes.Ids, (Ids{1044, 1048}));
  Blank();
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(TwoBoxes.Errors, Ids{1209}) << "no curve yet";
  EXPECT_TRUE(Peer.Commands.empty());
}

TEST_F(QuantitationRun, NothingIsMeasuredOnACurveWhoseStandardIsGone) {
  UseStandards();
  Blank();
  for (std::int32_t row = 0; row < Document.StandardRows(); ++row) {
    Document.SetStandardReadings(row, 0.2 * (row + 1), 0);
    Document.SetStandardConc(row, 2.0 * (row + 1));
  }
  ASSERT_TRUE(Document.Option().CurveValid);
  Document.ClearStandardConc(0);
  EXPECT_FALSE(Document.CurveHolds());
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(TwoBoxes.Errors, Ids{1209});
  EXPECT_EQ(Document.RecordCount(), 0);
  Document.SetStandardConc(0, 2.0);
  EXPECT_TRUE(Document.CurveHolds());
}

TEST_F(QuantitationRun, TypedCoefficientsNeedNoCurve) {
  UseCoefficients();
  Blank();
  Readings("4120");
  ASSERT_TRUE(Test.mmuStartTest());
  const double abs = std::log10(40000.0 / (4120.0 - Link.State.DarkEnergies[3])) +
                     std::log10((40103.0 - Link.State.DarkEnergies[3]) / 40000.0);
  ASSERT_EQ(Document.RecordCount(), 1);
  EXPECT_NEAR(Document.Record(0).Abs[0], abs, 1e-12);
  EXPECT_NEAR(Document.Record(0).Conc, 10 * abs, 1e-11);
  EXPECT_EQ(Document.Record(0).Name, "");
  EXPECT_EQ(Seen, (std::vector<std::string>{"begun ", "reading 0", "record 0"}));
  EXPECT_TRUE(Display.TimerOn);
}

TEST_F(QuantitationRun, OneWavelengthMovesOnlyWhenItStandsElsewhere) {
  UseCoefficients();
  Blank();
  Peer.Lines["getwl"] = {"500.0"};
  Test.mmuStartTest();
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "sa 3", "ge 10"}));
  Peer.Commands.clear();
  Peer.Lines["getwl"] = {"546.0"};
  Test.mmuStartTest();
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  500", "sa 3", "ge 10"}));
}

TEST_F(QuantitationRun, TwoWavelengthsAreCombinedWithTheirFactors) {
  UseCoefficients(2);
  Blank();
  const double dark = Link.State.DarkEnergies[3];
  const double full = 40103 - dark;
  Peer.Next("ge 10", {{1, Peer.Reply("ge 10", std::vector<std::string>(10, "20000")), false}});
  Peer.Next("ge 10", {{1, Peer.Reply("ge 10", std::vector<std::string>(10, "30000")), false}});
  ASSERT_TRUE(Test.mmuStartTest());
  const double first = -std::log10((20000 - dark) / full);
  const double second = -std::log10((30000 - dark) / full);
  const QuaRecord& record = Document.Record(0);
  EXPECT_NEAR(record.Abs[0], first, 1e-12);
  EXPECT_NEAR(record.Abs[1], second, 1e-12);
  EXPECT_NEAR(record.Abs[2], first - 0.5 * second, 1e-12);
  EXPECT_NEAR(record.Conc, 10 * (first - 0.5 * second), 1e-11);
}

TEST_F(QuantitationRun, TheSamplerMeasuresThePositionsInUse) {
  UseCoefficients();
  FitSampler();
  Link.State.SamplerPositions.fill(false);
  Link.State.SamplerPositions[2] = Link.State.SamplerPositions[7] = true;
  Blank();
  Peer.Lines["getwl"] = {"500.0"};
  ASSERT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Peer.Commands,
            (Commands{"getwl", "setsampler 2", "sa 3", "ge 10", "setsampler 7", "sa 3", "ge 10"}));
  EXPECT_EQ(Document.Record(0).Name, "Sampler Position 2");
  EXPECT_EQ(Document.Record(1).Name, "Sampler Position 7");
}

TEST_F(QuantitationRun, NoPositionInUseTakesNoSample) {
  UseCoefficients();
  FitSampler();
  Blank();
  Link.State.SamplerPositions.fill(false);
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Document.RecordCount(), 0);
  EXPECT_EQ(Peer.Commands, (Commands{"getwl"}));
}

TEST_F(QuantitationRun, AFailureInASampleKeepsTheRowsBeforeIt) {
  UseCoefficients(2);
  FitSampler();
  Blank();
  for (const char* failing : {"getwl", "setsampler 2", "swl  600", "sa 3", "ge 10"}) {
    TwoBoxes.Ids.clear();
    Document.ClearRecords();
    Seen.clear();
    Peer.Commands.clear();
    // The first position passes.
    if (std::string(failing) != "getwl" && std::string(failing) != "setsampler 2") {
      const std::vector<std::string> ten(10, "20000");
      const auto lines = std::string(failing) == "ge 10" ? ten : std::vector<std::string>{};
      const int good = std::string(failing) == "swl  600" ? 1 : 2;
      for (int i = 0; i < good; ++i) Peer.Next(failing, {{1, Peer.Reply(failing, lines), false}});
    }
    Peer.Next(failing, {});
    EXPECT_FALSE(Test.mmuStartTest()) << failing;
    EXPECT_EQ(TwoBoxes.Ids, Ids{1045}) << failing;
    EXPECT_EQ(Document.RecordCount(), std::string(failing) == "getwl" ? 0 : 1) << failing;
    if (std::string(failing) != "getwl" && std::string(failing) != "setsampler 2") {
      EXPECT_EQ(Seen.back(), "dropped") << failing;
    }
    EXPECT_FALSE(Test.TestRunning);
    EXPECT_FALSE(Link.State.InstrumentBusy);
    EXPECT_TRUE(Display.TimerOn);
  }
}

TEST_F(QuantitationRun, AReadingThatIsShortOfLinesIsNoReading) {
  UseCoefficients();
  Blank();
  Peer.Lines["ge 10"] = {"20000", "20000"};
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(Document.RecordCount(), 0);
  EXPECT_EQ(TwoBoxes.Ids, Ids{1045});
}

TEST_F(QuantitationRun, P11_ARestartAtAnyCommandEndsTheRunAndTheBlank) {
  UseCoefficients();
  for (const char* command : {"getwl", "swl  500", "sa 3", "ge 10"}) {
    Blank();
    if (std::string(command) == "swl  500") Peer.Lines["getwl"] = {"620.0"};
    Peer.NextText(command, "\r\nSPECTROMETER V1.2\r\n>");
    const std::size_t rows = static_cast<std::size_t>(Document.RecordCount());
    TwoBoxes.Ids.clear();
    EXPECT_FALSE(Test.mmuStartTest()) << command;
    EXPECT_EQ(TwoBoxes.Ids, Ids{1045}) << command;
    EXPECT_EQ(static_cast<std::size_t>(Document.RecordCount()), rows) << command;
    EXPECT_FALSE(Test.BlankHolds()) << command;
    TwoBoxes.Ids.clear();
    Peer.Commands.clear();
    EXPECT_FALSE(Test.mmuStartTest()) << command;
    EXPECT_EQ(TwoBoxes.Ids, Ids{1048}) << "until a new blank: " << command;
    EXPECT_TRUE(Peer.Commands.empty()) << command;
  }
}

TEST_F(QuantitationRun, P10_ADriveThatAnswersAndDoesNotGoIsTold) {
  UseCoefficients();
  Blank();
  Peer.Lines["getwl"] = {"500.0"};
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Display.Remark, "") << "where it was sent";
  Peer.Lines["getwl"] = {"480.0"};
  Peer.Commands.clear();
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  500", "sa 3", "ge 10"})) << "nothing beyond the usual";
  EXPECT_NE(Display.Remark.find("stood at 480.0nm"), std::string::npos) << Display.Remark;
  // A person who moved it by the dialog is not told.
  Link.State.CurrentWavelength = 480.0;
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Display.Remark, "");
}

// It stands where a tool has sent it, though the program could not read that back.
TEST_F(QuantitationRun, ADriveThatAToolHasMovedIsNotCalledAstray) {
  UseCoefficients();
  Blank();
  Peer.Next("getwl", {});
  ASSERT_FALSE(MoveWavelength(Link, 600.0));
  Peer.Lines["getwl"] = {"600.0"};
  Peer.Commands.clear();
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  500", "sa 3", "ge 10"}));
  EXPECT_EQ(Display.Remark, "");
  EXPECT_TRUE(Test.mmuStartTest());
  EXPECT_NE(Display.Remark.find("stood at 600.0nm"), std::string::npos) << "sent back, and it did not go";
}

// The position of before was kept then, and the sample was read where a tool had left the drive.
TEST_F(QuantitationRun, AnInstrumentThatDoesNotSayWhereItStandsIsMoved) {
  UseCoefficients();
  Peer.Lines["getwl"] = {"600.0"};
  for (const char* answer : {"getwl\r\n>", "getwlgetwl\r\n500.0\r\n>"}) {
    Blank();
    ASSERT_TRUE(MoveWavelength(Link, 600.0));
    Peer.Commands.clear();
    Peer.NextText("getwl", answer);
    EXPECT_TRUE(Test.mmuStartTest()) << answer;
    EXPECT_EQ(Peer.Commands, (Commands{"getwl", "swl  500", "sa 3", "ge 10"})) << answer;
    EXPECT_EQ(Display.Remark, "") << answer;
  }
}

TEST_F(QuantitationRun, ABlankOfSomebodyElseEndsThisOne) {
  UseCoefficients();
  Blank();
  ASSERT_TRUE(Link.Live.mmuRezeroEnergy());
  EXPECT_FALSE(Test.BlankHolds());
  EXPECT_FALSE(Test.mmuStartTest());
  EXPECT_EQ(TwoBoxes.Ids, Ids{1048});
}

TEST_F(QuantitationRun, TheBlankOfAFileDoesNotHold) {
  UseCoefficients();
  Document.SetBlank(0, 40000, 100, 3);
  Document.SetBlankDone(true);
  EXPECT_FALSE(Test.BlankHolds());
}

TEST_F(QuantitationRun, StandardsAreMeasuredAndTheCurveComesWithTheLast) {
  UseStandards();
  Blank();
  Document.SetStandardConc(0, 10);
  Document.SetStandardConc(1, 20);
  Readings("20000");
  ASSERT_TRUE(Test.MeasureStandard(0));
  EXPECT_FALSE(Document.Option().CurveValid);
  Readings("10000");
  ASSERT_TRUE(Test.MeasureStandard(1));
  EXPECT_TRUE(Document.Option().CurveValid);
  EXPECT_TRUE(Document.Option().StandardAbsSet[1]);
  const double dark = Link.State.DarkEnergies[3];
  EXPECT_NEAR(Document.Option().StandardAbs[1][0], -std::log10((10000 - dark) / (40103 - dark)), 1e-12);
  EXPECT_TRUE(TwoBoxes.Ids.empty());
  EXPECT_EQ(Peer.Commands,
            (Commands{"getwl", "swl  500", "sa 3", "ge 10", "getwl", "swl  500", "sa 3", "ge 10"}));
}

TEST_F(QuantitationRun, ACurveThatIsRejectedIsTold) {
  UseStandards();
  Blank();
  Document.SetStandardConc(0, 10);
  Document.SetStandardConc(1, 20);
  Readings("20000");
  Test.MeasureStandard(0);
  Test.MeasureStandard(1);
  EXPECT_EQ(TwoBoxes.Errors, Ids{1209}) << "equal absorbances have no line";
  EXPECT_TRUE(TwoBoxes.Ids.empty());
}

TEST_F(QuantitationRun, AStandardNeedsABlankAndAnInstrument) {
  UseStandards();
  EXPECT_FALSE(Test.MeasureStandard(0));
  EXPECT_EQ(TwoBoxes.Ids, Ids{1048});
  EXPECT_TRUE(Peer.Commands.empty());
  Blank();
  Link.State.InstrumentConnected = false;
  EXPECT_FALSE(Test.MeasureStandard(0));
  EXPECT_EQ(TwoBoxes.Ids, (Ids{1048, 1044}));
  EXPECT_TRUE(Peer.Commands.empty());
}

TEST_F(QuantitationRun, TheCellOfAStandardIsAskedFor) {
  UseStandards();
  FitSampler();
  Blank();
  bool chosen = false;
  Test.SelectSampler = [&] { return chosen; };
  EXPECT_FALSE(Test.MeasureStandard(0));
  EXPECT_EQ(Peer.Commands, (Commands{"getwl"})) << "nothing was chosen, nothing is measured";
  EXPECT_TRUE(TwoBoxes.Ids.empty());
  chosen = true;
  EXPECT_TRUE(Test.MeasureStandard(0));
  EXPECT_TRUE(Document.Option().StandardAbsSet[0]);
}

TEST_F(QuantitationRun, AFailedStandardStaysUnmeasured) {
  UseStandards();
  Blank();
  for (const char* failing : {"getwl", "swl  500", "sa 3", "ge 10"}) {
    TwoBoxes.Ids.clear();
    Peer.Next(failing, {});
    EXPECT_FALSE(Test.MeasureStandard(0)) << failing;
    EXPECT_EQ(TwoBoxes.Ids, Ids{1045}) << failing;
    EXPECT_FALSE(Document.Option().StandardAbsSet[0]) << failing;
    EXPECT_FALSE(Link.State.InstrumentBusy);
  }
}

TEST_F(QuantitationRun, AStopEndsTheRunAtEachStepWithoutAMessage) {
  UseCoefficients(2);
  FitSampler();
  Blank();
  for (int step = 0; step < 7; ++step) {
    Document.ClearRecords();
    int asked = 0;
    Test.StopWanted = [&] { return asked++ >= step; };
    EXPECT_FALSE(Test.mmuStartTest()) << step;
    EXPECT_FALSE(Test.TestRunning);
  }
  EXPECT_TRUE(TwoBoxes.Ids.empty());
}

TEST_F(QuantitationRun, OnlyOneRunOwnsTheInstrument) {
  UseCoefficients();
  Blank();
  const InstrumentRun other(Link.State);
  EXPECT_FALSE(Test.mmuStartTest());
  Test.mmuOperationRezero();
  EXPECT_FALSE(Test.MeasureStandard(0));
  EXPECT_TRUE(Peer.Commands.empty());
}

}  // namespace
}  // namespace spectrane::testing_link
