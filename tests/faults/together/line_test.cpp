// Several programs on one line at the same moment, and after one of them was killed.

#include <csignal>
#include <memory>

#include "cli/processes.h"
#include "faults/together/rounds.h"

namespace spectrane::testing_processes {
namespace {

using Texts = std::vector<std::string>;

const char* const kInUse = "in use";

/// What one connection with a probe asks, from its first request to its last.
Texts ProbeRequests() {
  return {"check",  "company",    "connect", "getwl", "getdark",
          "rezero", "getsampler", "startwl", "endwl", "quit"};
}

class OneLine : public SimulatorProcess {
 protected:
  /// The first count of each answer to a sample's readings, in the order of the log.
  Texts LoggedEnergies() const {
    static const std::string reading = "\"ge 10\"\t\"ge 10\\r\\n";
    Texts energies;
    std::istringstream lines(Content("log"));
    for (std::string line; std::getline(lines, line);) {
      const std::size_t at = line.find(reading);
      if (at == std::string::npos) continue;
      const std::size_t from = at + reading.size();
      energies.push_back(line.substr(from, line.find('\\', from) - from));
    }
    return energies;
  }
};

TEST_F(OneLine, S06_ConnectionsOfSeveralProgramsNeverMix) {
  StartSimulator({"--instant"});
  constexpr int kPrograms = 3;
  const int rounds = Rounds(5);
  int won = 0;
  int refused = 0;
  for (int round = 0; round < rounds; ++round) {
    std::vector<std::unique_ptr<QProcess>> programs;
    for (int i = 0; i < kPrograms; ++i) {
      programs.push_back(std::make_unique<QProcess>());
      StartBatch(*programs.back(), {"instrument", "probe"});
    }
    const int before = won;
    for (const auto& program : programs) {
      const Outcome outcome = Finish(*program);
      if (outcome.Status == 0) {
        ++won;
        EXPECT_FALSE(outcome.AsJson()["company"].is_null());
        EXPECT_EQ(outcome.AsJson()["dark"].size(), 8u);
      } else {
        ++refused;
        ExpectRefusal(outcome, kInUse);
      }
    }
    EXPECT_GT(won, before) << "somebody gets the line";
  }
  Texts expected;
  for (int i = 0; i < won; ++i) {
    for (const std::string& request : ProbeRequests()) expected.push_back(request);
  }
  EXPECT_EQ(Requests(), expected) << "one connection after the other, and not a byte of those refused";
  std::cout << "connections: " << won << ", refused: " << refused << '\n';
}

TEST_F(OneLine, S06_ARunLosesNothingWhileOthersTryTheLine) {
  // Without noise all counts of an answer are the same, and each sample has its own.
  StartSimulator({"--instant", "--noise", "0"});
  const int samples = Rounds(9);
  QProcess run;
  StartBatch(run, {"instrument", "measure", "--wavelength", "546", "--count", std::to_string(samples),
                   "--out", Path("rows.bas")});
  run.setReadChannel(QProcess::StandardError);
  QByteArray seen;
  for (int asked = 0; asked <= samples; ++asked) {
    while (seen.count("Please input") <= asked && run.waitForReadyRead(20000))
      seen += run.readAllStandardError();
    ASSERT_EQ(seen.count("Please input"), asked + 1) << seen.toStdString();
    ASSERT_TRUE(Tell(asked == 0 ? "beam blank" : "beam dye-" + std::to_string(asked % 5 + 1)));
    // Somebody tries the line at the moment of the reading.
    QProcess other;
    const bool tries = asked % 2 == 0 && asked < samples;
    if (tries) StartBatch(other, {"instrument", "probe"});
    run.write("\n");
    if (tries) ExpectRefusal(Finish(other), kInUse);
  }
  ASSERT_EQ(Finish(run).Status, 0) << seen.toStdString();
  const Json rows = Batch({"dump", Path("rows.bas")}).AsJson()["data"];
  ASSERT_EQ(rows.size(), static_cast<std::size_t>(samples));
  const Texts energies = LoggedEnergies();
  ASSERT_EQ(energies.size(), rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i)
    EXPECT_EQ(std::to_string(rows[i]["SampleEnergy"].get<int>()), energies[i]) << i;
  EXPECT_NE(energies[0], energies[1]);
  const Texts requests = Requests();
  EXPECT_EQ(std::count(requests.begin(), requests.end(), "check"), 1) << "the others sent nothing";
}

TEST_F(OneLine, S07_TheLineOfAKilledProgramIsFreeAtOnce) {
  StartSimulator({"--instant"});
  for (int round = 0; round < 3; ++round) {
    QProcess holder;
    StartBatch(holder,
               {"instrument", "measure", "--wavelength", "546", "--count", "1", "--out", Path("never.bas")});
    holder.setReadChannel(QProcess::StandardError);
    QByteArray seen;
    while (!seen.contains("Please input") && holder.waitForReadyRead(20000))
      seen += holder.readAllStandardError();
    ExpectRefusal(Batch({"instrument", "probe"}), kInUse);
    ::kill(static_cast<pid_t>(holder.processId()), SIGKILL);
    holder.waitForFinished(5000);
    const Outcome next = Batch({"instrument", "probe"});
    EXPECT_EQ(next.Status, 0) << next.Err;
    EXPECT_FALSE(Exists("never.bas"));
  }
}

}  // namespace
}  // namespace spectrane::testing_processes
