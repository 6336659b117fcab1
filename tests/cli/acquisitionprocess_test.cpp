// Spectra, baselines, tables and time scans by the batch command, measured on the simulated instrument, each
// a program of its own.

#include <cmath>

#include "link/function.h"
#include "modes/timescan/timescandocument.h"
#include "processes.h"
#include "spectrum/spectrumdocument.h"
#include "tools/systembaseline.h"

namespace spectrane::testing_processes {
namespace {

using Words = std::vector<std::string>;

class Acquisition : public SimulatorProcess {
 protected:
  Outcome Instrument(Words words, const std::string& out) {
    words.insert(words.begin(), "instrument");
    words.insert(words.end(), {"--out", Path(out), "--yes"});
    return Batch(words);
  }
  Json Dump(const std::string& name) { return Batch({"dump", Path(name)}).AsJson(); }
  Json Info(const std::string& name) { return Batch({"info", Path(name)}).AsJson(); }

  /// Every request with its whole answer, as the simulator logged them.
  std::string Exchanges() const {
    std::string text;
    std::istringstream lines(Content("log"));
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with('#')) text += line.substr(line.find('"')) + "\n";
    }
    return text;
  }
  /// The exchanges of the run are those of the file in tests/cli/golden.
  void ExpectGolden(const std::string& name) const {
    QFile file(QStringLiteral(SPECTRANE_SOURCE "/tests/cli/golden/") + QString::fromStdString(name));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    EXPECT_EQ(Exchanges(), file.readAll().toStdString());
  }
};

// ---- The order of the commands ----

TEST_F(Acquisition, GoldenBaseline) {
  StartSimulator({"--instant", "--noise", "0"});
  ASSERT_EQ(Instrument({"baseline", "--from", "500", "--to", "503"}, "b.bsl").Status, 0);
  ExpectGolden("baseline.log");
}

TEST_F(Acquisition, GoldenScanWithAPassOverTheBlank) {
  StartSimulator({"--instant", "--noise", "0"});
  const Outcome outcome = Instrument(
      {"scan", "--from", "501", "--to", "500", "--step", "0.5", "--samples", "2", "--blank"}, "s.wls");
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  ExpectGolden("scan-blank.log");
}

TEST_F(Acquisition, GoldenScanFromTheSamplerWithABaseline) {
  StartSimulator({"--instant", "--noise", "0", "--sampler"});
  ASSERT_EQ(Instrument({"baseline", "--from", "500", "--to", "502"}, "b.bsl").Status, 0);
  const Outcome outcome = Instrument({"scan", "--from", "500", "--to", "502", "--step", "2", "--samples", "3",
                                      "--baseline", Path("b.bsl"), "--from-sampler", "5,3"},
                                     "s.wls");
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  ExpectGolden("scan-sampler.log");
}

TEST_F(Acquisition, GoldenMulti) {
  StartSimulator({"--instant", "--noise", "0"});
  ASSERT_EQ(Instrument({"multi", "--wavelengths", "546,600.5", "--count", "2"}, "m.mul").Status, 0);
  ExpectGolden("multi.log");
}

TEST_F(Acquisition, GoldenDna) {
  StartSimulator({"--instant", "--noise", "0", "--sampler"});
  ASSERT_EQ(Instrument({"dna", "--mode", "2", "--from-sampler", "2,3"}, "d.dna").Status, 0);
  ExpectGolden("dna.log");
}

TEST_F(Acquisition, GoldenKinetics) {
  StartSimulator({"--instant", "--noise", "0"});
  ASSERT_EQ(
      Instrument({"kinetics", "--wavelength", "340", "--interval", "0.1", "--points", "3"}, "k.tis").Status,
      0);
  ExpectGolden("kinetics.log");
}

// ---- What is measured ----

