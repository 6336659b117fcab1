#include "faults/bench/soak.h"

#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTableView>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <random>

#include "app/ground/commands.h"
#include "faults/bench/exchanged.h"
#include "files/basicfile.h"
#include "files/multifile.h"
#include "files/quafile.h"
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
constexpr int kSamplesOfSeries = 20;
/// Gains that the simulated instrument has dark energies for.
constexpr std::size_t kGains = 8;
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
  /// What the instrument was asked since the last call. Its blanks and dark energies hold from then on.
  std::vector<LoggedRequest> News() {
    operator_.TakeWire();
    std::vector<LoggedRequest> news = operator_.News();
    for (const LoggedRequest& each : news) {
      if (each.Request == "getdark") darks_ = NumbersOf(each.Request, each.Answer, kGains).value_or(darks_);
      if (each.Request != "rezero") continue;
      const auto said = NumbersOf(each.Request, each.Answer, 2);
      const auto gain = said ? static_cast<std::size_t>(said->at(1)) : 0;
      if (gain >= 1 && gain <= darks_.size()) blanks_.push_back({0, said->at(0), darks_[gain - 1]});
    }
    return news;
  }
  /// What the instrument answered to the readings of the command that has just ended.
  void Note(std::vector<std::int32_t>& energies) {
    for (const LoggedRequest& request : News()) {
      if (const auto energy = EnergyOf(request)) energies.push_back(*energy);
    }
  }
  /// The last readings of a command, `most` of them; fewer where there were not so many.
  std::vector<std::int32_t> LastEnergies(std::size_t most) {
    std::vector<std::int32_t> energies;
    Note(energies);
    if (energies.size() > most)
      energies.erase(energies.begin(), energies.end() - static_cast<std::ptrdiff_t>(most));
    return energies;
  }
  void Beam(const char* sample) { Tell(std::string("beam ") + sample); }
  void Tell(const std::string& words) {
    Expect(operator_.Simulator().Tell(words), "the simulator does not listen");
  }
  void Connect() {
    blanks_.clear();
    operator_.Choose(kConnect);
    Expect(operator_.Connected(), "no connection");
    operator_.Pause(300);
    News();
    Expect(darks_.size() == kGains, "no dark energies");
  }

  void Photometry() {
    static constexpr const char* kSamples[] = {"dye-1", "dye-3", "dye-5", "filter-1.0", "dye-8"};
    operator_.Choose(kNewBasic);
    Beam("blank");
    operator_.Choose(kSetBlank);
    auto& window = operator_.Child<FrmBasic>();
    Expect(window.Test().BlankHolds(), "no blank");
    News();
    std::vector<std::int32_t> energies;
    for (int row = 0; row < kRows; ++row) {
      if (row % 100 == 0) Beam(kSamples[random_() % std::size(kSamples)]);
      News();
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
    News();
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
    News();
    Expect(!blanks_.empty(), "no blank of the quantitation");
    if (blanks_.empty()) return;
    const Reading blank = blanks_.back();
    const auto read = [&](std::vector<Reading>& readings) {
      for (const std::int32_t energy : LastEnergies(1))
        readings.push_back({energy, blank.Reference, blank.Dark});
    };
    auto* const standards = window.findChild<QTableView*>(QStringLiteral("QuaConfigGrid"));
    std::vector<Reading> ofStandards;
    for (int row = 0; row < 3; ++row) {
      standards->model()->setData(standards->model()->index(row, 3), QString::number(row * 8 + 1));
      Beam(kSolutions[row]);
      News();
      window.MeasureStandard(row);
      read(ofStandards);
    }
    Expect(window.Document().Option().CurveValid, "no curve");
    std::vector<Reading> ofSamples;
    for (int row = 0; row < kSamplesOfSeries; ++row) {
      Beam(kSolutions[random_() % std::size(kSolutions)]);
      News();
      operator_.Choose(kStartTest);
      read(ofSamples);
      operator_.Pause(kRowPauseMs);
    }
    Expect(operator_.SaveAs(operator_.PathOf("series.qua")), "the series was not saved");
    operator_.CloseAll();
    QuaOption option;
    std::vector<QuaRecord> stored;
    Expect(!LoadDataFile(QuaModule(), operator_.PathOf("series.qua").toStdString(), option, stored),
           "the series does not open");
    Expect(
        ofStandards.size() == 3 && ofSamples.size() == kSamplesOfSeries && stored.size() == kSamplesOfSeries,
        "standards or samples missing");
    for (std::size_t i = 0; i < ofStandards.size(); ++i)
      Expect(IsAbsorbanceOf(option.StandardAbs[i][0], ofStandards[i]), "a standard that was not measured so");
    for (std::size_t i = 0; i < std::min(stored.size(), ofSamples.size()); ++i)
      Expect(IsAbsorbanceOf(stored[i].Abs[0], ofSamples[i]), "a sample that was not measured so");
  }

  /// The batch command takes the line over and gives it back.
  void OtherProgram() {
    operator_.Choose(kRelease);
    Expect(!operator_.Connected(), "not released");
    Beam("holmium");
    const QString spectrum = operator_.PathOf("spectrum.wls");
    const QString table = operator_.PathOf("table.mul");
    News();
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
    CheckTable(table);
  }

  /// Blanks first, then sample for sample; what the connection may have taken by itself comes before them.
  void CheckTable(const QString& path) {
    constexpr std::size_t kWavelengths = 3;
    constexpr std::size_t kRowsOfTable = 5;
    const std::vector<std::int32_t> energies = LastEnergies(kWavelengths * kRowsOfTable);
    MultiOption option;
    std::vector<MultiRecord> stored;
    Expect(!LoadDataFile(MultiModule(), path.toStdString(), option, stored), "the table does not open");
    const bool whole = energies.size() == kWavelengths * kRowsOfTable && blanks_.size() >= kWavelengths &&
                       stored.size() == kRowsOfTable;
    Expect(whole, "rows of the table missing");
    for (std::size_t i = 0; whole && i < energies.size(); ++i) {
      const std::size_t wavelength = i % kWavelengths;
      Reading reading = blanks_[blanks_.size() - kWavelengths + wavelength];
      reading.Energy = energies[i];
      Expect(IsAbsorbanceOf(stored[i / kWavelengths].Abs[wavelength], reading),
             "a row of the table that was not measured so");
    }
  }

  /// Opens a file, stores what is shown of it as another one, and holds both side by side.
  template <typename OptionT, typename RecordT>
  void OpenAgain(const FileModule<OptionT, RecordT>& module, const char* name) {
    const QString path = operator_.PathOf(name);
    operator_.Hands().File = path;
    operator_.Choose(kOpen);
    Expect(operator_.Frame().ActiveForm() && operator_.Frame().ActiveForm()->OpenFileName() == path, name);
    operator_.Pause(20);
    const QString copy = operator_.PathOf((std::string("copy-of-") + name).c_str());
    Expect(operator_.SaveAs(copy), "what was opened again is not saved");
    OptionT option;
    std::vector<RecordT> before;
    std::vector<RecordT> after;
    Expect(!LoadDataFile(module, path.toStdString(), option, before) &&
               !LoadDataFile(module, copy.toStdString(), option, after),
           "the copy does not open");
    Expect(!before.empty() && before == after, "other records when the file is opened again");
    QFile::remove(copy);
  }

  void Reopen() {
    OpenAgain(BasicModule(), "rows.bas");
    OpenAgain(TSModule(), "reaction.tis");
    OpenAgain(QuaModule(), "series.qua");
    OpenAgain(WLSModule(), "spectrum.wls");
    OpenAgain(MultiModule(), "table.mul");
    operator_.CloseAll();
    // The whole day goes without one; what is only asked (whether to save, to replace) is answered meanwhile.
    Expect(operator_.Hands().Told.isEmpty(), "boxes nobody waits for");
    operator_.Hands().Told.clear();
    operator_.Hands().Asked.clear();
    operator_.Pause(50);
  }

  Operator& operator_;
  std::mt19937_64 random_;
  int problems_ = 0;
  /// Dark energies by gain, from gain 1 on, and all blanks of the day.
  std::vector<std::int32_t> darks_;
  std::vector<Reading> blanks_;
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
