#include "faults/bench/soak.h"

#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QTableView>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <random>

#include "app/ground/commands.h"
#include "files/basicfile.h"
#include "files/tsfile.h"
#include "files/wlsfile.h"
#include "modes/quantitation/quantitationsettings.h"
#include "modes/timescan/timescansettings.h"
#include "modes/windows/frmbasic.h"
#include "modes/windows/frmqua.h"
#include "modes/windows/frmts.h"

namespace spectrane::campaign {
namespace {

constexpr int kRows = 700;
/// Between two rows; the live reading goes on meanwhile.
constexpr int kRowPauseMs = 8;
constexpr long kMostGrowthKb = 2048;

/// [KB]
long MemoryKb() {
  std::ifstream statm("/proc/self/statm");
  long pages = 0;
  statm >> pages >> pages;
  return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

int Handles() {
  // One of them is the folder that is being read.
  return static_cast<int>(QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::Files).size());
}

class Day {
 public:
  Day(Operator& person, std::uint64_t seed) : operator_(person), random_(seed) {}

  bool Pass() {
    Connect();
    Photometry();
    Kinetics();
    Quantitation();
    OtherProgram();
    Reopen();
    return problems_ == 0;
  }
  int Problems() const { return problems_; }

 private:
  void Expect(bool holds, const char* what) {
    if (holds) return;
    ++problems_;
    std::printf("PROBLEM: %s\n", what);
    for (const QString& words : operator_.Hands().Told)
      std::printf("  told: %s\n", words.toUtf8().constData());
    std::fflush(stdout);
  }
  /// What the instrument answered to the readings of the command that has just ended.
  void Note(std::vector<std::int32_t>& energies) {
    operator_.TakeWire();
    for (const LoggedRequest& request : operator_.News()) {
      if (const auto energy = EnergyOf(request)) energies.push_back(*energy);
    }
  }
  void Beam(const char* sample) { Tell(std::string("beam ") + sample); }
  void Tell(const std::string& words) {
    Expect(operator_.Simulator().Tell(words), "the simulator does not listen");
  }
  void Connect() {
    operator_.Choose(kConnect);
    Expect(operator_.Connected(), "no connection");
    operator_.Pause(300);
  }

  void Photometry() {
    static constexpr const char* kSamples[] = {"dye-1", "dye-3", "dye-5", "filter-1.0", "dye-8"};
    operator_.Choose(kNewBasic);
    Beam("blank");
    operator_.Choose(kSetBlank);
    auto& window = operator_.Child<FrmBasic>();
    Expect(window.Test().BlankHolds(), "no blank");
    operator_.News();
    std::vector<std::int32_t> energies;
    for (int row = 0; row < kRows; ++row) {
      if (row % 100 == 0) Beam(kSamples[random_() % std::size(kSamples)]);
      operator_.News();
      operator_.Choose(kStartTest);
      Note(energies);
      operator_.Pause(kRowPauseMs);
    }
    const QString path = operator_.PathOf("rows.bas");
    Expect(operator_.SaveAs(path), "rows not saved");
    operator_.CloseAll();
    std::vector<std::int32_t> stored;
    int number = 0;
    BasicOption option;
    Expect(OpenBasicFile(path.toStdString(), number, option), "the rows do not open");
    for (std::int32_t i = 0; i < option.RecordCount; ++i) {
      BasicRecord record;
      if (ReadBasicRecord(number, record, i)) stored.push_back(record.SampleEnergy);
    }
    CloseBasicFile(number);
    Expect(stored.size() == kRows && stored == energies, "rows that were not measured so");
  }

  void Kinetics() {
    operator_.Choose(kNewTS);
    Beam("blank");
    operator_.Choose(kSetBlank);
    Beam("enzyme");
    const QString path = operator_.PathOf("reaction.tis");
    operator_.Hands().File = path;
    operator_.News();
    std::vector<std::int32_t> energies;
    // Saves at the end, by the question.
    operator_.Choose(kStartTest);
    Note(energies);
    operator_.CloseAll();
    std::vector<std::int32_t> stored;
    int number = 0;
    TSOption option;
    Expect(OpenTSFile(path.toStdString(), number, option), "the reaction does not open");
    for (std::int32_t i = 0; i < option.DataCount; ++i) {
      TSRecord record;
      if (ReadTSRecord(number, record, i)) stored.push_back(record.Energy);
    }
    CloseTSFile(number);
    Expect(!stored.empty() && stored == energies, "points that were not measured so");
  }

  void Quantitation() {
    static constexpr const char* kSolutions[] = {"dye-1", "dye-5", "dye-8"};
    operator_.Choose(kNewQua);
    auto& window = operator_.Child<FrmQua>();
    Beam("blank");
    operator_.Choose(kSetBlank);
    auto* const standards = window.findChild<QTableView*>(QStringLiteral("QuaConfigGrid"));
    for (int row = 0; row < 3; ++row) {
      standards->model()->setData(standards->model()->index(row, 3), QString::number(row * 8 + 1));
      Beam(kSolutions[row]);
      window.MeasureStandard(row);
    }
    Expect(window.Document().Option().CurveValid, "no curve");
    for (int row = 0; row < 20; ++row) {
      operator_.Choose(kStartTest);
      operator_.Pause(kRowPauseMs);
    }
    Expect(window.Document().RecordCount() == 20, "samples missing");
    Expect(operator_.SaveAs(operator_.PathOf("series.qua")), "the series was not saved");
    operator_.CloseAll();
  }

