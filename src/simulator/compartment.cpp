#include "simulator/compartment.h"

#include <algorithm>
#include <utility>

#include "simulator/commandset.h"
#include "simulator/optics.h"

namespace spectrane {
namespace {

// Below this a lamp's drift is no more than its noise.
constexpr double SteadyShare = 0.999;

LampShow ShowOf(const Lamp& lamp, std::int64_t nowMs) {
  if (lamp.Dead) return LampShow::Dead;
  if (!lamp.Lit) return LampShow::Off;
  return InstrumentModel::ShareOfSteady(lamp, nowMs) < SteadyShare ? LampShow::Warming : LampShow::Lit;
}

}  // namespace

Compartment::Compartment(SimulatedLine& line, const Clock& clock, Console& console,
                         std::function<bool()> plugged)
    : line_(line), clock_(clock), console_(console), plugged_(std::move(plugged)) {}

CompartmentState Compartment::State() const {
  const InstrumentModel& model = line_.Model();
  const std::int64_t now = clock_.NowMs();
  CompartmentState state;
  state.Beam = &model.InBeam();
  state.BeamAbsorbance = model.TrueAbsorbance(now);
  state.SamplerFitted = model.SamplerFitted();
  state.Cell = model.Cell();
  for (int cell = 1; cell <= InstrumentModel::Cells; ++cell) {
    state.Cells[static_cast<std::size_t>(cell - 1)] = FindSample(model.CellName(cell));
  }
  state.Wavelength = model.Wavelength();
  state.TungstenInUse = model.TungstenInUse();
  state.Tungsten = ShowOf(model.Tungsten, now);
  state.Deuterium = ShowOf(model.Deuterium, now);
  state.TungstenDead = model.Tungsten.Dead;
  state.DeuteriumDead = model.Deuterium.Dead;
  state.Gain = model.Gain();
  state.Gains = model.Gains();
  state.Trim = model.Trim();
  state.SlitCode = model.SlitCode();
  state.SlitNm = optics::SlitWidth(model.SlitCode());
  state.Noisy = model.Noise > 0.0;
  state.Jammed = model.Jammed;
  state.Busy = model.Busy;
  state.PendingFaults = line_.Faults().Pending();
  state.Plugged = plugged_();
  state.Path = path_;
  state.Program = program_;
  state.Working = line_.BusyUntilMs() > now;
  state.Requests = line_.Requests();
  state.LastRequest = lastRequest_;
  state.LastFault = lastFault_;
  state.SecondsSinceRequest = std::max<std::int64_t>(now - lastRequestAtMs_, 0) / 1000;
  return state;
}

std::string Compartment::Perform(std::string_view command) {
  std::string error = console_.Execute(command).Error;
  Changed();
  return error;
}

void Compartment::NoteRequest(const ExchangeRecord& record) {
  lastRequest_ = record.Request;
  lastFault_ = record.Fault;
  lastRequestAtMs_ = record.AtMs;
  const std::string_view verb = VerbOf(record.Request);
  if (verb == "quit") {
    program_ = FarEnd::Left;
  } else if (verb == "connect" && record.Answer.find("ok.") != std::string::npos) {
    program_ = FarEnd::Connected;
  } else if (program_ != FarEnd::Connected) {
    program_ = FarEnd::Asking;
  }
  Changed();
}

void Compartment::NoteJoined(const std::string& path) {
  path_ = path;
  program_ = FarEnd::Nobody;
  Changed();
}

void Compartment::NoteBroken() {
  program_ = FarEnd::Nobody;
  Changed();
}

void Compartment::Changed() const {
  if (OnChange) OnChange();
}

}  // namespace spectrane
