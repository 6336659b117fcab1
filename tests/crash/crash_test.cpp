#include <algorithm>
#include <csignal>

#include <optional>
#include <random>
#include <utility>

#include "base/setting.h"
#include "crash/operatedprogram.h"
#include "faults/bench/exchanged.h"
#include "files/basicfile.h"
#include "modes/timescan/timescansettings.h"

namespace spectrane::testing_processes {
namespace {

/// A program that is killed, and the files that it leaves.
class Crash : public OperatedProgram {
 protected:
  /// A time scan of 100 s, until it has two points.
  void StartATimeScan() {
    Setting(Path("home")).PutSetting(kTimeScanSection, "End Second", "100");
    StartSimulator({"--instant"});
    StartProgram();
    CloseDialog();
    ConnectInstrument();
    Do(kNewKinetics);
    CloseDialog();
    Do(kBlank);
    Do(kStart);
    AwaitRecords(2);
  }
  std::vector<BasicRecord> RowsOf(const std::string& name) {
    BasicOption option;
    std::vector<BasicRecord> rows;
    EXPECT_FALSE(LoadDataFile(BasicModule(), Path(name), option, rows));
    return rows;
  }
  /// Readings of rows that the instrument has answered since the last call, each with its blank. The run of a
  /// row asks for the wavelength before it reads; the blank is read after a rezero.
  std::vector<campaign::Reading> NewReadingsLogged() {
    if (!log_) log_.emplace(QString::fromStdString(Path("log")));
    std::vector<campaign::Reading> readings;
    for (const campaign::LoggedRequest& each : log_->News()) {
      const std::string before = std::exchange(previous_, each.Request);
      const auto energy = campaign::EnergyOf(each);
      if (!energy) continue;
      if (before == "rezero") reference_ = *energy;
      if (before == "getwl") readings.push_back({*energy, reference_});
    }
    return readings;
  }

