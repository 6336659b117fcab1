// What goes wrong in a measuring run: bad orders, a person who stops it, a line that fails.

#include <csignal>
#include <filesystem>

#include "faultkinds.h"
#include "processes.h"

namespace spectrane::testing_processes {
namespace {

using OrderWords = std::vector<std::string>;

const char* const kLinkWords = "Communication error.Please check instrument link cable.";
const char* const kBaselineWords = "System baseline don't exist.Please create system baseline.";

class AcquisitionTrouble : public SimulatorProcess {
 protected:
  OrderWords Line(OrderWords words, const std::string& out) {
    words.insert(words.begin(), "instrument");
    words.insert(words.end(), {"--out", Path(out), "--yes"});
    return words;
  }
  Outcome Run(const OrderWords& words, const std::string& out) { return Batch(Line(words, out)); }
  Json DumpOf(const std::string& name) { return Batch({"dump", Path(name)}).AsJson(); }
  void Write(const std::string& name, const std::string& text) {
    QFile file(QString::fromStdString(Path(name)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::fromStdString(text));
  }
  /// No move, gain or reading has been asked for.
  void ExpectNothingMoved() {
    for (const std::string& request : Requests()) {
      EXPECT_TRUE(!request.starts_with("swl") && !request.starts_with("ge ") && !request.starts_with("sa ") &&
                  !request.starts_with("setsampler"))
          << request;
    }
  }
  /// How many requests begin so.
  std::ptrdiff_t Asked(const std::string& begin) const {
    const std::vector<std::string> requests = Requests();
    return std::count_if(requests.begin(), requests.end(),
                         [&](const std::string& request) { return request.starts_with(begin); });
  }
  /// Lets a run begin and waits until so many readings were asked for.
  void StartUntil(QProcess& process, const OrderWords& words, int readings) {
    StartBatch(process, words);
    for (int i = 0; i < 2000 && Asked("ge ") < readings; ++i) process.waitForFinished(5);
    ASSERT_GE(Asked("ge "), readings);
  }
};

const OrderWords kScan = {"scan", "--from", "400", "--to", "420", "--step", "1", "--blank"};

// ---- Orders that are refused ----

TEST_F(AcquisitionTrouble, WhatCanBeKnownBeforeIsRefusedBeforeThePortIsOpened) {
  StartSimulator({"--instant"});
  ExpectRefusal(Run({"scan", "--from", "10", "--to", "1100", "--step", "0.1", "--blank"}, "s.wls"),
                "10901 points are more than the 10001");
  ExpectRefusal(Run({"baseline", "--from", "1", "--to", "20000"}, "b.bsl"), "more than the 10001");
  Write("s.wls", "precious");
  ExpectRefusal(Run(kScan, "s.wls"), "s.wls: exists already");
  ExpectRefusal(Run({"multi", "--wavelengths", "400", "--count", "1"}, "s.wls"), "s.wls: exists already");
  ExpectRefusal(Run(kScan, "none/s.wls"), "its folder does not exist");
  Write("s-cell3.wls", "precious");
  OrderWords cells = kScan;
  cells.insert(cells.end(), {"--from-sampler", "2,3"});
  ExpectRefusal(Run(cells, "s.wls"), "s-cell3.wls: exists already");
  EXPECT_EQ(Content("s.wls"), "precious");
  EXPECT_EQ(Content("s-cell3.wls"), "precious");
  EXPECT_TRUE(Requests().empty());
}

TEST_F(AcquisitionTrouble, ABaselineThatDoesNotServe) {
  StartSimulator({"--instant"});
  ASSERT_EQ(Run({"baseline", "--from", "400", "--to", "410"}, "b.bsl").Status, 0);
  const std::size_t before = Requests().size();
  const auto refusal = [this](const char* from, const char* to, const char* step, const std::string& file) {
    const Outcome outcome =
        Run({"scan", "--from", from, "--to", to, "--step", step, "--baseline", Path(file)}, "s.wls");
    ExpectRefusal(outcome, file + ": " + kBaselineWords);
    EXPECT_FALSE(Exists("s.wls"));
    return outcome.Err;
  };
  EXPECT_NE(refusal("400", "411", "1", "b.bsl").find("400 nm to 410 nm"), std::string::npos);
  EXPECT_NE(refusal("399", "410", "1", "b.bsl").find("400 nm to 410 nm"), std::string::npos);
  EXPECT_NE(refusal("400", "410", "0.5", "b.bsl").find("whole nanometres"), std::string::npos);
  refusal("400", "410", "1", "none.bsl");
  Write("text.bsl", "no baseline");
  refusal("400", "410", "1", "text.bsl");
  // A hole: the record at 405 nm loses its gain.
  std::string bytes = Content("b.bsl");
  bytes.replace(132 + 16 * 5 + 8, 4, 4, '\0');
  Write("hole.bsl", bytes);
  EXPECT_NE(refusal("400", "410", "1", "hole.bsl").find("nothing at 405 nm"), std::string::npos);
  Write("short.bsl", Content("b.bsl").substr(0, 132 + 16 * 5 + 3));
  refusal("400", "402", "1", "short.bsl");
  EXPECT_EQ(Requests().size(), before) << "the port was not even opened";
}

TEST_F(AcquisitionTrouble, WhatThisInstrumentCannotDoMovesNothing) {
  StartSimulator({"--instant", "--range", "300-800"});
  const char* const words = "is outside the range of this instrument, 300 nm to 800 nm";
  ExpectRefusal(Run({"scan", "--from", "299.9", "--to", "400", "--step", "0.1", "--blank"}, "x.out"), words);
  ExpectRefusal(Run({"scan", "--from", "400", "--to", "801", "--step", "1", "--blank"}, "x.out"), words);
  ExpectRefusal(Run({"baseline", "--from", "190", "--to", "400"}, "x.out"), words);
  ExpectRefusal(Run({"multi", "--wavelengths", "400,900", "--count", "1"}, "x.out"), words);
  ExpectRefusal(Run({"dna", "--count", "1"}, "x.out"), words);
  ExpectRefusal(Run({"kinetics", "--wavelength", "900", "--interval", "1", "--points", "1"}, "x.out"), words);
  for (OrderWords order :
       std::vector<OrderWords>{kScan,
                               {"multi", "--wavelengths", "400"},
                               {"kinetics", "--wavelength", "400", "--interval", "1", "--points", "1"}}) {
    order.insert(order.end(), {"--from-sampler", "2"});
    ExpectRefusal(Run(order, "x.out"), "Setup Sampler Error. (no automatic sampler is fitted)");
  }
  ExpectNothingMoved();
  EXPECT_EQ(Requests().back(), "quit") << "the port is released";
  EXPECT_FALSE(Exists("x.out"));
}

TEST_F(AcquisitionTrouble, NoInstrument) {
  ExpectRefusal(Run(kScan, "s.wls"), "Communication Port Error");
  EXPECT_FALSE(Exists("s.wls"));
}

// ---- Stopped by a person ----

TEST_F(AcquisitionTrouble, AnInterruptSavesTheSpectrumUpToThere) {
  StartSimulator({"--speed", "20", "--noise", "0"});
  const std::string tungsten = StateOf("tungsten");
  const std::string deuterium = StateOf("deuterium");
  QProcess process;
  StartUntil(process, Line({"scan", "--from", "400", "--to", "600", "--step", "5", "--blank"}, "s.wls"), 5);
  ::kill(static_cast<pid_t>(process.processId()), SIGINT);
  const Outcome outcome = Finish(process);
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_EQ(outcome.Out, "");
  const Json dump = DumpOf("s.wls");
  const auto points = dump["records"].get<int>();
  EXPECT_GE(points, 5);
  EXPECT_LT(points, 41);
  EXPECT_EQ(dump["option"]["PointCount"], points);
  EXPECT_NE(outcome.Err.find("The run was stopped at " + std::to_string(400 + 5 * (points - 1)) +
                             " nm. Saved " + std::to_string(points) + " points in " + Path("s.wls")),
            std::string::npos)
      << outcome.Err;
  EXPECT_EQ(Requests().back(), "quit");
  EXPECT_EQ(StateOf("tungsten"), tungsten);
  EXPECT_EQ(StateOf("deuterium"), deuterium);
  EXPECT_EQ(Batch({"instrument", "probe"}).Status, 0) << "the port is free";
}

TEST_F(AcquisitionTrouble, AnInterruptInTheBlankLeavesNoFile) {
  StartSimulator({"--speed", "20"});
  QProcess process;
  StartBatch(process, Line(kScan, "s.wls"));
  for (int i = 0; i < 2000 && Asked("rezero") < 3; ++i) {
    process.waitForFinished(5);
  }
  ::kill(static_cast<pid_t>(process.processId()), SIGINT);
  const Outcome outcome = Finish(process);
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_NE(outcome.Err.find("The run was stopped at "), std::string::npos) << outcome.Err;
  EXPECT_EQ(outcome.Err.find("Saved"), std::string::npos) << outcome.Err;
  EXPECT_FALSE(Exists("s.wls"));
  EXPECT_EQ(Requests().back(), "quit");
}

TEST_F(AcquisitionTrouble, AnInterruptSavesBaselineAndTimeScanToo) {
  StartSimulator({"--speed", "20"});
  QProcess baseline;
  StartBatch(baseline, Line({"baseline"}, "b.bsl"));
  for (int i = 0; i < 2000 && Requests().size() < 18; ++i) baseline.waitForFinished(5);
  ::kill(static_cast<pid_t>(baseline.processId()), SIGINT);
  EXPECT_EQ(Finish(baseline).Status, 1);
  const Json base = DumpOf("b.bsl");
  const auto records = base["records"].get<int>();
  EXPECT_GE(records, 2);
  EXPECT_EQ(base["option"]["StartWavelength"], 190.0);
  EXPECT_EQ(base["option"]["EndWavelength"], 190.0 + records - 1) << "its count follows from its range";
  QProcess reaction;
  StartUntil(reaction,
             Line({"kinetics", "--wavelength", "400", "--interval", "0.2", "--points", "1000"}, "k.tis"), 4);
  ::kill(static_cast<pid_t>(reaction.processId()), SIGINT);
  const Outcome outcome = Finish(reaction);
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_NE(outcome.Err.find("The run was stopped at 400 nm."), std::string::npos) << outcome.Err;
  const Json points = DumpOf("k.tis");
  EXPECT_GE(points["records"].get<int>(), 2);
  EXPECT_EQ(points["option"]["DataCount"], points["records"]);
}

TEST_F(AcquisitionTrouble, EndOfInputStopsATableAndKeepsItsRows) {
  StartSimulator({"--instant"});
  QProcess process;
  StartBatch(process,
             {"instrument", "multi", "--wavelengths", "400,500", "--count", "5", "--out", Path("m.mul")});
  process.write("\n\n\n");  // the blank and two samples
  const Outcome outcome = Finish(process);
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_NE(outcome.Err.find("Saved 2 rows in " + Path("m.mul")), std::string::npos) << outcome.Err;
  EXPECT_EQ(DumpOf("m.mul")["records"], 2);
}

// ---- A line or a disk that fails ----

TEST_F(AcquisitionTrouble, ADeadLineSaysWhereAndSavesWhatThereIs) {
  StartSimulator({"--instant", "--noise", "0"});
  ASSERT_TRUE(Tell("fault hang-up ge 6"));
  const Outcome outcome = Run(kScan, "s.wls");
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_NE(outcome.Err.find(std::string(kLinkWords) + " (the line went away) At 405 nm. Saved 5 points in " +
                             Path("s.wls")),
            std::string::npos)
      << outcome.Err;
  EXPECT_EQ(DumpOf("s.wls")["records"], 5);
}

TEST_F(AcquisitionTrouble, ADeadLineInEachOfTheOthers) {
  struct Case {
    OrderWords Words;
    const char* Fault;
    const char* Where;
    const char* Saved;
  };
  for (const Case& run :
       std::vector<Case>{{{"baseline"}, "fault hang-up rezero 4", "At 192 nm.", "Saved 2 points"},
                         {{"multi", "--wavelengths", "400,500", "--count", "3"},
                          "fault hang-up ge 4",
                          "At 500 nm.",
                          "Saved 1 row "},
                         {{"dna", "--count", "3"}, "fault hang-up ge 4", "At 260 nm.", "Saved 1 row "},
                         {{"kinetics", "--wavelength", "400", "--interval", "0.1", "--points", "9"},
                          "fault hang-up ge 4",
                          "At 400 nm.",
                          "Saved 2 points"}}) {
    SCOPED_TRACE(run.Words[0]);
    StartSimulator({"--instant", "--noise", "0"});
    ASSERT_TRUE(Tell(run.Fault));
    const Outcome outcome = Run(run.Words, run.Words[0]);
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_NE(outcome.Err.find(run.Where), std::string::npos) << outcome.Err;
    EXPECT_NE(outcome.Err.find(run.Saved), std::string::npos) << outcome.Err;
    EXPECT_TRUE(Exists(run.Words[0]));
    StopSimulator();
  }
}

TEST_F(AcquisitionTrouble, AnUnreadableDarkTableMovesNothing) {
  StartSimulator({"--instant"});
  ASSERT_TRUE(Tell("fault fewer-lines getdark 2"));  // the connection's own is the first
  const Outcome outcome = Run(kScan, "s.wls");
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_NE(outcome.Err.find(kLinkWords), std::string::npos) << outcome.Err;
  ExpectNothingMoved();
  EXPECT_FALSE(Exists("s.wls"));
}

// Each of the eighteen faults in the third point of a scan: it ends there with two true points, or does no
// harm.
class FaultInAPoint : public AcquisitionTrouble, public ::testing::WithParamInterface<std::string> {};

TEST_P(FaultInAPoint, EndsTheScanOrDoesNoHarm) {
  const std::string& name = GetParam();
  StartSimulator({"--instant", "--noise", "0"});
  const OrderWords scan = {"scan", "--from", "400", "--to", "404", "--step", "1", "--blank"};
  // Without noise and without a fault every instrument of this kind measures the same.
  static const Json clean = [&] {
    EXPECT_EQ(Run(scan, "clean.wls").Status, 0);
    return DumpOf("clean.wls")["data"];
  }();
  // A fault that only a time-out ends goes to the command that waits three seconds, not fifteen.
  const bool waits =
      name == "no-reply" || name == "late-reply" || name == "cut" || name == "no-prompt" || name == "flood";
  ASSERT_TRUE(Tell("fault " + name + (waits ? " sa 3" : " ge 3")));
  const Outcome outcome = Run(scan, "s.wls");
  const bool harmless = name == "split" || name == "slow" || name == "more-lines";
  const bool either = name == "twice";
  const Json dump = DumpOf("s.wls");
  ASSERT_TRUE(dump.contains("data")) << outcome.Err;
  EXPECT_TRUE(!harmless || outcome.Status == 0) << outcome.Err;
  if (!harmless && !either) {
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_NE(outcome.Err.find(kLinkWords), std::string::npos) << outcome.Err;
    EXPECT_NE(outcome.Err.find("At 402 nm. Saved 2 points"), std::string::npos) << outcome.Err;
  }
  const std::size_t points = dump["data"].size();
  EXPECT_EQ(dump["option"]["PointCount"], points);
  EXPECT_EQ(points, outcome.Status == 0 ? 5u : either ? points : 2u);
  for (std::size_t i = 0; i < points; ++i) EXPECT_EQ(dump["data"][i], clean[i]);
}

INSTANTIATE_TEST_SUITE_P(Kinds, FaultInAPoint, ::testing::ValuesIn(FaultKindNames()), FaultKindTestName);

TEST_F(AcquisitionTrouble, ADiskThatIsFullAtTheEndLosesNothing) {
  StartSimulator({"--speed", "20", "--noise", "0"});
  const std::string folder = Path("gone");
  std::filesystem::create_directory(folder);
  std::filesystem::create_directory(Path("temporary"));
  qputenv("TMPDIR", QByteArray::fromStdString(Path("temporary")));
  QProcess process;
  StartUntil(process, Line({"scan", "--from", "400", "--to", "430", "--step", "5", "--blank"}, "gone/s.wls"),
             2);
  qunsetenv("TMPDIR");
  std::filesystem::remove(folder);
  const Outcome outcome = Finish(process);
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_NE(outcome.Err.find("Save File Error!"), std::string::npos) << outcome.Err;
  EXPECT_NE(outcome.Err.find("Saved 7 points in " + Path("temporary/s.wls")), std::string::npos)
      << outcome.Err;
  EXPECT_EQ(DumpOf("temporary/s.wls")["records"], 7);
}

}  // namespace
}  // namespace spectrane::testing_processes
