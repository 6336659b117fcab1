#include "link/interface.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "base/numbers.h"
#include "base/numericfault.h"
#include "link/replylines.h"

namespace spectrane {
namespace {

constexpr int kSearchedPorts = 16;
constexpr int kStorablePorts = 8;
constexpr std::string_view kUnknownCommandAnswer = "Invalid Command.";
constexpr std::string_view kConnectAnswer = "ok.";
constexpr int kOtherTextTimeout = 3;
constexpr double kCorrectionLimit = 5.0;
constexpr std::int32_t kNoUpperLimit = std::numeric_limits<std::int32_t>::max();

}  // namespace

enum class Interface::Command : std::size_t {
  Check,
  Company,
  Connect,
  Quit,
  Rezero,
  ResetDark,
  GetDark,
  GetEnergy,
  SetWavelength,
  AdjustWavelength,
  GetWavelength,
  SetGain,
  SetLampWavelength,
  GetLampWavelength,
  TungstenLampOn,
  TungstenLampOff,
  GetTungstenLamp,
  DeuteriumLampOn,
  DeuteriumLampOff,
  GetDeuteriumLamp,
  GetSlip,
  GetSampler,
  SetSlip,
  SetSampler,
  GetStartWavelength,
  GetEndWavelength,
};

struct Interface::CommandRow {
  Command Id;
  /// Text on the wire; an argument follows it directly, so a verb with one ends in its blank.
  const char* Text;
  int TimeoutSeconds;
  /// Highest value of an integer argument, whose lowest is 1; 0: GainCount.
  std::int32_t Highest = kNoUpperLimit;
};

// In the order of Command, by which Row() finds them. The probe is, on purpose, no command of the instrument:
// its answer to an unknown text identifies it.
constexpr Interface::CommandRow Interface::kRows[] = {
    {Command::Check, "check", 1},
    {Command::Company, "company", 3},
    {Command::Connect, "connect", 3},
    {Command::Quit, "quit", 10},
    {Command::Rezero, "rezero", 10},
    {Command::ResetDark, "resetdark", 15},
    {Command::GetDark, "getdark", 15},
    {Command::GetEnergy, "ge ", 15, 200},
    {Command::SetWavelength, "swl ", 80},  // answers on arrival
    {Command::AdjustWavelength, "adjustwl", 180},
    {Command::GetWavelength, "getwl", 3},
    {Command::SetGain, "sa ", 3, 0},
    {Command::SetLampWavelength, "setlampwl ", 5},
    {Command::GetLampWavelength, "getlampwl", 5},
    {Command::TungstenLampOn, "wuon", 5},
    {Command::TungstenLampOff, "wuoff", 5},
    {Command::GetTungstenLamp, "getwu", 5},
    {Command::DeuteriumLampOn, "d2on", 30},  // ignition
    {Command::DeuteriumLampOff, "d2off", 5},
    {Command::GetDeuteriumLamp, "getd2", 5},
    {Command::GetSlip, "getslip", 5},
    {Command::GetSampler, "getsampler", 5},
    {Command::SetSlip, "setslip ", 15, 5},
    {Command::SetSampler, "setsampler ", 15, kSamplerPositionCount},
    {Command::GetStartWavelength, "startwl", 3},
    {Command::GetEndWavelength, "endwl", 3},
};

const Interface::CommandRow& Interface::Row(Command command) {
  static_assert([] {
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
      if (static_cast<std::size_t>(kRows[i].Id) != i) return false;
    }
    return true;
  }());
  return kRows[static_cast<std::size_t>(command)];
}

int Interface::TimeoutFor(std::string_view text) {
  for (const CommandRow& row : kRows) {
    const std::string_view verb = row.Text;
    if (verb.ends_with(' ') ? text.starts_with(verb) : text == verb) return row.TimeoutSeconds;
  }
  return kOtherTextTimeout;
}

Interface::Interface(SCI& sci, InstrumentState& state, Setting& settings)
    : sci_(sci), state_(state), settings_(settings) {}

// ---- The search ----

bool Interface::FindInstrument() {
  attempts_.clear();
  sci_.RefreshPorts();
  if (state_.PortSearchMode == 0) {
    for (int number = 1; number <= kSearchedPorts; ++number) {
      if (ProbePort(number)) return FoundAt(number);
    }
    return false;
  }
  try {
    const std::int32_t number = ParseLong(settings_.GetSetting("Option", "Port ID"));
    if (number < 1 || number > kStorablePorts) return false;
    return ProbePort(number) && FoundAt(number);
  } catch (const NumericFault&) {
    return false;
  }
}