TEST_F(Acquisition, HolmiumBandsStandWithinHalfAStep) {
  StartSimulator({"--instant", "--sampler", "--cell", "3=holmium"});
  ASSERT_EQ(Instrument({"baseline", "--from", "230", "--to", "660"}, "b.bsl").Status, 0);
  const auto expectBands = [this](const std::string& file, double step) {
    const Json peaks = Batch({"peaks", Path(file), "--height", "0.02"}).AsJson()["peaks"];
    for (const double certified : {241.13, 249.87, 278.10, 287.18, 333.44, 345.47, 361.31, 385.66, 416.28,
                                   451.30, 467.83, 485.29, 536.64, 640.52}) {
      double nearest = 0;
      for (const Json& peak : peaks) {
        const double x = peak["x"].get<double>();
        if (std::abs(x - certified) < std::abs(nearest - certified)) nearest = x;
      }
      EXPECT_LE(std::abs(nearest - certified), step / 2) << certified << " in " << file;
    }
  };
  ASSERT_EQ(Instrument({"scan", "--from", "230", "--to", "660", "--step", "1", "--baseline", Path("b.bsl"),
                        "--from-sampler", "3"},
                       "whole.wls")
                .Status,
            0);
  expectBands("whole-cell3.wls", 1.0);
  ASSERT_EQ(
      Instrument({"scan", "--from", "230", "--to", "660", "--step", "0.5", "--blank", "--from-sampler", "3"},
                 "half.wls")
          .Status,
      0);
  expectBands("half-cell3.wls", 0.5);
}

TEST_F(Acquisition, ADyeSeriesIsAStraightLine) {
  StartSimulator({"--instant", "--sampler"});
  const Outcome outcome =
      Instrument({"multi", "--wavelengths", "546", "--parameters", "10", "--from-sampler", "2,3,4,5,6,7,8"},
                 "series.mul");
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  const Json rows = outcome.AsJson()["data"];
  const std::vector<double> concentrations = {1, 2, 4, 6, 8, 10, 15};
  ASSERT_EQ(rows.size(), concentrations.size());
  double xx = 0, xy = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    xx += concentrations[i] * concentrations[i];
    xy += concentrations[i] * rows[i]["Abs"][0].get<double>();
    EXPECT_NEAR(rows[i]["Result"].get<double>(), concentrations[i], 0.02) << "0.1 Abs for each mg/L";
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_NEAR(rows[i]["Abs"][0].get<double>(), xy / xx * concentrations[i], 0.002);
  }
  EXPECT_EQ(rows[6]["Name"], "Sampler Position 8");
  EXPECT_EQ(Dump("series.mul")["data"], rows);
}

TEST_F(Acquisition, ABlankAgainstItsBaselineIsZero) {
  StartSimulator({"--instant", "--noise", "0"});
  ASSERT_EQ(Instrument({"baseline"}, "b.bsl").Status, 0);
  ASSERT_EQ(Instrument({"scan", "--from", "190", "--to", "1100", "--step", "1", "--baseline", Path("b.bsl")},
                       "s.wls")
                .Status,
            0);
  const Json dump = Dump("s.wls");
  ASSERT_EQ(dump["records"], 911);
  for (const Json& point : dump["data"]) {
    EXPECT_NEAR(point["Abs"].get<double>(), 0.0, 2e-4) << point["Wavelength"];
  }
}

// The connection takes a reference of its own where the monochromator stands.
TEST_F(Acquisition, ASampleThatStandsInTheBeamFromTheBeginningSpoilsNoPoint) {
  StartSimulator({"--instant", "--noise", "0"});
  ASSERT_EQ(Instrument({"baseline", "--from", "500", "--to", "520"}, "b.bsl").Status, 0);
  ASSERT_TRUE(Tell("beam filter-0.3"));
  for (const char* const name : {"first.wls", "second.wls"}) {
    const Outcome outcome = Instrument(
        {"scan", "--from", "500", "--to", "520", "--step", "1", "--baseline", Path("b.bsl")}, name);
    ASSERT_EQ(outcome.Status, 0);
    EXPECT_EQ(outcome.Err.find("new reference"), std::string::npos) << outcome.Err;
    const Json points = Dump(name)["data"];
    for (const Json& point : points) EXPECT_NEAR(point["Abs"].get<double>(), 0.3, 0.002) << point;
  }
  // Where another program left it on a point of the baseline, the command says so.
  ASSERT_EQ(Batch({"instrument", "send", "swl 510"}).Status, 0);
  ASSERT_TRUE(Tell("beam dye-1"));  // the instrument chooses the gain of the blank, and another trim
  const Outcome outcome = Instrument(
      {"scan", "--from", "500", "--to", "520", "--step", "1", "--baseline", Path("b.bsl")}, "third.wls");
  EXPECT_NE(outcome.Err.find("new reference at 510 nm"), std::string::npos) << outcome.Err;
}

