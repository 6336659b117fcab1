#include "faults/bench/campaign.h"

#include <time.h>

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

#include "app/ground/commands.h"
#include "app/ground/words.h"
#include "app/mainstatus.h"
#include "modes/quantitation/quantitationsettings.h"
#include "modes/timescan/timescansettings.h"

namespace spectrane::campaign {
namespace {

/// So many scripts one program goes through.
constexpr int kScriptsOfAProgram = 25;
constexpr int kQuietLimitMs = 1000;
constexpr int kLinkLost = 1096;

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
  std::printf("VIOLATION seed %llu haste %d\n", static_cast<unsigned long long>(seed), person.Haste());
  for (const QString& line : script->Story()) std::printf("  %s\n", line.toUtf8().constData());
  for (const QString& line : script->Problems()) std::printf("  ! %s\n", line.toUtf8().constData());
  std::fflush(stdout);
  return verdict;
}

/// Processor time of this process [ms].
double CpuMs() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// When the program used more than a twentieth of the processor for the last time [ms on that clock], looked
/// at until it has been quiet for more than a second.
double LastBusyMs(Operator& person, const QElapsedTimer& clock) {
  constexpr int kWindowMs = 50;
  constexpr double kIdleMs = 2.5;
  constexpr double kLongEnoughMs = 1200;
  auto last = static_cast<double>(clock.elapsed());
  while (clock.elapsed() < 2 * kQuietLimitMs) {
    const double before = CpuMs();
    person.Pause(kWindowMs);
    const auto now = static_cast<double>(clock.elapsed());
    if (CpuMs() - before > kIdleMs) last = now;
    if (now - last > kLongEnoughMs) break;
  }
  return last;
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
    if (verdict == Verdict::TooSlow) {
      std::printf("NOT JUDGED seed %llu haste %d: answers came too late\n",
                  static_cast<unsigned long long>(seed), now.Haste);
    }
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
  Operator person(place);
  if (!person.StartSimulator({"--instant"})) return false;
  person.StartProgram();
  std::vector<double> told;
  std::vector<double> quiet;
  for (int i = 0; i < count; ++i) {
    if (!person.Connected()) person.Choose(kConnect);
    person.Pause(350 + i * 7 % 100);
    if (!person.Connected()) return false;
    QElapsedTimer clock;
    clock.start();
    person.Simulator().Tell("unplug");
    const auto& status = *person.Frame().findChild<MainStatus*>();
    const bool said =
        person.PauseUntil([&] { return status.Remark().startsWith(Words(kLinkLost)); }, kQuietLimitMs);
    told.push_back(said ? static_cast<double>(clock.elapsed()) : 2.0 * kQuietLimitMs);
    quiet.push_back(LastBusyMs(person, clock));
    person.Simulator().Tell("plug");
    person.Choose(kRelease);
  }
  for (std::vector<double>* const times : {&told, &quiet}) std::ranges::sort(*times);
  const std::size_t middle = told.size() / 2;
  std::printf(
      "cable pulled %d times: told after %.0f ms (median), %.0f ms (longest); busy for the last time after "
      "%.0f "
      "ms (median), %.0f ms (longest)\n",
      count, told[middle], told.back(), quiet[middle], quiet.back());
  return std::max(told.back(), quiet.back()) < kQuietLimitMs;
}

}  // namespace spectrane::campaign
