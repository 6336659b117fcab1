#include "faults/bench/exchanged.h"

#include <cmath>
#include <string_view>

namespace spectrane::campaign {

bool Exchanged::Sound() const {
  if (!Passed()) return false;
  if (Verb() == "ge") return EnergyOf(Request, Collected).has_value();
  return Verb() != "rezero" || NumbersOf(Request, Collected, 2).has_value();
}

bool Exchanged::Slow() const {
  if (Ended || !Logged || !Answer.ends_with('>')) return false;
  const std::string_view kind = std::string_view(Fault).substr(0, Fault.find(' '));
  return kind.empty() || kind == "split" || kind == "slow" || kind == "twice" || kind == "prompt-inside" ||
         kind == "more-lines" || kind == "fewer-lines" || kind == "bad-number" || kind == "wrong-echo" ||
         kind == "noise-before" || kind == "noise-inside" || kind == "previous";
}

std::vector<Exchanged> Together(const std::vector<WireRecord>& wire, const std::vector<LoggedRequest>& log) {
  std::vector<Exchanged> exchanges;
  std::size_t next = 0;
  for (const WireRecord& record : wire) {
    Exchanged each{record.Request, record.Collected, record.Ended, false, {}, {}};
    if (next < log.size() && log[next].Request == record.Request) {
      each.Logged = true;
      each.Answer = log[next].Answer;
      each.Fault = log[next].Fault;
      ++next;
    }
    exchanges.push_back(std::move(each));
  }
  return exchanges;
}

std::vector<Reading> ReadingsOf(const std::vector<Exchanged>& exchanges, const std::string& request,
                                std::int32_t reference, std::int32_t dark) {
  std::vector<Reading> readings;
  for (const Exchanged& each : exchanges) {
    if (each.Request != request) continue;
    // What counts is what the instrument said to this very request, once something sound was there in time.
    const auto said = EnergyOf(request, each.Answer);
    if (said && each.Sound())
      readings.push_back({*said, reference, dark, each.Answer.starts_with(each.Collected)});
  }
  return readings;
}

double AbsorbanceOf(const Reading& reading) {
  const double light = static_cast<double>(reading.Energy) - reading.Dark;
  const double full = static_cast<double>(reading.Reference) - reading.Dark;
  if (full <= 0 || light <= full * 1e-3) return 3.0;
  return light >= full * 2 ? std::log10(0.5) : std::log10(full) - std::log10(light);
}

bool IsAbsorbanceOf(double stored, const Reading& reading) {
  return std::abs(stored - AbsorbanceOf(reading)) < 1e-9;
}

bool Fit(const std::vector<Reading>& readings, std::size_t count,
         const std::function<bool(std::size_t, const Reading&)>& same) {
  std::size_t next = 0;
  for (const Reading& reading : readings) {
    if (next < count && same(next, reading)) {
      ++next;
    } else if (reading.Required) {
      return false;
    }
  }
  return next == count;
}

}  // namespace spectrane::campaign