  /// The batch command takes the line over and gives it back.
  void OtherProgram() {
    operator_.Choose(kRelease);
    Expect(!operator_.Connected(), "not released");
    Beam("holmium");
    const QString spectrum = operator_.PathOf("spectrum.wls");
    const QString table = operator_.PathOf("table.mul");
    operator_.News();
    Expect(operator_.Batch({QStringLiteral("instrument"), QStringLiteral("scan"), QStringLiteral("--from"),
                            QStringLiteral("440"), QStringLiteral("--to"), QStringLiteral("470"),
                            QStringLiteral("--step"), QStringLiteral("1"), QStringLiteral("--blank"),
                            QStringLiteral("--yes"), QStringLiteral("--force"), QStringLiteral("--out"),
                            spectrum}) == 0,
           "no scan");
    std::vector<std::int32_t> energies;
    Note(energies);
    std::vector<std::int32_t> stored;
    int number = 0;
    WLSOption option;
    Expect(OpenWLSFile(spectrum.toStdString(), number, option), "the spectrum does not open");
    for (std::int32_t i = 0; i < 31; ++i) {
      WLSRecord record;
      if (ReadWLSRecord(number, record, i)) stored.push_back(record.SampleEnergy);
    }
    CloseWLSFile(number);
    // One that the connection may have taken by itself comes before them.
    Expect(stored.size() == 31 && energies.size() >= 31 &&
               std::equal(stored.rbegin(), stored.rend(), energies.rbegin()),
           "points of the spectrum that were not measured so");
    Expect(operator_.Batch({QStringLiteral("instrument"), QStringLiteral("multi"),
                            QStringLiteral("--wavelengths"), QStringLiteral("440,450,460"),
                            QStringLiteral("--count"), QStringLiteral("5"), QStringLiteral("--yes"),
                            QStringLiteral("--force"), QStringLiteral("--out"), table}) == 0,
           "no table");
  }

  void Reopen() {
    for (const char* name : {"rows.bas", "reaction.tis", "series.qua", "spectrum.wls", "table.mul"}) {
      operator_.Hands().File = operator_.PathOf(name);
      operator_.Choose(kOpen);
      Expect(operator_.Frame().ActiveForm() &&
                 operator_.Frame().ActiveForm()->OpenFileName() == operator_.PathOf(name),
             name);
      operator_.Pause(20);
    }
    operator_.CloseAll();
    Expect(operator_.Hands().Told.size() <= 2, "boxes nobody waits for");
    operator_.Hands().Told.clear();
    operator_.Hands().Asked.clear();
    operator_.Pause(50);
  }

  Operator& operator_;
  std::mt19937_64 random_;
  int problems_ = 0;
};

struct Mark {
  double Minutes = 0;
  long Kb = 0;
  int Handles = 0;
};

}  // namespace

bool Soak(const Place& place, double minutes, std::uint64_t seed) {
  Operator person(place);
  if (!person.StartSimulator({"--instant", "--seed", std::to_string(seed)})) return false;
  person.StartProgram();
  Setting& settings = person.Frame().Settings();
  settings.PutSetting(kTimeScanSection, "End Second", "1");
  settings.PutSetting(kQuantitationSection, "Sample Number", "3");
  settings.PutSetting(kQuantitationSection, "Fitting Line", "1");
  person.Pause(3000);
  Day day(person, seed);
  QElapsedTimer clock;
  clock.start();
  const auto now = [&] { return static_cast<double>(clock.elapsed()) / 60000.0; };
  std::vector<Mark> marks;
  double nextLine = 0;
  while (now() < minutes) {
    day.Pass();
    marks.push_back({now(), MemoryKb(), Handles()});
    if (marks.back().Minutes < nextLine) continue;
    nextLine = marks.back().Minutes + 1;
    std::printf("%6.1f min  %6ld KB  %3d handles  %8lld exchanges  %zu days  %d problems\n",
                marks.back().Minutes, marks.back().Kb, marks.back().Handles,
                static_cast<long long>(person.Exchanges()), marks.size(), day.Problems());
    std::fflush(stdout);
  }
  const auto settled = std::find_if(marks.begin(), marks.end() - 1,
                                    [&](const Mark& mark) { return mark.Minutes >= minutes / 10; });
  const auto [least, most] = std::minmax_element(
      settled, marks.end(), [](const Mark& a, const Mark& b) { return a.Handles < b.Handles; });
  const long growth = marks.back().Kb - settled->Kb;
  const bool held = growth < kMostGrowthKb && least->Handles == most->Handles && day.Problems() == 0;
  std::printf(
      "soak: %.1f min, %lld exchanges, %zu days, growth after the first tenth %ld KB (from %ld KB at %.1f "
      "min), handles %d to %d, %d problems: %s\n",
      now(), static_cast<long long>(person.Exchanges()), marks.size(), growth, settled->Kb, settled->Minutes,
      least->Handles, most->Handles, day.Problems(), held ? "held" : "FAILED");
  return held;
}

}  // namespace spectrane::campaign
