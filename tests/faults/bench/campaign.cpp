#include "faults/bench/campaign.h"

#include <time.h>

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

#include "app/ground/commands.h"
#include "modes/quantitation/quantitationsettings.h"
#include "modes/timescan/timescansettings.h"

namespace spectrane::campaign {
namespace {

/// So many scripts one program goes through.
constexpr int kScriptsOfAProgram = 25;
constexpr int kQuietLimitMs = 2000;

void Settle(Setting& settings) {
  settings.PutSetting(kTimeScanSection, "End Second", "1");
  // The curve is typed: no standards are needed.
  settings.PutSetting(kQuantitationSection, "Curve Item", "2");
  settings.PutSetting(kQuantitationSection, "Curve K1", "10");
}

std::vector<std::string> OptionsOf(std::uint64_t seed) {
  std::vector<std::string> options = {"--instant", "--seed", std::to_string(seed)};
  if (seed / 4 % 3 == 0) options.emplace_back("--sampler");
  return options;
}

Verdict RunOne(Operator& person, std::uint64_t seed, CampaignResult& result) {
  const std::vector<std::string> options = OptionsOf(seed);
  if (!person.StartSimulator(options)) return Verdict::TooSlow;
  const std::unique_ptr<Script> script = MakeScript(person, seed, options);
  const Verdict verdict = script->Run();
  if (verdict == Verdict::TooSlow) return verdict;
  result.Troubles += script->Troubles();
  if (verdict == Verdict::Held) return verdict;
  std::printf("VIOLATION seed %llu\n", static_cast<unsigned long long>(seed));
  for (const QString& line : script->Story()) std::printf("  %s\n", line.toUtf8().constData());
  for (const QString& line : script->Problems()) std::printf("  ! %s\n", line.toUtf8().constData());
  std::fflush(stdout);
  return verdict;
}

/// Processor time of this thread [ms].
double CpuMs() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

}  // namespace

CampaignResult RunScripts(const Place& place, std::uint64_t first, int count, double minutes) {
  CampaignResult result;
  QElapsedTimer clock;
  clock.start();
  std::unique_ptr<Operator> person;
  int used = 0;
  Place now = place;
  for (std::uint64_t seed = first; result.Scripts < count; ++seed) {
    if (static_cast<double>(clock.elapsed()) / 60000.0 >= minutes) break;
    Verdict verdict = Verdict::TooSlow;
    for (int attempt = 0; verdict == Verdict::TooSlow && attempt < 6; ++attempt) {
      // A hurried clock that the machine cannot keep up with goes slower for this script.
      const int haste = std::max(1, place.Haste >> attempt);
      if (!person || haste != now.Haste || ++used > kScriptsOfAProgram) {
        if (person) result.Exchanges += person->Exchanges();
        person.reset();
        now.Haste = haste;
        person = std::make_unique<Operator>(now);
        Settle(person->Settings());
        person->StartProgram();
        used = 0;
      }
      if (attempt > 0) ++result.TooSlow;
      verdict = RunOne(*person, seed, result);
    }
    ++result.Scripts;
    if (verdict == Verdict::Held) ++result.Held;
    if (result.Scripts % 25 == 0) {
      std::printf("%6.1f min  %d scripts, %d held, %d troubles, %d run again\n",
                  static_cast<double>(clock.elapsed()) / 60000.0, result.Scripts, result.Held,
                  result.Troubles, result.TooSlow);
      std::fflush(stdout);
    }
  }
  if (person) result.Exchanges += person->Exchanges();
  return result;
}

bool PullToQuiet(const Place& place, int count) {
  constexpr int kWindowMs = 50;
  constexpr double kIdleMs = 2.5;  // a twentieth of a window
  Operator person(place);
  if (!person.StartSimulator({"--instant"})) return false;
  person.StartProgram();
  std::vector<double> times;
  for (int i = 0; i < count; ++i) {
    if (!person.Connected()) person.Choose(kConnect);
    person.Pause(350 + i * 7 % 100);
    if (!person.Connected()) return false;
    QElapsedTimer clock;
    clock.start();
    person.Simulator().Tell("unplug");
    double quiet = 0;
    while (clock.elapsed() < 2 * kQuietLimitMs) {
      const double before = CpuMs();
      person.Pause(kWindowMs);
      if (CpuMs() - before > kIdleMs) quiet = static_cast<double>(clock.elapsed());
      if (clock.elapsed() - static_cast<qint64>(quiet) > 1200) break;
    }
    times.push_back(quiet);
    person.Simulator().Tell("plug");
    person.Choose(kRelease);
  }
  std::ranges::sort(times);
  std::printf("pull to quiet, %d times: median %.0f ms, longest %.0f ms\n", count, times[times.size() / 2],
              times.back());
  return times.back() < kQuietLimitMs;
}

}  // namespace spectrane::campaign
