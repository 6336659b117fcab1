#include "acquire/acquisition.h"

#include "acquire/baselinereferences.h"
#include "acquire/spectrumscan.h"
#include "acquire/wavelengthtable.h"
#include "link/function.h"
#include "link/linkfixture.h"

namespace spectrane::testing_link {
namespace {

using Order = std::vector<std::string>;

/// Runs on a healthy instrument in memory that answers every `rezero` with 50000 at gain 3.
class Acquiring : public LinkFixture {
 protected:
  void SetUp() override {
    ConnectNow();
    Steps.OnDone = [this](std::int32_t done) { Done = done; };
  }
  /// The stop is asked for once so many points are done.
  void StopAfter(std::int32_t points) {
    Steps.StopWanted = [this, points] { return Done >= points; };
  }

  AcquisitionSteps Steps{{Link.Instrument, Link.State, Link.Live, Display, Boxes, Link.Formats}};
  std::int32_t Done = 0;
  std::vector<BSLRecord> References;
  std::vector<WLSRecord> Points;
  ScanGrid Grid = ScanGrid::Between(4000, 4010, 5);
};

TEST_F(Acquiring, TheReferenceIsAMoveAndARezeroAtEachWavelength) {
  EXPECT_EQ(ScanReferences(Steps, Grid, References), AcquisitionEnd::Finished);
  EXPECT_EQ(Peer.Commands, (Order{"swl  400", "rezero", "swl  400.5", "rezero", "swl  401", "rezero"}));
  EXPECT_EQ(References, (std::vector<BSLRecord>{{400, 3, 50000}, {400.5, 3, 50000}, {401, 3, 50000}}));
  EXPECT_EQ(Done, 3);
  EXPECT_FALSE(Link.State.InstrumentBusy);
  EXPECT_FALSE(Link.State.RunUnderWay);
  EXPECT_EQ(Link.State.GainIndex, 3);
  EXPECT_EQ(Link.State.FullEnergy, 50000);
}

TEST_F(Acquiring, ASpectrumIsMoveGainAndReading) {
  References = {{400, 2, 41000}, {401, 5, 42000}};
  EXPECT_EQ(ScanSpectrum(Steps, References, 7, Points), AcquisitionEnd::Finished);
  EXPECT_EQ(Peer.Commands, (Order{"swl  400", "sa 2", "ge 7", "swl  401", "sa 5", "ge 7"}));
  EXPECT_EQ(Points, (std::vector<WLSRecord>{{25000, 41000, 102, 400, 2}, {25000, 42000, 105, 401, 5}}));
}

TEST_F(Acquiring, AStopKeepsThePointsUpToThere) {
  References = {{400, 2, 41000}, {401, 2, 41000}, {402, 2, 41000}};
  StopAfter(2);
  EXPECT_EQ(ScanSpectrum(Steps, References, 1, Points), AcquisitionEnd::Stopped);
  EXPECT_EQ(Points.size(), 2u);
  EXPECT_EQ(Peer.Commands.back(), "ge 1");
  EXPECT_FALSE(Link.State.RunUnderWay);
}

TEST_F(Acquiring, AFailedStepEndsTheRunAndIsNotTriedAgain) {
  for (const char* const failing : {"swl  401", "sa 2", "ge 1"}) {
    SCOPED_TRACE(failing);
    Points.clear();
    Peer.Commands.clear();
    // The gain and the reading of the first point pass.
    if (std::string(failing) != "swl  401") Peer.NextText(failing, ScriptedPeer::Reply(failing, {"25000"}));
    Peer.NextText(failing, "12345\r\n>");
    References = {{400, 2, 41000}, {401, 2, 41000}, {402, 2, 41000}};
    EXPECT_EQ(ScanSpectrum(Steps, References, 1, Points), AcquisitionEnd::Failed);
    EXPECT_EQ(Points.size(), 1u);
    EXPECT_EQ(Peer.Commands.back(), failing);
    EXPECT_EQ(Steps.At(), 401.0) << "the place where it failed";
    EXPECT_FALSE(Link.State.InstrumentBusy);
  }
}

// References of before and readings of after it would make points that nobody has measured.
TEST_F(Acquiring, P11_AfterARestartNoStepPasses) {
  for (const char* const heardAt : {"swl  400", "sa 2", "ge 1"}) {
    SCOPED_TRACE(heardAt);
    AcquisitionSteps steps{{Link.Instrument, Link.State, Link.Live, Display, Boxes, Link.Formats}};
    References = {{400, 2, 41000}, {401, 2, 41000}};
    Points.clear();
    ASSERT_EQ(ScanSpectrum(steps, References, 1, Points), AcquisitionEnd::Finished);
    Points.clear();
    Peer.Next(heardAt, {{1, ScriptedPeer::Reply(heardAt, std::vector<std::string>(heardAt[0] == 'g', "1"))},
                        {0, "\r\nSimulated instrument\r\nready.\r\n>"}});
    EXPECT_EQ(ScanSpectrum(steps, References, 1, Points), AcquisitionEnd::Failed);
    EXPECT_LE(Points.size(), 1u);
    const std::size_t before = Points.size();
    EXPECT_EQ(ScanSpectrum(steps, References, 1, Points), AcquisitionEnd::Failed) << "nor in the next pass";
    EXPECT_EQ(Points.size(), before);
  }
}

TEST_F(Acquiring, AnIncompleteReadingIsNoPoint) {
  References = {{400, 2, 41000}};
  Peer.NextText("ge 3", ScriptedPeer::Reply("ge 3", {"25000", "25000"}));
  EXPECT_EQ(ScanSpectrum(Steps, References, 3, Points), AcquisitionEnd::Failed);
  EXPECT_TRUE(Points.empty());
}

TEST_F(Acquiring, AGainThatTheInstrumentDoesNotHaveIsNoReference) {
  for (const char* const gain : {"0", "9", "-1"}) {
    SCOPED_TRACE(gain);
    Peer.Lines["rezero"] = {"50000", gain};
    EXPECT_EQ(ScanReferences(Steps, Grid, References), AcquisitionEnd::Failed);
    EXPECT_TRUE(References.empty());
  }
}

TEST_F(Acquiring, ARunDoesNotBeginInsideAnother) {
  const InstrumentRun other(Link.State);
  EXPECT_EQ(ScanReferences(Steps, Grid, References), AcquisitionEnd::NotBegun);
  EXPECT_TRUE(Peer.Commands.empty());
}

TEST_F(Acquiring, NorWithoutAnInstrument) {
  Link.Connect.ReleaseConnection();
  Peer.Commands.clear();
  EXPECT_EQ(ScanReferences(Steps, Grid, References), AcquisitionEnd::NotBegun);
  EXPECT_TRUE(Peer.Commands.empty());
}

TEST_F(Acquiring, ATableTakesAllBlanksFirstAndReadsAtTheirGains) {
  Peer.NextText("rezero", ScriptedPeer::Reply("rezero", {"50000", "3"}));
  Peer.NextText("rezero", ScriptedPeer::Reply("rezero", {"48000", "5"}));
  WavelengthTable table(Steps, {260, 280});
  ASSERT_EQ(table.TakeBlanks(), AcquisitionEnd::Finished);
  std::vector<double> abs;
  ASSERT_EQ(table.MeasureSample(abs), AcquisitionEnd::Finished);
  EXPECT_EQ(Peer.Commands, (Order{"swl  260", "rezero", "swl  280", "rezero", "swl  260", "sa 3", "ge 10",
                                  "swl  280", "sa 5", "ge 10"}));
  ASSERT_EQ(abs.size(), 2u);
  EXPECT_EQ(abs[0], AbsFromEnergy(25000, 50000, 103));
  EXPECT_EQ(abs[1], AbsFromEnergy(25000, 48000, 105));
}

TEST_F(Acquiring, ASampleThatFailsAtItsLastWavelengthIsNoRow) {
  WavelengthTable table(Steps, {260, 280});
  ASSERT_EQ(table.TakeBlanks(), AcquisitionEnd::Finished);
  Peer.NextText("ge 10", ScriptedPeer::Reply("ge 10", std::vector<std::string>(10, "25000")));
  Peer.NextText("ge 10", ">");
  std::vector<double> abs = {7};
  EXPECT_EQ(table.MeasureSample(abs), AcquisitionEnd::Failed);
  EXPECT_EQ(abs, std::vector<double>{7});
}

TEST_F(Acquiring, DarkEnergiesAreTakenWholeOrNotAtAll) {
  Link.State.DarkEnergies.fill(7);
  Link.State.DarkTableWhole = false;
  Peer.NextText("getdark", ScriptedPeer::Reply("getdark", {"1", "2"}));
  EXPECT_FALSE(Steps.ReadDark());
  EXPECT_EQ(Steps.DarkOf(1), 7);
  EXPECT_FALSE(Link.State.DarkTableWhole);
  EXPECT_TRUE(Steps.ReadDark());
  EXPECT_TRUE(Link.State.DarkTableWhole);
  EXPECT_EQ(Steps.DarkOf(1), 101);
  EXPECT_EQ(Steps.DarkOf(8), 108);
}

TEST_F(Acquiring, TheBlankStandsInItsCellWhereThereIsASampler) {
  EXPECT_TRUE(Steps.MoveToBlankCell());
  EXPECT_TRUE(Peer.Commands.empty());
  Link.State.SamplerPresent = true;
  Link.State.SamplerZeroPosition = 4;
  EXPECT_TRUE(Steps.MoveToBlankCell());
  EXPECT_EQ(Peer.Commands, (Order{"setsampler 4"}));
}

class BaselineFile : public Acquiring {
 protected:
  std::string Save(const std::vector<BSLRecord>& records) {
    const std::string path = Folder + "/base.bsl";
    std::filesystem::remove(path);
    EXPECT_FALSE(SaveBaseline(path, records, 45000.5));
    return path;
  }
  static std::vector<BSLRecord> Whole(std::int32_t first, std::int32_t last) {
    std::vector<BSLRecord> records;
    for (std::int32_t nm = first; nm <= last; ++nm) records.push_back({double(nm), 3, 40000 + nm});
    return records;
  }
};

TEST_F(BaselineFile, GivesAReferenceForEachPoint) {
  const std::string path = Save(Whole(300, 310));
  const BaselineReferences found = FindReferences(path, ScanGrid::Between(3020, 3080, 20), 8);
  EXPECT_EQ(found.Reason, "");
  EXPECT_EQ(found.References,
            (std::vector<BSLRecord>{{302, 3, 40302}, {304, 3, 40304}, {306, 3, 40306}, {308, 3, 40308}}));
  BSLOption option;
  std::vector<BSLRecord> records;
  EXPECT_FALSE(LoadDataFile(BSLModule(), path, option, records));
  EXPECT_EQ(option, (BSLOption{310, 300, 45000.5, 0}));
  EXPECT_EQ(records, Whole(300, 310));
}

TEST_F(BaselineFile, AStretchMayBeginAnywhere) {
  EXPECT_EQ(FindReferences(Save(Whole(300, 310)), ScanGrid::Between(3000, 3100, 10), 8).References.size(),
            11u);
  EXPECT_EQ(FindReferences(Save(Whole(305, 305)), ScanGrid::Between(3050, 3050, 10), 8).References.size(),
            1u);
}

TEST_F(BaselineFile, WhyItDoesNotServe) {
  const auto reason = [this](const std::vector<BSLRecord>& records, const ScanGrid& grid) {
    const BaselineReferences found = FindReferences(Save(records), grid, 8);
    EXPECT_TRUE(found.References.empty());
    return found.Reason;
  };
  const ScanGrid inside = ScanGrid::Between(3000, 3100, 10);
  EXPECT_NE(reason(Whole(301, 310), inside).find("from 301 nm to 310 nm"), std::string::npos);
  EXPECT_NE(reason(Whole(300, 309), inside).find("from 300 nm to 309 nm"), std::string::npos);
  EXPECT_NE(reason(Whole(300, 310), ScanGrid::Between(3000, 3100, 5)).find("whole nanometres"),
            std::string::npos);
  EXPECT_NE(reason(Whole(300, 310), ScanGrid::Between(3005, 3100, 10)).find("whole nanometres"),
            std::string::npos);
  for (const BSLRecord hole : {BSLRecord{305, 0, 40000}, BSLRecord{305, 9, 40000}, BSLRecord{305, 3, 0},
                               BSLRecord{305.5, 3, 40000}, BSLRecord{}}) {
    std::vector<BSLRecord> records = Whole(300, 310);
    records[5] = hole;
    EXPECT_EQ(reason(records, inside), "it has nothing at 305 nm");
  }
  EXPECT_NE(FindReferences(Folder + "/none.bsl", inside, 8).Reason, "");
}

}  // namespace
}  // namespace spectrane::testing_link
