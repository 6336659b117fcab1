#include "simulator/commandset.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/numbers.h"

namespace spectrane {
namespace {

constexpr int QuickMs = 3;
constexpr int SampleMs = 3;
constexpr int TungstenWarmUpMs = 1500;
constexpr int DeuteriumWarmUpMs = 18'000;
constexpr int LampMs = 120;
constexpr int RezeroMs = 1500;
constexpr int DarkPerGainMs = 450;

bool Text(CommandResult& result, std::string line, int durationMs = QuickMs) {
  result.Lines.push_back(std::move(line));
  result.DurationMs = durationMs;
  return true;
}

bool Nothing(CommandResult& result, int durationMs) {
  result.DurationMs = durationMs;
  return true;
}

std::string OneDecimal(double value) {
  return Format(value, "0.0");
}

bool Connect(const CommandCall& call, CommandResult& result) {
  return Text(result, call.Model.Busy ? "busy." : "ok.", 250);
}

bool Rezero(const CommandCall& call, CommandResult& result) {
  result.Lines.push_back(std::to_string(call.Model.Rezero(call.NowMs)));
  return Text(result, std::to_string(call.Model.Gain()), RezeroMs);
}

bool GetDark(const CommandCall& call, CommandResult& result) {
  for (const int energy : call.Model.StoredDark()) Text(result, std::to_string(energy), 20);
  return true;
}

bool ResetDark(const CommandCall& call, CommandResult& result) {
  call.Model.MeasureDark();
  GetDark(call, result);
  return Nothing(result, DarkPerGainMs * call.Model.Gains());
}

bool GetEnergy(const CommandCall& call, CommandResult& result) {
  const int count = static_cast<int>(call.Argument);
  if (count < 1 || count > 200) return false;
  for (int i = 1; i <= count; ++i) {
    const auto at = call.NowMs + static_cast<std::int64_t>(call.SampleMs * i);
    Text(result, std::to_string(call.Model.Energy(at)), QuickMs + SampleMs * i);
  }
  return true;
}

bool SetWavelength(const CommandCall& call, CommandResult& result) {
  return Nothing(result, call.Model.MoveTo(call.Argument));
}

bool SetLampSwitch(const CommandCall& call, CommandResult& result) {
  return Nothing(result, call.Model.SetLampSwitch(call.Argument));
}

bool SetGain(const CommandCall& call, CommandResult& result) {
  return call.Model.SetGain(static_cast<int>(call.Argument)) && Nothing(result, 60);
}

bool SetSlit(const CommandCall& call, CommandResult& result) {
  return call.Model.SetSlit(static_cast<int>(call.Argument), result.DurationMs);
}

bool MoveSampler(const CommandCall& call, CommandResult& result) {
  return call.Model.MoveSampler(static_cast<int>(call.Argument), result.DurationMs, call.NowMs);
}

bool SwitchTungsten(const CommandCall& call, CommandResult& result, bool on) {
  return Nothing(result, call.Model.Switch(call.Model.Tungsten, on, TungstenWarmUpMs, call.NowMs) + LampMs);
}

bool SwitchDeuterium(const CommandCall& call, CommandResult& result, bool on) {
  return Nothing(result, call.Model.Switch(call.Model.Deuterium, on, DeuteriumWarmUpMs, call.NowMs) + LampMs);
}

using Call = const CommandCall&;
using Result = CommandResult&;

constexpr std::array<CommandEntry, 25> Table{{
    {"company", ArgumentKind::None, 3000, [](Call c, Result r) { return Text(r, c.Model.Company); }},
    {"connect", ArgumentKind::None, 3000, Connect},
    {"quit", ArgumentKind::None, 10'000, [](Call, Result r) { return Nothing(r, 100); }},
    {"rezero", ArgumentKind::None, 10'000, Rezero},
    {"resetdark", ArgumentKind::None, 15'000, ResetDark},
    {"getdark", ArgumentKind::None, 15'000, GetDark},
    {"ge", ArgumentKind::Whole, 15'000, GetEnergy},
    {"swl", ArgumentKind::Wavelength, 80'000, SetWavelength},
    {"adjustwl", ArgumentKind::None, 180'000,
     [](Call c, Result r) { return Nothing(r, c.Model.Calibrate()); }},
    {"getwl", ArgumentKind::None, 3000,
     [](Call c, Result r) { return Text(r, OneDecimal(c.Model.Wavelength())); }},
    {"sa", ArgumentKind::Whole, 3000, SetGain},
    {"setlampwl", ArgumentKind::Wavelength, 5000, SetLampSwitch},
    {"getlampwl", ArgumentKind::None, 5000,
     [](Call c, Result r) { return Text(r, OneDecimal(c.Model.LampSwitch())); }},
    {"wuon", ArgumentKind::None, 5000, [](Call c, Result r) { return SwitchTungsten(c, r, true); }},
    {"wuoff", ArgumentKind::None, 5000, [](Call c, Result r) { return SwitchTungsten(c, r, false); }},
    {"getwu", ArgumentKind::None, 5000,
     [](Call c, Result r) { return Text(r, c.Model.Tungsten.Lit ? "1" : "0"); }},
    {"d2on", ArgumentKind::None, 30'000, [](Call c, Result r) { return SwitchDeuterium(c, r, true); }},
    {"d2off", ArgumentKind::None, 5000, [](Call c, Result r) { return SwitchDeuterium(c, r, false); }},
    {"getd2", ArgumentKind::None, 5000,
     [](Call c, Result r) { return Text(r, c.Model.Deuterium.Lit ? "1" : "0"); }},
    {"getslip", ArgumentKind::None, 5000,
     [](Call c, Result r) { return Text(r, std::to_string(c.Model.SlitCode())); }},
    {"setslip", ArgumentKind::Whole, 15'000, SetSlit},
    {"getsampler", ArgumentKind::None, 5000,
     [](Call c, Result r) { return Text(r, c.Model.SamplerFitted() ? "1" : "0"); }},
    {"setsampler", ArgumentKind::Whole, 15'000, MoveSampler},
    {"startwl", ArgumentKind::None, 3000,
     [](Call c, Result r) { return Text(r, OneDecimal(c.Model.StartNm())); }},
    {"endwl", ArgumentKind::None, 3000,
     [](Call c, Result r) { return Text(r, OneDecimal(c.Model.EndNm())); }},
}};

const CommandEntry* FindCommand(std::string_view verb) {
  const auto found =
      std::find_if(Table.begin(), Table.end(), [&](const CommandEntry& entry) { return entry.Verb == verb; });
  return found == Table.end() ? nullptr : &*found;
}

/// The argument as this command wants it; false when it is missing, no number or out of place.
bool ReadArgument(const CommandEntry& entry, std::string_view text, double& value) {
  const bool empty = text.find_first_not_of(' ') == std::string_view::npos;
  if (entry.Argument == ArgumentKind::None) return empty;
  const auto number = ParseNumber(text);
  if (!number) return false;
  value = *number;
  return entry.Argument == ArgumentKind::Wavelength || (value == std::floor(value) && std::abs(value) < 1e6);
}

}  // namespace

std::span<const CommandEntry> Commands() {
  return Table;
}

std::string_view VerbOf(std::string_view command) {
  return command.substr(0, command.find(' '));
}

int ProgramTimeoutMs(std::string_view command) {
  if (command == "check") return 1000;
  const CommandEntry* entry = FindCommand(VerbOf(command));
  return entry == nullptr ? 3000 : entry->TimeoutMs;
}

CommandResult RunCommand(InstrumentModel& model, std::string_view command, std::int64_t nowMs,
                         double timeScale) {
  CommandResult result;
  if (command.empty()) return result;
  const std::string_view verb = VerbOf(command);
  const CommandEntry* entry = FindCommand(verb);
  CommandCall call{model, 0.0, nowMs, SampleMs * timeScale};
  if (entry == nullptr || !ReadArgument(*entry, command.substr(verb.size()), call.Argument) ||
      !entry->Run(call, result)) {
    return {{std::string(InvalidCommand)}, QuickMs};
  }
  return result;
}

}  // namespace spectrane