bool Interface::ProbePort(int number) {
  if (OnProbe) OnProbe(number);
  if (!sci_.OpenPort(number)) {
    attempts_.push_back({number, sci_.LastOpenFault(), sci_.LastOpenReason()});
    return false;
  }
  lastReply_ = {};  // that of another line
  std::string line;
  if (AskFirstLine(Command::Check, line) && line == kUnknownCommandAnswer) return true;
  if (lastReply_.End == ExchangeEnd::NoExclusion) {
    attempts_.push_back({number, PortFault::Other, sci_.ExclusionReason()});
  } else {
    attempts_.push_back({number, PortFault::None, {}});
  }
  sci_.ClosePort();
  return false;
}

bool Interface::FoundAt(int number) {
  state_.PortNumber = number;
  settings_.PutSetting("Option", "Port ID", std::to_string(number));
  return true;
}

bool Interface::ReleaseInstrument() {
  const bool closed = sci_.ClosePort();
  state_.PortOpen = false;
  return closed;
}

// ---- The commands ----

bool Interface::CheckCompany() {
  company_.clear();
  return AskFirstLine(Command::Company, company_);
}

bool Interface::ConnectInstrument() {
  std::string line;
  return AskFirstLine(Command::Connect, line) && line == kConnectAnswer;
}

bool Interface::QuitInstrument() {
  return Order(Command::Quit);
}

bool Interface::Rezero(std::int32_t& fullEnergy, std::int32_t& gain) {
  std::string text;
  std::string reply;
  ++state_.RezeroCount;
  if (!Send(Command::Rezero, {}, text, reply)) return false;
  ReplyLines lines(reply, text);
  for (std::int32_t* value : {&fullEnergy, &gain}) {
    const auto line = lines.Next();
    try {
      if (!line) throw NumericFault("missing line");
      *value = ParseLong(*line);
    } catch (const NumericFault&) {
      ++lastReply_.LinesLost;
    }
  }
  return true;
}

bool Interface::ResetDark(DarkEnergyTable& table) {
  return AskDark(Command::ResetDark, table);
}
bool Interface::GetDark(DarkEnergyTable& table) {
  return AskDark(Command::GetDark, table);
}

std::int32_t Interface::GetEnergy(std::int32_t& sampleCount) {
  sampleCount = std::clamp(sampleCount, 1, Row(Command::GetEnergy).Highest);
  std::vector<std::int32_t> samples;
  if (!ReadEnergies(sampleCount, samples)) return 0;
  return EnergyOfSamples(std::move(samples));
}

bool Interface::ReadEnergies(std::int32_t count, std::vector<std::int32_t>& energies) {
  std::string text;
  std::string reply;
  if (!Send(Command::GetEnergy, std::to_string(count), text, reply)) return false;
  energies.assign(static_cast<std::size_t>(count), 0);
  ReplyLines lines(reply, text);
  for (std::int32_t& energy : energies) {
    const auto line = lines.Next();
    try {
      if (!line) throw NumericFault("missing line");
      energy = ParseLong(*line);
    } catch (const NumericFault&) {
      ++lastReply_.LinesLost;  // 0 stays in its place
    }
  }
  return true;
}

bool Interface::SetGain(std::int32_t& gain) {
  return OrderInteger(Command::SetGain, gain);
}

bool Interface::SetWavelength(double& wavelength) {
  const double correction = state_.WavelengthCorrection;
  if (correction < kCorrectionLimit && correction > -kCorrectionLimit) wavelength += correction;
  wavelength = ClampWavelength(wavelength);
  return Moved(Order(Command::SetWavelength, GeneralText(wavelength)));
}

bool Interface::Moved(bool arrived) {
  if (!arrived) ++state_.LostMoves;
  return arrived;
}

bool Interface::GetWavelength(double& wavelength) {
  return AskWavelength(Command::GetWavelength, wavelength);
}
bool Interface::AdjustWavelength() {
  return Moved(Order(Command::AdjustWavelength));
}
bool Interface::GetStartWavelength(double& wavelength) {
  return AskWavelength(Command::GetStartWavelength, wavelength);
}
bool Interface::GetEndWavelength(double& wavelength) {
  return AskWavelength(Command::GetEndWavelength, wavelength);
}

bool Interface::SetLampWavelength(double& wavelength) {
  wavelength = ClampWavelength(wavelength);
  return Order(Command::SetLampWavelength, Format(wavelength, "0.0"));
}
bool Interface::GetLampWavelength(double& wavelength) {
  return AskWavelength(Command::GetLampWavelength, wavelength);
}

bool Interface::TungstenLampOn() {
  return Order(Command::TungstenLampOn);
}
bool Interface::TungstenLampOff() {
  return Order(Command::TungstenLampOff);
}
bool Interface::GetTungstenLamp(bool& lit) {
  return AskLamp(Command::GetTungstenLamp, lit);
}
bool Interface::DeuteriumLampOn() {
  return Order(Command::DeuteriumLampOn);
}
bool Interface::DeuteriumLampOff() {
  return Order(Command::DeuteriumLampOff);
}
bool Interface::GetDeuteriumLamp(bool& lit) {
  return AskLamp(Command::GetDeuteriumLamp, lit);
}

