#include "simulator/instrumentmodel.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace spectrane {
namespace {

constexpr double DriveNmPerSecond = 100.0;
constexpr int DriveSettleMs = 150;
constexpr int LampMirrorMs = 900;
constexpr int CalibrationMs = 90'000;
constexpr int SlitStepMs = 1200;
constexpr int CellStepMs = 900;
constexpr int SwitchMs = 100;
// A lamp just lit starts this much lower and comes up with this time constant.
constexpr double WarmUpDeficit = 0.03;
constexpr double WarmUpSeconds = 60.0;

}  // namespace

InstrumentModel::InstrumentModel(const InstrumentOptions& options)
    : Noise(options.Noise),
      Company(options.Company),
      samplerFitted_(options.Sampler),
      gains_(options.Gains),
      startNm_(options.StartNm),
      endNm_(options.EndNm),
      steadyLamps_(options.Instant),
      noise_(options.Seed) {
  for (BeamPlace& place : cells_) place.Content = FindSample("blank");
  for (int cell = 2; cell <= Cells; ++cell) {
    cells_[static_cast<std::size_t>(cell)].Content = FindSample("dye-" + std::to_string(cell - 1));
  }
  for (int gain = 1; gain <= gains_; ++gain) storedDark_.push_back(optics::DarkEnergy(gain));
  Restart(0);
  PutInBeam(options.Beam, 0);
}

void InstrumentModel::Restart(std::int64_t nowMs) {
  Tungsten = Lamp{true, Tungsten.Dead, false, 0};
  Deuterium = Lamp{true, Deuterium.Dead, false, 0};
  wavelength_ = std::clamp(PowerUpWavelength, startNm_, endNm_);
  lampSwitch_ = PowerUpLampSwitch;
  gain_ = 1;
  trim_ = 1.0;
  zeros_.clear();
  slit_ = 2;
  cell_ = 1;
  StartClockOfPlace(nowMs);
}

int InstrumentModel::MoveTo(double nm) {
  const double target = std::round(std::clamp(nm, startNm_, endNm_) * 10.0) / 10.0;
  const double travel = std::abs(target - wavelength_);
  const bool otherLamp = (target >= lampSwitch_) != TungstenInUse();
  if (!Jammed) wavelength_ = target;
  RecallTrim();
  return DriveSettleMs + static_cast<int>(travel / DriveNmPerSecond * 1000.0) +
         (otherLamp ? LampMirrorMs : 0);
}

int InstrumentModel::SetLampSwitch(double nm) {
  const bool before = TungstenInUse();
  lampSwitch_ = std::round(std::clamp(nm, startNm_, endNm_) * 10.0) / 10.0;
  return SwitchMs + (TungstenInUse() != before ? LampMirrorMs : 0);
}

int InstrumentModel::Calibrate() {
  ++calibrations_;
  return CalibrationMs;
}

bool InstrumentModel::SetGain(int gain) {
  if (gain < 1 || gain > gains_) return false;
  gain_ = gain;
  RecallTrim();
  return true;
}

int InstrumentModel::WavelengthKey() const {
  return static_cast<int>(std::lround(wavelength_ * 10.0));
}

void InstrumentModel::RecallTrim() {
  const auto zero = zeros_.find(WavelengthKey());
  if (zero != zeros_.end() && zero->second.Gain == gain_) trim_ = zero->second.Trim;
}

bool InstrumentModel::SetSlit(int code, int& takesMs) {
  if (code < 1 || code > optics::SlitCodes) return false;
  takesMs = SwitchMs + SlitStepMs * std::abs(code - slit_);
  slit_ = code;
  return true;
}

bool InstrumentModel::MoveSampler(int cell, int& takesMs, std::int64_t nowMs) {
  if (!samplerFitted_ || cell < 1 || cell > Cells) return false;
  takesMs = SwitchMs + CellStepMs * std::abs(cell - cell_);
  cell_ = cell;
  StartClockOfPlace(nowMs);
  return true;
}

void InstrumentModel::MeasureDark() {
  constexpr int Readings = 20;
  const int gainBefore = gain_;
  for (gain_ = 1; gain_ <= gains_; ++gain_) {
    int sum = 0;
    for (int i = 0; i < Readings; ++i) sum += Convert(0.0);
    storedDark_[static_cast<std::size_t>(gain_ - 1)] = (sum + Readings / 2) / Readings;
  }
  gain_ = gainBefore;
  ++darkMeasurements_;
}

