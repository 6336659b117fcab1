#include "acquire/acquisition.h"

namespace spectrane {

bool AcquisitionSteps::MoveTo(double wavelength) {
  bench_.State.CurrentWavelength = wavelength;
  return bench_.Instrument.SetWavelength(wavelength) && SameInstrument();
}

bool AcquisitionSteps::UseGain(std::int32_t gain) {
  return bench_.Instrument.SetGain(gain) && SameInstrument();
}

bool AcquisitionSteps::Read(std::int32_t samples, std::int32_t& energy) {
  const std::int32_t reading = bench_.Instrument.GetEnergy(samples);
  if (!Complete()) return false;
  energy = reading;
  return true;
}

bool AcquisitionSteps::TakeReference(std::int32_t& energy, std::int32_t& gain) {
  std::int32_t full = 0;
  std::int32_t chosen = 0;
  if (!bench_.Instrument.Rezero(full, chosen) || !Complete()) return false;
  if (chosen < 1 || chosen > bench_.State.GainCount) return false;
  bench_.Live.ToolsBarFullEnergyData(full, DarkOf(chosen), chosen);
  energy = full;
  gain = chosen;
  return true;
}

bool AcquisitionSteps::MoveSampler(std::int32_t cell) {
  return bench_.Instrument.SetSampler(cell) && SameInstrument();
}

bool AcquisitionSteps::MoveToBlankCell() {
  return !bench_.State.SamplerPresent || MoveSampler(bench_.State.SamplerZeroPosition);
}

bool AcquisitionSteps::ReadDark() {
  DarkEnergyTable table{};
  if (!bench_.Instrument.GetDark(table) || !Complete()) return false;
  bench_.State.DarkEnergies = table;
  bench_.State.DarkTableWhole = true;
  return true;
}

std::int32_t AcquisitionSteps::DarkOf(std::int32_t gain) const {
  return bench_.State.DarkEnergies.at(static_cast<std::size_t>(gain));
}

AcquisitionEnd AcquisitionSteps::RunAlone(const std::function<AcquisitionEnd()>& pass) {
  if (!bench_.State.InstrumentConnected) return AcquisitionEnd::NotBegun;
  const InstrumentRun run(bench_.State);
  if (!run.Owns()) return AcquisitionEnd::NotBegun;
  if (!restarts_) restarts_ = bench_.State.RestartCount;
  bench_.Live.SampleTimerStop();
  bench_.State.InstrumentBusy = true;
  const AcquisitionEnd end = pass();
  bench_.State.InstrumentBusy = false;
  bench_.Live.SampleTimerStart();
  return end;
}

AcquisitionEnd AcquisitionSteps::ForEach(std::int32_t count, const std::function<bool(std::int32_t)>& step) {
  for (std::int32_t i = 0; i < count; ++i) {
    if (StopWanted && StopWanted()) return AcquisitionEnd::Stopped;
    if (!step(i)) return AcquisitionEnd::Failed;
    if (OnDone) OnDone(i + 1);
  }
  return AcquisitionEnd::Finished;
}

}  // namespace spectrane