bool Interface::GetSlip(std::int32_t& code) {
  code = 0;
  return AskLong(Command::GetSlip, code);
}
bool Interface::SetSlip(std::int32_t& code) {
  return OrderInteger(Command::SetSlip, code);
}
bool Interface::GetSampler(std::int32_t& kind) {
  return AskLong(Command::GetSampler, kind);
}
bool Interface::SetSampler(std::int32_t& position) {
  return OrderInteger(Command::SetSampler, position);
}

// ---- Shapes of commands ----

bool Interface::Send(Command command, const std::string& argument, std::string& text, std::string& reply) {
  const CommandRow& row = Row(command);
  text = row.Text + argument;
  if (lastReply_.LinesLost > 0) sci_.ExpectMore();
  const bool passed = sci_.Exchange(text, reply, row.TimeoutSeconds) && !sci_.RestartedInReply();
  lastReply_ = {sci_.LastEnd(), 0};
  if (sci_.Restarts() != restartsSeen_) NoteRestart();
  // Data begin behind the echo's line end: an echo that goes on, as a doubled one does, would be cut as data.
  if (passed && reply[text.size()] != '\r') lastReply_.LinesLost = 1;
  return passed;
}

void Interface::NoteRestart() {
  restartsSeen_ = sci_.Restarts();
  lastReply_.Restarted = true;
  ++state_.RestartCount;
  ++state_.LostMoves;
  state_.GainIndex = kUnknownGain;
}

bool Interface::Order(Command command, const std::string& argument) {
  std::string text;
  std::string reply;
  return Send(command, argument, text, reply);
}

bool Interface::OrderInteger(Command command, std::int32_t& value) {
  const std::int32_t highest = Row(command).Highest > 0 ? Row(command).Highest : state_.GainCount;
  value = std::clamp(value, 1, highest);
  return Order(command, std::to_string(value));
}

bool Interface::AskFirstLine(Command command, std::string& line) {
  std::string text;
  std::string reply;
  if (!Send(command, {}, text, reply)) return false;
  if (const auto first = ReplyLines(reply, text).Next()) {
    line = *first;
  } else {
    ++lastReply_.LinesLost;
  }
  return true;
}

bool Interface::AskLong(Command command, std::int32_t& value) {
  std::string line;
  if (!AskFirstLine(command, line)) return false;
  try {
    value = ParseLong(line);
  } catch (const NumericFault&) {
    lastReply_.LinesLost = 1;
  }
  return true;
}

bool Interface::AskWavelength(Command command, double& value) {
  std::string line;
  if (!AskFirstLine(command, line)) return false;
  if (lastReply_.LinesLost > 0) return true;
  try {
    value = Val(line);
  } catch (const NumericFault&) {
    lastReply_.LinesLost = 1;
  }
  return true;
}

bool Interface::AskLamp(Command command, bool& lit) {
  std::int32_t value = lit ? 1 : 0;
  if (!AskLong(command, value)) return false;
  lit = value == 1;
  return true;
}

bool Interface::AskDark(Command command, DarkEnergyTable& table) {
  std::string text;
  std::string reply;
  if (!Send(command, {}, text, reply)) return false;
  ReplyLines lines(reply, text);
  for (int gain = 1; gain <= state_.GainCount; ++gain) {
    const auto line = lines.Next();
    try {
      if (!line) throw NumericFault("missing line");
      const std::int32_t energy = ParseLong(*line);
      if (static_cast<std::size_t>(gain) < table.size()) table[static_cast<std::size_t>(gain)] = energy;
    } catch (const NumericFault&) {
      ++lastReply_.LinesLost;
    }
  }
  return true;
}

double Interface::ClampWavelength(double wavelength) const {
  // The negated comparison also takes what is no number to the lower limit.
  if (wavelength >= state_.WavelengthMax) return state_.WavelengthMax;
  return wavelength >= state_.WavelengthMin ? wavelength : state_.WavelengthMin;
}

// ---- The statistic ----

std::int32_t EnergyOfSamples(std::vector<std::int32_t> samples) {
  const std::size_t n = samples.size();
  if (n == 0) return 0;
  if (n == 1) return samples.front();
  if (n == 2) return ToLong((double{1} * samples[0] + samples[1]) / 2.0);
  for (std::size_t i = 0; i + 1 < n; ++i) {
    if (samples[i] > samples[i + 1]) std::swap(samples[i], samples[i + 1]);
  }
  const auto place = static_cast<std::size_t>(RoundHalfEven(static_cast<double>(n) / 2.0));
  return samples[place - 1];
}

}  // namespace spectrane