int InstrumentModel::Switch(Lamp& lamp, bool on, int warmUpMs, std::int64_t nowMs) {
  const bool wasLit = std::exchange(lamp.Lit, on);
  if (!on || wasLit) return SwitchMs;
  lamp.Warming = !steadyLamps_;
  lamp.LitAtMs = nowMs + warmUpMs;
  return warmUpMs;
}

int InstrumentModel::Rezero(std::int64_t nowMs) {
  const double light = Light(nowMs);
  gain_ = gains_;
  while (gain_ > 1 && light * optics::GainFactor(gain_) > optics::BlankSignal) --gain_;
  const double signal = light * optics::GainFactor(gain_);
  trim_ = signal > 0.0 ? std::clamp(optics::BlankSignal / signal, 1.0, optics::MaximumTrim) : 1.0;
  zeros_[WavelengthKey()] = {gain_, trim_};
  constexpr int Readings = 30;
  std::int64_t sum = 0;
  for (int i = 0; i < Readings; ++i) sum += Energy(nowMs);
  return static_cast<int>((sum + Readings / 2) / Readings);
}

int InstrumentModel::Energy(std::int64_t nowMs) {
  return Convert(Light(nowMs) * optics::GainFactor(gain_) * trim_);
}

int InstrumentModel::Convert(double signal) {
  double energy = optics::DarkEnergy(gain_) + signal;
  if (Noise > 0.0) {
    const double shot = signal * optics::GainFactor(gain_) * trim_ / optics::ElectronsPerCount;
    energy += Noise * std::sqrt(shot + optics::ReadNoise * optics::ReadNoise) * noise_.Normal();
  }
  return static_cast<int>(std::llround(std::clamp(energy, 0.0, double{optics::FullScale})));
}

bool InstrumentModel::PutInBeam(std::string_view name, std::int64_t nowMs) {
  return FillCell(PlaceIndex(), name, nowMs);
}

bool InstrumentModel::FillCell(int cell, std::string_view name, std::int64_t nowMs) {
  const Sample* sample = FindSample(name);
  if (sample == nullptr || cell < 0 || cell > Cells) return false;
  cells_[static_cast<std::size_t>(cell)] = {sample, -1};
  StartClockOfPlace(nowMs);
  return true;
}

void InstrumentModel::FitSampler(bool fitted, std::int64_t nowMs) {
  samplerFitted_ = fitted;
  StartClockOfPlace(nowMs);
}

double InstrumentModel::SecondsInBeam(std::int64_t nowMs) const {
  const std::int64_t since = Place().InBeamSinceMs;
  return since < 0 ? 0.0 : static_cast<double>(std::max<std::int64_t>(nowMs - since, 0)) / 1000.0;
}

void InstrumentModel::StartClockOfPlace(std::int64_t nowMs) {
  BeamPlace& place = cells_[static_cast<std::size_t>(PlaceIndex())];
  if (place.InBeamSinceMs < 0) place.InBeamSinceMs = nowMs;
}

double InstrumentModel::LampOutput(std::int64_t nowMs) const {
  const Lamp& lamp = TungstenInUse() ? Tungsten : Deuterium;
  if (!lamp.Lit || lamp.Dead) return 0.0;
  const double output = TungstenInUse() ? optics::Tungsten(wavelength_)
                                        : optics::Deuterium(wavelength_, optics::SlitWidth(slit_));
  return output * ShareOfSteady(lamp, nowMs);
}

double InstrumentModel::ShareOfSteady(const Lamp& lamp, std::int64_t nowMs) {
  if (!lamp.Warming) return 1.0;
  const double seconds = static_cast<double>(std::max<std::int64_t>(nowMs - lamp.LitAtMs, 0)) / 1000.0;
  return 1.0 - WarmUpDeficit * std::exp(-seconds / WarmUpSeconds);
}

double InstrumentModel::Light(std::int64_t nowMs) const {
  const BeamPlace& place = Place();
  if (place.Content->Blocks) return 0.0;
  const double bandwidth = optics::SlitWidth(slit_);
  const double stray = optics::StrayLight(wavelength_, StrayBase);
  const double passed = Transmittance(*place.Content, wavelength_, bandwidth, SecondsInBeam(nowMs));
  return LampOutput(nowMs) * optics::Response(wavelength_) * optics::CountsPerUnit(bandwidth) *
         (passed + stray) / (1.0 + stray);
}

double InstrumentModel::TrueAbsorbance(std::int64_t nowMs) const {
  return -std::log10(Transmittance(InBeam(), wavelength_, optics::SlitWidth(slit_), SecondsInBeam(nowMs)));
}

}  // namespace spectrane