 private:
  std::optional<campaign::RequestLog> log_;
  std::string previous_;
  std::int32_t reference_ = 0;
};

TEST_F(Crash, D15_KilledAgainAndAgainWhileItMeasuresNoRowIsLost) {
  StartSimulator({"--speed", "20"});
  StartProgram();
  NewReadings();
  Measure();
  Do(kSaveIt);
  SayUntil(QStringLiteral("name ") + QString::fromStdString(Path("first.bas")),
           [](const QString& answer) { return answer == QStringLiteral("done"); });
  SayUntil(QStringLiteral("state"),
           [](const QString& answer) { return answer.section(u'|', 2, 2) == QStringLiteral("0"); });
  const std::string file = Content("first.bas");
  ASSERT_FALSE(file.empty());
  EXPECT_EQ(JournalCount(), 0);
  Measure();
  std::vector<campaign::Reading> measured = NewReadingsLogged();
  ASSERT_EQ(static_cast<int>(measured.size()), Records());

  std::mt19937 random(20261121);
  const auto wait = [&](unsigned most) {
    QThread::msleep(std::uniform_int_distribution<unsigned>(0, most)(random));
  };
  int sure = Records();
  for (int kill = 0; kill < 4; ++kill) {
    SCOPED_TRACE(kill);
    // Somewhere in the next reading, or after it.
    Do(kStart);
    wait(120);
    const int shown = Records();
    wait(30);
    Kill();
    ASSERT_EQ(Content("first.bas"), file);
    const int named = StartWithQuestion(QString::fromStdString(Path("first.bas")));
    EXPECT_GE(named, shown) << "a row that was shown is lost";
    ASSERT_GE(named, sure);
    ASSERT_LE(named, sure + 1);
    const std::vector<campaign::Reading> last = NewReadingsLogged();
    ASSERT_LE(last.size(), 1u);
    if (named > sure) {
      ASSERT_EQ(last.size(), 1u) << "a row that was never answered";
      measured.push_back(last[0]);
    }
    AnswerBox("Yes");
    const QStringList state = State();
    EXPECT_EQ(state.value(0), QStringLiteral("1"));
    EXPECT_EQ(state.value(1), QStringLiteral("first.bas"));
    EXPECT_EQ(state.value(2), QStringLiteral("1")) << "modified";
    EXPECT_EQ(state.value(3).toInt(), named);
    EXPECT_EQ(state.value(4).toStdString(), Path("first.bas"));
    sure = named;
    ConnectInstrument();
    Do(kBlank);
  }
  ASSERT_EQ(Content("first.bas"), file);
  Measure();
  Do(kSaveIt);
  SayUntil(QStringLiteral("state"),
           [](const QString& answer) { return answer.section(u'|', 2, 2) == QStringLiteral("0"); });
  EXPECT_EQ(JournalCount(), 0);
  for (const campaign::Reading& reading : NewReadingsLogged()) measured.push_back(reading);
  const std::vector<BasicRecord> rows = RowsOf("first.bas");
  ASSERT_EQ(rows.size(), static_cast<std::size_t>(sure) + 1);
  EXPECT_TRUE(campaign::Fit(measured, rows.size(), [&](std::size_t i, const campaign::Reading& reading) {
    return rows[i].SampleEnergy == reading.Energy && rows[i].ReferenceEnergy == reading.Reference;
  })) << "rows that were not answered so";
}

TEST_F(Crash, D15_ATimeScanComesBackUpToItsLastSecondAndANoIsForGood) {
  StartATimeScan();
  const int seen = Records();
  Kill();
  const int named = StartWithQuestion(QStringLiteral("Kinetics 1"));
  EXPECT_GE(named, seen);
  EXPECT_LE(named, seen + 2);
  AnswerBox("Yes");
  EXPECT_EQ(Records(), named);
  // Killed with what came back on show.
  Kill();
  EXPECT_EQ(StartWithQuestion(QStringLiteral("Kinetics 1")), named);
  AnswerBox("No");
  EXPECT_EQ(JournalCount(), 0);
  Kill();
  StartProgram();
  CloseDialog();
  EXPECT_EQ(Say(QStringLiteral("box")), QStringLiteral("none"));
  EXPECT_EQ(State().value(0), QStringLiteral("0"));
}

#ifndef _WIN32

TEST_F(Crash, N04_AtTheEndOfTheSessionNothingIsAskedAndNothingLost) {
  StartSimulator({"--instant"});
  for (const int number : {SIGTERM, SIGHUP}) {
    StartProgram();
    const bool first = number == SIGTERM;
    if (first) {
      NewReadings();
      Measure();
      Measure();
    } else {
      // In the middle of its question, behind which nothing looks for the instrument.
      BoxText();
    }
    QFile::remove(QString::fromStdString(Path("home/config.ini")));
    ::kill(static_cast<pid_t>(program_.processId()), number);
    ASSERT_TRUE(program_.waitForFinished(10000));
    EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program_.exitCode(), 0);
    const std::vector<std::string> requests = Requests();
    EXPECT_EQ(requests.back(), "quit") << number;
    EXPECT_EQ(std::ranges::count(requests, "connect"), 1) << number;
    EXPECT_NE(Content("home/config.ini").find("Windows Width"), std::string::npos) << number;
    EXPECT_EQ(JournalCount(), 1) << number;
  }
  EXPECT_EQ(StartWithQuestion(QStringLiteral("Photometry 1")), 2);
  AnswerBox("Yes");
  EXPECT_EQ(Records(), 2);
}

TEST_F(Crash, N04_ARunThatIsUnderWayEndsFirst) {
  StartATimeScan();
  ::kill(static_cast<pid_t>(program_.processId()), SIGTERM);
  ASSERT_TRUE(program_.waitForFinished(10000));
  EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(Requests().back(), "quit");
  EXPECT_GE(StartWithQuestion(QStringLiteral("Kinetics 1")), 1);
}

#endif

}  // namespace
}  // namespace spectrane::testing_processes
