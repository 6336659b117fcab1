#include "link/livereading.h"

#include <algorithm>

#include "base/language.h"
#include "base/numbers.h"
#include "base/numericfault.h"
#include "base/textnumbers.h"
#include "link/function.h"

namespace spectrane {
namespace {

constexpr std::int32_t kLiveSamples = 10;
constexpr std::int32_t kRezeroSamples = 30;
constexpr std::int32_t kToolbarRezeroSamples = 10;
constexpr int kSettleMs = 40;
constexpr int kReadingsPerDisplay = 5;
constexpr std::int32_t kMinimumStart = 70000;
constexpr const char* kNoValue = "------";
constexpr const char* kNoLight = "The blank gives no light.";
constexpr const char* kRestarted = "The instrument has restarted: a blank has to be set again.";

}  // namespace

LiveReading::LiveReading(SCI& sci, Interface& instrument, InstrumentState& state,
                         const DisplayFormats& formats, MainDisplay& display)
    : sci_(sci), instrument_(instrument), state_(state), formats_(formats), display_(display) {}

void LiveReading::SampleTimerTick() {
  if (!display_.DataDisplayShown() || state_.InstrumentBusy || !state_.InstrumentConnected) return;
  state_.InstrumentBusy = true;
  std::int32_t samples = kLiveSamples;
  const std::int32_t energy = instrument_.GetEnergy(samples);
  const ReplyQuality last = instrument_.LastReply();
  state_.EnergyRing[static_cast<std::size_t>(state_.SampleIndex)] = energy;
  state_.SampleIndex = (state_.SampleIndex + 1) % kEnergyRingUsed;
  state_.InstrumentBusy = false;
  if (!state_.InstrumentConnected) return;  // released while the reading yielded
  if (last.Restarted) {
    linkLost_ = false;  // the words stay until there is a blank
    display_.SetRemark(kRestarted);
  } else if (last.End != ExchangeEnd::Passed) {
    ReportLinkLost();
  } else if (linkLost_) {
    linkLost_ = false;
    display_.SetRemark({});
  }
  if (state_.SampleIndex % kReadingsPerDisplay == 0) ShowMean();
}

void LiveReading::ShowMean() {
  try {
    state_.CurrentTrans = TransFromEnergy(TrimmedMean(state_), state_.FullEnergy, state_.DarkEnergy);
  } catch (const NumericFault&) {
    return;
  }
  state_.CurrentAbs = AbsFromTrans(state_.CurrentTrans);
  ToolsBarWaveLength(state_.CurrentWavelength);
  ToolsBarAbsData(state_.CurrentAbs);
  ToolsBarTransData(state_.CurrentTrans);
}

void LiveReading::ToolsBarWaveLength(double wavelength) {
  if (!state_.InstrumentConnected) return ToolsBarClearWaveLength();
  shownWavelength_ = wavelength;
  display_.SetWavelengthField(WavelengthDisplay(wavelength, formats_));
}
void LiveReading::ToolsBarAbsData(double abs) {
  if (!state_.InstrumentConnected) return ToolsBarClearAbsData();
  shownAbs_ = abs;
  display_.SetAbsField(AbsDisplay(abs, formats_));
}
void LiveReading::ToolsBarTransData(double trans) {
  if (!state_.InstrumentConnected) return ToolsBarClearTransData();
  shownTrans_ = trans;
  display_.SetTransField(TransDisplay(trans, formats_));
}
void LiveReading::ToolsBarClearWaveLength() {
  shownWavelength_.reset();
  display_.SetWavelengthField({});
}
void LiveReading::ToolsBarClearAbsData() {
  shownAbs_.reset();
  display_.SetAbsField({});
}
void LiveReading::ToolsBarClearTransData() {
  shownTrans_.reset();
  display_.SetTransField({});
}

void LiveReading::ToolsBarNoValues() {
  shownWavelength_.reset();
  shownAbs_.reset();
  shownTrans_.reset();
  display_.SetWavelengthField(kNoValue);
  display_.SetAbsField(kNoValue);
  display_.SetTransField(kNoValue);
}

void LiveReading::FormatsChanged() {
  if (shownWavelength_) ToolsBarWaveLength(*shownWavelength_);
  if (shownAbs_) ToolsBarAbsData(*shownAbs_);
  if (shownTrans_) ToolsBarTransData(*shownTrans_);
}

void LiveReading::ToolsBarFullEnergyData(std::int32_t fullEnergy, std::int32_t darkEnergy,
                                         std::int32_t gainIndex) {
  state_.FullEnergy = fullEnergy;
  state_.DarkEnergy = darkEnergy;
  state_.GainIndex = gainIndex;
}

void LiveReading::mmuSetEnergy(std::int32_t energy) {
  std::fill_n(state_.EnergyRing.begin(), kEnergyRingUsed, energy);
}

void LiveReading::mmuOperationRezero(RezeroTarget* active) {
  if (!state_.InstrumentConnected) return;
  if (active) {
    active->mmuOperationRezero();
    return;
  }
  const InstrumentRun run(state_);
  if (!run.Owns()) return;
  SampleTimerStop();
  mmuRezeroEnergy();
  SampleTimerStart();
}

bool LiveReading::mmuRezeroEnergy() {
  if (!TakeReference(kRezeroSamples)) return false;
  mmuSetEnergy(state_.FullEnergy);
  return true;
}

bool LiveReading::mmuToolsbarReZero() {
  if (!state_.InstrumentConnected) return false;
  const InstrumentRun run(state_);
  if (!run.Owns()) return false;
  SampleTimerStop();
  double linkTest = 0.0;
  const bool done = instrument_.GetWavelength(linkTest) ? TakeReference(kToolbarRezeroSamples) : Failed();
  SampleTimerStart();
  return done;
}

bool LiveReading::TakeReference(std::int32_t sampleCount) {
  state_.InstrumentBusy = true;
  std::int32_t fullEnergy = 0;
  std::int32_t gain = 0;
  if (!instrument_.Rezero(fullEnergy, gain) || !instrument_.LastReply().Complete()) return Failed();
  state_.GainIndex = gain;
  sci_.PauseMs(kSettleMs);
  const std::int32_t energy = instrument_.GetEnergy(sampleCount);
  if (!instrument_.LastReply().Complete()) return Failed();
  TakeDarkEnergyOf(gain);
  state_.FullEnergy = energy;
  ShowReference();
  state_.InstrumentBusy = false;
  return true;
}

void LiveReading::ReportLinkLost() {
  linkLost_ = true;
  display_.SetRemark(Text(kCommunicationError));
}

bool LiveReading::Failed() {
  ReportLinkLost();
  state_.InstrumentBusy = false;
  return false;
}

void LiveReading::TakeDarkEnergyOf(std::int32_t gain) {
  if (gain >= 0 && gain < kGainTableSize)
    state_.DarkEnergy = state_.DarkEnergies[static_cast<std::size_t>(gain)];
}

void LiveReading::ShowReference() {
  const std::int32_t R = state_.FullEnergy;
  ToolsBarAbsData(AbsFromEnergy(R, R, state_.DarkEnergy));
  ToolsBarTransData(TransFromEnergy(R, R, state_.DarkEnergy));
  linkLost_ = false;
  display_.SetRemark(ReferenceRemark());
}

std::string LiveReading::ReferenceRemark() const {
  if (state_.FullEnergy <= state_.DarkEnergy) return kNoLight;
  const bool inTable = state_.GainIndex >= 1 && state_.GainIndex <= state_.GainCount;
  return state_.DarkTableWhole && inTable ? std::string() : std::string(kDarkIncomplete);
}

std::int32_t TrimmedMean(const InstrumentState& state) {
  std::int32_t highest = 0;
  std::int32_t lowest = kMinimumStart;
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < kEnergyRingUsed; ++i) {
    highest = std::max(highest, state.EnergyRing[i]);
    lowest = std::min(lowest, state.EnergyRing[i]);
    sum += state.EnergyRing[i];
  }
  return ToLong(static_cast<double>(sum - highest - lowest) / (kEnergyRingUsed - 2));
}

}  // namespace spectrane
