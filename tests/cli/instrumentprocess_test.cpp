// The batch command's instrument commands against the simulated instrument, each as a program of its own over
// a pseudo-terminal.

#include <csignal>

#include "faultkinds.h"
#include "processes.h"

namespace spectrane::testing_processes {
namespace {

using RequestList = std::vector<std::string>;

const char* const kPortError = "Communication Port Error,please check port setup and link cable.";
const char* const kCannotConnect = "Can't connect to instrument,please check instrument status.";
const char* const kCommunicationError = "Communication error.Please check instrument link cable.";

class InstrumentProcess : public SimulatorProcess {
 protected:
  Outcome Measure(int count, std::vector<std::string> more = {"--yes"}) {
    std::vector<std::string> words = {"instrument",          "measure", "--wavelength",  "546.0", "--count",
                                      std::to_string(count), "--out",   Path("rows.bas")};
    words.insert(words.end(), more.begin(), more.end());
    return Batch(words);
  }
};

TEST_F(InstrumentProcess, ProbeTellsWhatTheConnectionLearned) {
  StartSimulator({"--instant", "--range", "195-1020"});
  const Outcome outcome = Batch({"instrument", "probe"});
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  const Json json = outcome.AsJson();
  EXPECT_EQ(json["port"], 1);
  EXPECT_EQ(json["company"], "Simulated instrument");
  EXPECT_EQ(json["wavelength"], 546.0);
  EXPECT_EQ(json["start"], 195.0);
  EXPECT_EQ(json["end"], 1020.0);
  EXPECT_EQ(json["sampler"], 0);
  EXPECT_EQ(json["dark"].size(), 8u);
  EXPECT_GT(json["full_energy"].get<int>(), 40000);
  EXPECT_GE(json["gain"].get<int>(), 1);
  EXPECT_EQ(Requests(), (RequestList{"check", "company", "connect", "getwl", "getdark", "rezero",
                                     "getsampler", "startwl", "endwl", "quit"}));
  EXPECT_NE(Content("config.ini").find("Port ID=1"), std::string::npos);
}

TEST_F(InstrumentProcess, NoPortAtAll) {
  Ports = ":";
  ExpectRefusal(Batch({"instrument", "probe"}), kPortError);
  ExpectRefusal(Batch({"instrument", "send", "getwl"}), kPortError);
  ExpectRefusal(Measure(1), kPortError);
  EXPECT_FALSE(Exists("rows.bas"));
}

TEST_F(InstrumentProcess, CausesAreToldApart) {
  StartSimulator({"--instant"});
  const std::string line = Ports;
  Ports = "/dev/no-such-port:" + Path("missing");
  const Outcome missing = Batch({"instrument", "probe"});
  ExpectRefusal(missing, "/dev/no-such-port");
  EXPECT_NE(missing.Err.find("no such port"), std::string::npos);

  ASSERT_TRUE(Tell("fault no-reply check"));
  Ports = line;
  const Outcome silent = Batch({"instrument", "probe"});
  ExpectRefusal(silent, "no answer of an instrument");

  QProcess holder;
  StartBatch(holder,
             {"instrument", "measure", "--wavelength", "546", "--count", "1", "--out", Path("held.bas")});
  ASSERT_TRUE(holder.waitForReadyRead(10000) || !holder.readAllStandardError().isEmpty());
  const Outcome busy = Batch({"instrument", "probe"});
  ExpectRefusal(busy, "in use");
  holder.closeWriteChannel();
  EXPECT_TRUE(holder.waitForFinished(10000));
}

TEST_F(InstrumentProcess, SearchPassesOverMissingPorts) {
  StartSimulator({"--instant"});
  Ports = "::" + Ports;
  const Outcome outcome = Batch({"instrument", "probe"});
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  EXPECT_EQ(outcome.AsJson()["port"], 3);
}

TEST_F(InstrumentProcess, SendMakesOneExchange) {
  StartSimulator({"--instant", "--noise", "0"});
  const Outcome wavelength = Batch({"instrument", "send", "getwl"});
  ASSERT_EQ(wavelength.Status, 0) << wavelength.Err;
  EXPECT_EQ(wavelength.AsJson(), Json::parse(R"({"ok":true,"lines":["546.0"]})"));
  EXPECT_EQ(Batch({"instrument", "send", "ge 3"}).AsJson()["lines"].size(), 3u);
  EXPECT_EQ(Batch({"instrument", "send", "nonsense"}).AsJson()["lines"],
            Json::parse(R"(["Invalid Command."])"));
  EXPECT_EQ(Requests(), (RequestList{"check", "getwl", "check", "ge 3", "check", "nonsense"}));
}

TEST_F(InstrumentProcess, SendThatFailsSaysWhy) {
  StartSimulator({"--instant"});
  ASSERT_TRUE(Tell("fault no-reply getwl"));
  const Outcome silent = Batch({"instrument", "send", "getwl", "--timeout", "1"});
  ExpectRefusal(silent, kCommunicationError);
  EXPECT_NE(silent.Err.find("no whole answer came in time"), std::string::npos) << silent.Err;
  ASSERT_TRUE(Tell("fault wrong-echo getwl"));
  ExpectRefusal(Batch({"instrument", "send", "getwl"}), "does not begin with the command");
}

TEST_F(InstrumentProcess, ConnectRefused) {
  StartSimulator({"--instant"});
  ASSERT_TRUE(Tell("busy on"));
  ExpectRefusal(Batch({"instrument", "probe"}), kCannotConnect);
  EXPECT_EQ(Requests(), (RequestList{"check", "company", "connect"})) << "no quit after a refused connect";
}

TEST_F(InstrumentProcess, QueriesThatFailAfterConnectAreNull) {
  StartSimulator({"--instant"});
  ASSERT_TRUE(Tell("fault wrong-echo getdark"));
  const Outcome dark = Batch({"instrument", "probe"});
  ASSERT_EQ(dark.Status, 0) << dark.Err;
  EXPECT_TRUE(dark.AsJson()["dark"].is_null());
  EXPECT_TRUE(dark.AsJson()["full_energy"].is_number());
  ASSERT_TRUE(Tell("fault wrong-echo rezero"));
  ASSERT_TRUE(Tell("fault wrong-echo startwl"));
  const Json json = Batch({"instrument", "probe"}).AsJson();
  EXPECT_TRUE(json["full_energy"].is_null());
  EXPECT_TRUE(json["gain"].is_null());
  EXPECT_EQ(json["start"], 190.0);
}

TEST_F(InstrumentProcess, MeasuresADyeSeriesByHand) {
  StartSimulator({"--instant", "--noise", "0"});
  QProcess process;
  StartBatch(process,
             {"instrument", "measure", "--wavelength", "546", "--count", "2", "--out", Path("rows.bas")});
  const auto waitFor = [&process](const char* words) {
    QByteArray seen;
    process.setReadChannel(QProcess::StandardError);
    while (!seen.contains(words) && process.waitForReadyRead(10000)) seen += process.readAllStandardError();
    return seen.contains(words);
  };
  ASSERT_TRUE(waitFor("Please input blank sample and set 0.000ABS/100%T."));
  ASSERT_TRUE(Tell("beam blank"));
  process.write("\n");
  for (const char* sample : {"dye-2", "dye-4"}) {
    ASSERT_TRUE(waitFor("Please input test sample."));
    ASSERT_TRUE(Tell(std::string("beam ") + sample));
    process.write("\n");
  }
  const Outcome outcome = Finish(process);
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  const Json rows = outcome.AsJson()["data"];
  ASSERT_EQ(rows.size(), 2u);
  const double first = rows[0]["Abs"].get<double>();
  const double second = rows[1]["Abs"].get<double>();
  EXPECT_GT(first, 0.01);
  EXPECT_GT(second, first);
  const Json dump = Batch({"dump", Path("rows.bas")}).AsJson();
  EXPECT_EQ(dump["records"], 2);
  EXPECT_EQ(dump["data"][1]["SampleEnergy"], rows[1]["SampleEnergy"]);
}

TEST_F(InstrumentProcess, MeasuresEachCellOfTheSampler) {
  StartSimulator({"--instant", "--sampler", "--cell", "3=dye-3"});
  const Outcome outcome = Measure(1);
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  const Json rows = outcome.AsJson()["data"];
  ASSERT_EQ(rows.size(), 8u);
  EXPECT_EQ(rows[2]["Note"], "Sampler Position 3");
  EXPECT_GT(rows[2]["Abs"].get<double>(), 0.05);
}

TEST_F(InstrumentProcess, ASamplerWithoutAPositionInUseSaysSo) {
  StartSimulator({"--instant", "--sampler"});
  QFile settings(QString::fromStdString(Path("config.ini")));
  ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
  settings.write("[Automatic Sampler]\n");
  for (int i = 1; i <= 8; ++i) settings.write(QByteArray::number(i) + "# Position=False\n");
  settings.close();
  ExpectRefusal(Measure(1), "No position of the sampler is in use.");
  EXPECT_FALSE(Exists("rows.bas"));
}

TEST_F(InstrumentProcess, AFileThatAppearsDuringTheRunStays) {
  StartSimulator({"--instant"});
  QProcess process;
  StartBatch(process,
             {"instrument", "measure", "--wavelength", "546", "--count", "1", "--out", Path("rows.bas")});
  process.setReadChannel(QProcess::StandardError);
  ASSERT_TRUE(process.waitForReadyRead(10000));
  QFile file(QString::fromStdString(Path("rows.bas")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("precious");
  file.close();
  process.write("\n\n");
  const Outcome outcome = Finish(process);
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_EQ(Content("rows.bas"), "precious");
  EXPECT_NE(outcome.Err.find("rows-2.bas"), std::string::npos) << outcome.Err;
  EXPECT_EQ(Batch({"info", Path("rows-2.bas")}).AsJson()["records"], 1);
}

TEST_F(InstrumentProcess, AnExistingFileIsRefusedBeforeTheInstrumentSeesAByte) {
  StartSimulator({"--instant"});
  QFile file(QString::fromStdString(Path("rows.bas")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("precious");
  file.close();
  ExpectRefusal(Measure(1), "rows.bas");
  EXPECT_EQ(Content("rows.bas"), "precious");
  EXPECT_TRUE(Requests().empty());
  EXPECT_EQ(Measure(1, {"--yes", "--force"}).Status, 0);
  EXPECT_EQ(Batch({"info", Path("rows.bas")}).AsJson()["records"], 1);
}

TEST_F(InstrumentProcess, AFailedBlankLeavesNoFile) {
  StartSimulator({"--instant"});
  ASSERT_TRUE(Tell("fault fewer-lines ge"));
  ExpectRefusal(Measure(2), kCommunicationError);
  EXPECT_FALSE(Exists("rows.bas"));
}

TEST_F(InstrumentProcess, ADarkTableThatTheConnectionDidNotGetIsAskedForOnceMore) {
  StartSimulator({"--instant"});
  ASSERT_EQ(Measure(1).Status, 0);
  const RequestList usual = Requests();
  EXPECT_EQ(std::count(usual.begin(), usual.end(), "getdark"), 1) << "a whole one is not asked for again";
  const Json expected = Batch({"dump", Path("rows.bas")}).AsJson()["data"][0]["DarkEnergy"];
  EXPECT_GT(expected.get<int>(), 0);
  ASSERT_TRUE(Tell("fault wrong-echo getdark"));
  const Outcome outcome = Measure(1, {"--yes", "--force"});
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  EXPECT_EQ(outcome.AsJson()["data"][0]["DarkEnergy"], expected);
}

TEST_F(InstrumentProcess, AnUnreadableDarkTableEndsTheRunBeforeItsBlank) {
  StartSimulator({"--instant"});
  ASSERT_TRUE(Tell("fault fewer-lines getdark"));
  ASSERT_TRUE(Tell("fault wrong-echo getdark 2"));
  ExpectRefusal(Measure(1), kCommunicationError);
  EXPECT_FALSE(Exists("rows.bas"));
  EXPECT_EQ(Requests(), (RequestList{"check", "company", "connect", "getwl", "getdark", "rezero",
                                     "getsampler", "startwl", "endwl", "getdark", "quit"}));
}

TEST_F(InstrumentProcess, AFailureInTheRunSavesTheRowsBeforeIt) {
  StartSimulator({"--instant"});
  ASSERT_TRUE(Tell("fault wrong-echo ge 4"));  // the blank's reading is the first
  const Outcome outcome = Measure(5);
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_NE(outcome.Err.find(kCommunicationError), std::string::npos) << outcome.Err;
  EXPECT_NE(outcome.Err.find("2 rows"), std::string::npos) << outcome.Err;
  EXPECT_EQ(Batch({"info", Path("rows.bas")}).AsJson()["records"], 2);
}

TEST_F(InstrumentProcess, EndOfInputStopsTheRunAndKeepsTheRows) {
  StartSimulator({"--instant"});
  QProcess process;
  StartBatch(process,
             {"instrument", "measure", "--wavelength", "546", "--count", "3", "--out", Path("rows.bas")});
  process.write("\n\n");
  const Outcome outcome = Finish(process);
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_NE(outcome.Err.find("1 row"), std::string::npos) << outcome.Err;
  EXPECT_EQ(Batch({"info", Path("rows.bas")}).AsJson()["records"], 1);
  EXPECT_EQ(Requests().back(), "quit");
}

TEST_F(InstrumentProcess, AnInterruptStopsTheRunAndKeepsTheRows) {
  StartSimulator({"--instant"});
  QProcess process;
  StartBatch(process,
             {"instrument", "measure", "--wavelength", "546", "--count", "3", "--out", Path("rows.bas")});
  process.write("\n\n");
  process.setReadChannel(QProcess::StandardError);
  QByteArray seen;
  while (seen.count("Please input test sample.") < 2 && process.waitForReadyRead(10000)) {
    seen += process.readAllStandardError();
  }
  ::kill(static_cast<pid_t>(process.processId()), SIGINT);
  ASSERT_TRUE(process.waitForFinished(10000));
  EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process.exitCode(), 1);
  EXPECT_EQ(Batch({"info", Path("rows.bas")}).AsJson()["records"], 1);
}

// The line as a whole, over the pseudo-terminal: one fault of each way in which a reading can go wrong. All
// of them in a point of a scan are FaultInAPoint's.
class FaultInAReading : public InstrumentProcess, public ::testing::WithParamInterface<std::string> {};

TEST_P(FaultInAReading, EndsTheRunOrDoesNoHarm) {
  const std::string& name = GetParam();
  StartSimulator({"--instant", "--noise", "0", "--beam", "blank"});
  // A fault that only a time-out ends goes to the link test before the reading: that waits three seconds.
  const bool waits = name == "cut";
  ASSERT_TRUE(Tell("fault " + name + (waits ? " getwl 3" : " ge 2")));
  const Outcome outcome = Measure(2);
  const bool harmless = name == "split";
  // The second answer may spoil the next command or arrive before it.
  const bool either = name == "twice";
  if (harmless || (either && outcome.Status == 0)) {
    EXPECT_EQ(outcome.Status, 0) << outcome.Err;
    const Json dump = Batch({"dump", Path("rows.bas")}).AsJson();
    ASSERT_EQ(dump["records"], 2);
    for (const Json& row : dump["data"]) {
      EXPECT_EQ(row["SampleEnergy"], row["ReferenceEnergy"]) << "the blank itself, without noise";
    }
  } else {
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_NE(outcome.Err.find(kCommunicationError), std::string::npos) << outcome.Err;
    EXPECT_EQ(Exists("rows.bas"), either) << "the fault strikes before the first row";
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FaultInAReading,
                         ::testing::Values("split", "twice", "bad-number", "prompt-inside", "cut", "hang-up"),
                         FaultKindTestName);

}  // namespace
}  // namespace spectrane::testing_processes
