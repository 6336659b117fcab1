#include "simulator/console.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "base/numbers.h"
#include "simulator/words.h"

namespace spectrane {
namespace {

/// "on" or "off"; anything else is an error.
std::optional<bool> OnOff(const std::string& word, ConsoleAnswer& answer) {
  if (word == "on") return true;
  if (word == "off") return false;
  answer.Error = "expected on or off: " + word;
  return std::nullopt;
}

std::optional<double> AtLeastZero(const std::string& word, ConsoleAnswer& answer) {
  const auto number = ParseNumber(word);
  if (number && *number >= 0.0) return number;
  answer.Error = "expected a number of 0 or more: " + word;
  return std::nullopt;
}

std::string LampText(const Lamp& lamp) {
  if (lamp.Dead) return "dead";
  return lamp.Lit ? "on" : "off";
}

}  // namespace

std::string ConsoleAnswer::Text() const {
  std::string text;
  for (const std::string& line : Lines) text += line + '\n';
  return text + (Error.empty() ? std::string("ok") : "error: " + Error) + '\n';
}

Console::Console(SimulatedLine& line, const Clock& clock, ConsoleHooks hooks)
    : line_(line), model_(line.Model()), clock_(clock), hooks_(std::move(hooks)) {}

const std::vector<Console::Command>& Console::Commands() {
  static const std::vector<Command> commands{
      {"help", "", 0, 0, &Console::Help, "this list"},
      {"beam", "SAMPLE", 1, 1, &Console::Beam,
       "puts a sample into the beam (with the sampler: into its present cell)"},
      {"cell", "N SAMPLE", 2, 2, &Console::Cell, "fills cell 1 to 8 of the sampler"},
      {"sampler", "on|off", 1, 1, &Console::Sampler, "fits or removes the eight-cell sampler"},
      {"samples", "", 0, 0, &Console::Samples, "lists the samples"},
      {"state", "", 0, 0, &Console::State, "the instrument's state as name=value lines"},
      {"fault", "KIND [VERB [NTH|every [PARAMETER…]]]", 1, 5, &Console::AddFault,
       "spoils the next matching answer"},
      {"faults", "[clear]", 0, 1, &Console::Faults, "lists the kinds of fault, or forgets the pending ones"},
      {"noise", "on|off|FACTOR", 1, 1, &Console::Noise, "noise of the readings"},
      {"stray", "SHARE", 1, 1, &Console::Stray, "share of stray light in mid-range"},
      {"lamp", "tungsten|deuterium dead|good", 2, 2, &Console::LampState, "burns a lamp out, or replaces it"},
      {"jam", "on|off", 1, 1, &Console::Jam, "the wavelength drive stands still but answers"},
      {"busy", "on|off", 1, 1, &Console::Busy, "connect is answered with busy."},
      {"restart", "", 0, 0, &Console::Restart, "power off and on"},
      {"unplug", "", 0, 0, &Console::Unplug, "pulls the cable"},
      {"plug", "", 0, 0, &Console::Plug, "puts the cable back"},
      {"quit", "", 0, 0, &Console::Quit, "ends the program"},
  };
  return commands;
}

ConsoleAnswer Console::Execute(std::string_view text) {
  ConsoleAnswer answer;
  const Arguments words = Words(text);
  if (words.empty()) return answer;
  const auto& commands = Commands();
  const auto found = std::find_if(commands.begin(), commands.end(),
                                  [&](const Command& command) { return command.Name == words.front(); });
  if (found == commands.end()) {
    answer.Error = "unknown command: " + words.front() + " (try help)";
    return answer;
  }
  const Arguments arguments(words.begin() + 1, words.end());
  if (arguments.size() < found->Least || arguments.size() > found->Most) {
    answer.Error = "usage: " + std::string(found->Name) + " " + std::string(found->Usage);
    return answer;
  }
  (this->*found->Run)(arguments, answer);
  const bool query = found->Name == "help" || found->Name == "samples" || found->Name == "state";
  if (answer.Error.empty() && !query && hooks_.Remark) {
    std::string remark = words.front();
    for (const std::string& argument : arguments) remark += " " + argument;
    hooks_.Remark(remark);
  }
  return answer;
}

void Console::Help(const Arguments&, ConsoleAnswer& answer) {
  for (const Command& command : Commands()) {
    std::string line = std::string(command.Name) + " " + std::string(command.Usage);
    line.resize(std::max<std::size_t>(line.size(), 36), ' ');
    answer.Lines.push_back(line + "  " + std::string(command.Purpose));
  }
}

void Console::Beam(const Arguments& arguments, ConsoleAnswer& answer) {
  if (!model_.PutInBeam(arguments[0], clock_.NowMs())) answer.Error = "unknown sample: " + arguments[0];
}

void Console::Cell(const Arguments& arguments, ConsoleAnswer& answer) {
  const auto cell = ParseNumber(arguments[0]);
  if (!cell || *cell != std::floor(*cell) || *cell < 1 || *cell > InstrumentModel::Cells) {
    answer.Error = "the cell must be 1 to 8: " + arguments[0];
  } else if (!model_.FillCell(static_cast<int>(*cell), arguments[1], clock_.NowMs())) {
    answer.Error = "unknown sample: " + arguments[1];
  }
}

void Console::Sampler(const Arguments& arguments, ConsoleAnswer& answer) {
  if (const auto on = OnOff(arguments[0], answer)) model_.FitSampler(*on, clock_.NowMs());
}

void Console::Samples(const Arguments&, ConsoleAnswer& answer) {
  for (const Sample& sample : AllSamples()) {
    std::string line = sample.Name;
    line.resize(std::max<std::size_t>(line.size(), 16), ' ');
    answer.Lines.push_back(line + "  " + sample.Description);
  }
}

void Console::State(const Arguments&, ConsoleAnswer& answer) {
  const auto add = [&](const char* name, const std::string& value) {
    answer.Lines.push_back(std::string(name) + "=" + value);
  };
  const std::int64_t now = clock_.NowMs();
  const double absorbance = model_.TrueAbsorbance(now);
  add("company", model_.Company);
  add("plugged", !hooks_.Plugged || hooks_.Plugged() ? "yes" : "no");
  add("wavelength", Format(model_.Wavelength(), "0.0"));
  add("range", Format(model_.StartNm(), "0.0") + "-" + Format(model_.EndNm(), "0.0"));
  add("gain", std::to_string(model_.Gain()));
  add("gains", std::to_string(model_.Gains()));
  add("trim", Format(model_.Trim(), "0.0000"));
  add("slit", std::to_string(model_.SlitCode()));
  add("bandwidth", Format(optics::SlitWidth(model_.SlitCode()), "0.0"));
  add("lamp_switch", Format(model_.LampSwitch(), "0.0"));
  add("lamp", model_.TungstenInUse() ? "tungsten" : "deuterium");
  add("tungsten", LampText(model_.Tungsten));
  add("deuterium", LampText(model_.Deuterium));
  std::string dark;
  for (const int energy : model_.StoredDark()) dark += (dark.empty() ? "" : " ") + std::to_string(energy);
  add("dark", dark);
  add("dark_measurements", std::to_string(model_.DarkMeasurements()));
  add("calibrations", std::to_string(model_.Calibrations()));
  add("sampler", model_.SamplerFitted() ? "on" : "off");
  add("cell", std::to_string(model_.SamplerFitted() ? model_.Cell() : 0));
  add("beam", model_.InBeam().Name);
  add("absorbance", std::isfinite(absorbance) ? Format(absorbance, "0.000000") : "inf");
  for (int cell = 1; cell <= InstrumentModel::Cells; ++cell) {
    answer.Lines.push_back("cell_" + std::to_string(cell) + "=" + model_.CellName(cell));
  }
  add("noise", ShortestText(model_.Noise));
  add("stray", ShortestText(model_.StrayBase));
  add("jammed", model_.Jammed ? "yes" : "no");
  add("busy", model_.Busy ? "yes" : "no");
  add("faults_pending", std::to_string(line_.Faults().Pending()));
  add("requests", std::to_string(line_.Requests()));
}

void Console::AddFault(const Arguments& arguments, ConsoleAnswer& answer) {
  const std::string verb = arguments.size() > 1 ? arguments[1] : "*";
  const std::string occurrence = arguments.size() > 2 ? arguments[2] : "1";
  const auto parameters = std::span(arguments).subspan(std::min<std::size_t>(arguments.size(), 3));
  if (const auto wrong = line_.Faults().Add(verb, occurrence, arguments[0], parameters))
    answer.Error = *wrong;
}

void Console::Faults(const Arguments& arguments, ConsoleAnswer& answer) {
  if (!arguments.empty() && arguments[0] != "clear") {
    answer.Error = "usage: faults [clear]";
  } else if (!arguments.empty()) {
    line_.Faults().Clear();
  } else {
    for (const FaultKindEntry& kind : FaultKinds()) {
      answer.Lines.push_back(std::string(kind.Name) + (kind.Parameters.empty() ? "" : " ") +
                             std::string(kind.Parameters));
    }
  }
}

void Console::Noise(const Arguments& arguments, ConsoleAnswer& answer) {
  if (arguments[0] == "on" || arguments[0] == "off") {
    model_.Noise = arguments[0] == "on" ? 1.0 : 0.0;
  } else if (const auto factor = AtLeastZero(arguments[0], answer)) {
    model_.Noise = *factor;
  }
}

void Console::Stray(const Arguments& arguments, ConsoleAnswer& answer) {
  if (const auto share = AtLeastZero(arguments[0], answer)) model_.StrayBase = *share;
}

void Console::LampState(const Arguments& arguments, ConsoleAnswer& answer) {
  const bool tungsten = arguments[0] == "tungsten";
  const bool dead = arguments[1] == "dead";
  if ((!tungsten && arguments[0] != "deuterium") || (!dead && arguments[1] != "good")) {
    answer.Error = "usage: lamp tungsten|deuterium dead|good";
    return;
  }
  (tungsten ? model_.Tungsten : model_.Deuterium).Dead = dead;
}

void Console::Jam(const Arguments& arguments, ConsoleAnswer& answer) {
  if (const auto on = OnOff(arguments[0], answer)) model_.Jammed = *on;
}

void Console::Busy(const Arguments& arguments, ConsoleAnswer& answer) {
  if (const auto on = OnOff(arguments[0], answer)) model_.Busy = *on;
}

void Console::Restart(const Arguments&, ConsoleAnswer&) {
  const Deliveries pieces = line_.Restart(clock_.NowMs());
  if (hooks_.Play) hooks_.Play(pieces);
}

void Console::Unplug(const Arguments&, ConsoleAnswer& answer) {
  if (!hooks_.Unplug) {
    answer.Error = "there is no cable here";
  } else {
    hooks_.Unplug();
  }
}

void Console::Plug(const Arguments&, ConsoleAnswer& answer) {
  if (!hooks_.Plug) {
    answer.Error = "there is no cable here";
  } else if (const auto wrong = hooks_.Plug()) {
    answer.Error = *wrong;
  }
}

void Console::Quit(const Arguments&, ConsoleAnswer& answer) {
  answer.Quit = true;
}

}  // namespace spectrane
