#include "simulator/facewords.h"

#include <cmath>

#include "base/numbers.h"

namespace spectrane {

std::string_view LampWords(LampShow show) {
  switch (show) {
    case LampShow::Off:
      return "off";
    case LampShow::Warming:
      return "lit, warming up";
    case LampShow::Lit:
      return "lit";
    case LampShow::Dead:
      return "burnt out";
  }
  return {};
}

std::string WavelengthWords(const CompartmentState& state) {
  return Format(state.Wavelength, "0.0") + " nm, " + (state.TungstenInUse ? "tungsten" : "deuterium") +
         " lamp";
}

std::string GainWords(const CompartmentState& state) {
  return "gain " + std::to_string(state.Gain) + " of " + std::to_string(state.Gains) + ", trim " +
         Format(state.Trim, "0.000");
}

std::string SlitWords(const CompartmentState& state) {
  return "slit " + std::to_string(state.SlitCode) + " (" + Format(state.SlitNm, "0.0") + " nm)";
}

std::string AbsorbanceWords(const CompartmentState& state) {
  if (!std::isfinite(state.BeamAbsorbance)) return "no light";
  // Minus zero is nothing to show.
  const double value = std::abs(state.BeamAbsorbance) < 0.0005 ? 0.0 : state.BeamAbsorbance;
  return Format(value, "0.000") + " Abs";
}

std::string ProgramWords(const CompartmentState& state) {
  if (!state.Plugged) return "The cable is unplugged.";
  switch (state.Program) {
    case FarEnd::Nobody:
      return "No program has spoken yet.";
    case FarEnd::Asking:
      return "A program asks, but is not connected.";
    case FarEnd::Connected:
      return state.Working ? "A program is connected; working." : "A program is connected.";
    case FarEnd::Left:
      return "The program has disconnected.";
  }
  return {};
}

std::string RequestWords(const CompartmentState& state) {
  if (state.LastRequest.empty()) return "No request yet.";
  const std::int64_t seconds = state.SecondsSinceRequest;
  const std::string ago = seconds < 1      ? "just now"
                          : seconds < 120  ? std::to_string(seconds) + " s ago"
                          : seconds < 7200 ? std::to_string(seconds / 60) + " min ago"
                                           : std::to_string(seconds / 3600) + " h ago";
  return "Request " + std::to_string(state.Requests) + ": " + state.LastRequest + ", " + ago +
         (state.LastFault.empty() ? "" : ", spoilt: " + state.LastFault);
}

std::string BeamPathWords(const CompartmentState& state) {
  const LampShow lamp = state.TungstenInUse ? state.Tungsten : state.Deuterium;
  std::string words = std::string(state.TungstenInUse ? "Tungsten" : "Deuterium") + " lamp " +
                      std::string(LampWords(lamp)) + "; " + Format(state.Wavelength, "0.0") + " nm, " +
                      SlitWords(state) + "; in the beam: " + state.Beam->Label;
  if (state.SamplerFitted) words += " in cell " + std::to_string(state.Cell);
  return words + ", " + AbsorbanceWords(state) + "; detector " + GainWords(state) + ".";
}

std::string_view FaultWords(FaultKind kind) {
  switch (kind) {
    case FaultKind::NoReply:
      return "no answer";
    case FaultKind::LateReply:
      return "answer comes too late";
    case FaultKind::Cut:
      return "answer cut short";
    case FaultKind::Split:
      return "pause within the answer";
    case FaultKind::Slow:
      return "answer byte by byte";
    case FaultKind::NoiseBefore:
      return "noise before the answer";
    case FaultKind::NoiseInside:
      return "noise inside the answer";
    case FaultKind::Twice:
      return "answer comes twice";
    case FaultKind::Previous:
      return "answer to the request before";
    case FaultKind::HangUp:
      return "line breaks in mid-answer";
    case FaultKind::NoPrompt:
      return "prompt missing";
    case FaultKind::PromptInside:
      return "prompt inside the answer";
    case FaultKind::WrongEcho:
      return "wrong echo";
    case FaultKind::FewerLines:
      return "lines missing";
    case FaultKind::MoreLines:
      return "lines too many";
    case FaultKind::BadNumber:
      return "number that is none";
    case FaultKind::Restart:
      return "instrument restarts";
    case FaultKind::Flood:
      return "endless text";
  }
  return {};
}

}  // namespace spectrane