TEST_F(Acquisition, APersonIsAskedForTheBlankAndThenForTheSample) {
  StartSimulator({"--instant", "--noise", "0", "--beam", "filter-2.0"});
  QProcess process;
  StartBatch(process, {"instrument", "scan", "--from", "500", "--to", "510", "--step", "5", "--blank",
                       "--out", Path("s.wls")});
  process.setReadChannel(QProcess::StandardError);
  const auto waitFor = [&process](const char* words) {
    QByteArray seen;
    while (!seen.contains(words) && process.waitForReadyRead(10000)) seen += process.readAllStandardError();
    return seen.contains(words);
  };
  ASSERT_TRUE(waitFor("Please input blank sample and set 0.000ABS/100%T. [Enter]"));
  ASSERT_TRUE(Tell("beam blank"));
  process.write("\n");
  ASSERT_TRUE(waitFor("Please input test sample. [Enter]"));
  ASSERT_TRUE(Tell("beam filter-1.0"));
  process.write("\n");
  ASSERT_EQ(Finish(process).Status, 0);
  const Json points = Dump("s.wls")["data"];
  for (const Json& point : points) EXPECT_NEAR(point["Abs"].get<double>(), 1.0, 0.005);
}

TEST_F(Acquisition, AScriptThatCannotAnswerIsNotAskedForASingleThing) {
  StartSimulator({"--instant"});
  ASSERT_EQ(Batch({"instrument", "baseline", "--from", "500", "--to", "510", "--out", Path("b.bsl")}).Status,
            0);
  ASSERT_EQ(Batch({"instrument", "scan", "--from", "500", "--to", "510", "--step", "1", "--baseline",
                   Path("b.bsl"), "--out", Path("s.wls")})
                .Status,
            0);
  const Outcome two = Batch({"instrument", "scan", "--from", "500", "--to", "510", "--step", "1", "--blank",
                             "--out", Path("t.wls")});
  EXPECT_EQ(two.Status, 1) << "blank and sample cannot both be there";
  EXPECT_NE(two.Err.find("The run was stopped."), std::string::npos) << two.Err;
  EXPECT_FALSE(Exists("t.wls"));
}

TEST_F(Acquisition, DnaAndProteinFollowFromTheirAbsorbances) {
  StartSimulator({"--instant", "--sampler", "--cell", "2=dna-50", "--cell", "3=protein-1"});
  ASSERT_EQ(Instrument({"dna", "--from-sampler", "2,3"}, "d.dna").Status, 0);
  const Json dump = Dump("d.dna");
  EXPECT_EQ(dump["option"]["Option"], 1);
  EXPECT_NEAR(dump["data"][0]["Abs"][0].get<double>(), 1.0, 0.02);
  EXPECT_NEAR(dump["data"][0]["Ratio"].get<double>(), 1.86, 0.05);
  EXPECT_NEAR(dump["data"][1]["Ratio"].get<double>(), 0.57, 0.02);
  const Json computed = Batch({"compute", Path("d.dna")}).AsJson();
  EXPECT_EQ(computed["DNA"][0], dump["data"][0]["DNA"]);
  EXPECT_EQ(computed["Protein"][1], dump["data"][1]["Protein"]);
}

TEST_F(Acquisition, OptionsComeFromTheSettingsOfTheSpectrumWindow) {
  StartSimulator({"--instant"});
  QFile settings(QString::fromStdString(Path("config.ini")));
  ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
  settings.write("[WaveLength Scanning]\nAbs Top=1.5\nDisplay Mode=2\nStart WaveLength=200\nEnergy Lamp=2\n");
  settings.close();
  ASSERT_EQ(Instrument({"scan", "--from", "400", "--to", "410", "--step", "5", "--blank"}, "s.wls").Status,
            0);
  const Json option = Info("s.wls")["option"];
  EXPECT_EQ(option["AbsTop"], 1.5);
  EXPECT_EQ(option["DisplayMode"], 2);
  EXPECT_EQ(option["EnergyLamp"], 2);
  EXPECT_EQ(option["StartWavelength"], 400.0);
  EXPECT_EQ(option["EndWavelength"], 410.0);
  EXPECT_EQ(option["IntervalWavelength"], 5);
  EXPECT_EQ(option["PointCount"], 3);
}

TEST_F(Acquisition, WithoutAnotherWordTheBaselineOfTheWindowsServes) {
  StartSimulator({"--instant"});
  const Words scan = {"scan", "--from", "400", "--to", "410", "--step", "5"};
  ExpectRefusal(Instrument(scan, "s.wls"), "Baseline.bsl: System baseline don't exist.");
  ASSERT_EQ(Instrument({"baseline", "--from", "400", "--to", "410"}, "Baseline.bsl").Status, 0);
  EXPECT_EQ(Instrument(scan, "s.wls").Status, 0);
}

TEST_F(Acquisition, ThePlanIsPrintedBeforeTheRun) {
  StartSimulator({"--instant"});
  const Outcome outcome =
      Instrument({"scan", "--from", "400", "--to", "500", "--step", "1", "--blank"}, "s.wls");
  EXPECT_TRUE(outcome.Err.starts_with("Plan: blank 101 x 1.7 s = ")) << outcome.Err;
  EXPECT_NE(outcome.Err.find("sample 101 x 0.30 s = "), std::string::npos) << outcome.Err;
  EXPECT_EQ(std::count(outcome.Err.begin(), outcome.Err.end(), '\n'), 1) << "no bar without a terminal";
}

// ---- The files in the documents of their windows ----

TEST_F(Acquisition, EveryFileOpens) {
  StartSimulator({"--instant"});
  ASSERT_EQ(Instrument({"baseline", "--from", "400", "--to", "410"}, "b.bsl").Status, 0);
  ASSERT_EQ(Instrument({"scan", "--from", "400", "--to", "410", "--step", "0.1", "--blank"}, "s.wls").Status,
            0);
  ASSERT_EQ(
      Instrument({"kinetics", "--wavelength", "400", "--interval", "0.1", "--points", "4"}, "k.tis").Status,
      0);
  ASSERT_EQ(Instrument({"multi", "--wavelengths", "400", "--count", "1"}, "m.mul").Status, 0);
  ASSERT_EQ(Instrument({"dna", "--count", "2"}, "d.dna").Status, 0);

  FileFault fault;
  SystemBaseline baseline;
  EXPECT_TRUE(baseline.Load(Path("b.bsl"), fault) && !fault);
  EXPECT_EQ(baseline.Count(), 11);
  SpectrumDocument spectrum(SpectrumDocument::Kind::Measured);
  EXPECT_TRUE(spectrum.OpenFile(Path("s.wls")));
  EXPECT_EQ(spectrum.PointCount(), 101);
  EXPECT_EQ(spectrum.ExpectedPoints(), 101);
  TimeScanDocument reaction;
  EXPECT_TRUE(reaction.OpenFile(Path("k.tis")));
  EXPECT_EQ(reaction.DataCount(), 4);
  EXPECT_GT(reaction.EndSecond(), reaction.StartSecond()) << "there is an axis to see";
  EXPECT_GE(reaction.EndSecond(), reaction.Point(3).Time);
  EXPECT_EQ(Info("m.mul")["records"], 1);
  EXPECT_EQ(Info("d.dna")["records"], 2);
}

}  // namespace
}  // namespace spectrane::testing_processes
