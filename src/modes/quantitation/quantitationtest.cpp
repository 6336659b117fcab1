#include "modes/quantitation/quantitationtest.h"

#include "base/language.h"
#include "base/numbers.h"
#include "link/function.h"
#include "modes/samplercells.h"

namespace spectrane {
namespace {

constexpr std::int32_t kSamples = 10;
constexpr int kMovingTo = 931;
constexpr int kNoInstrument = 1044;
constexpr int kCommunicationError = 1045;
constexpr int kBlankWanted = 1048;
constexpr int kCurveError = 1209;
constexpr int kSamplerError = 1912;
constexpr const char* kMoveFormat = "0.0nm";

}  // namespace

QuantitationTest::QuantitationTest(const TestBench& bench, QuantitationDocument& document)
    : bench_(bench), document_(document) {}

void QuantitationTest::mmuOperationRezero() {
  if (!bench_.State.InstrumentConnected) return;
  const InstrumentRun run(bench_.State);
  if (!run.Owns()) return;
  bench_.Live.SampleTimerStop();
  bench_.State.InstrumentBusy = true;
  const bool taken = TakeBlanks();
  bench_.State.InstrumentBusy = false;
  if (taken) TellFit(document_.Refit());
  bench_.Live.SampleTimerStart();
}

bool QuantitationTest::TakeBlanks() {
  if (!AskWavelength()) {
    bench_.Display.SetRemark(Text(kCommunicationError));
    return false;
  }
  document_.SetBlankDone(false);
  InstrumentState& state = bench_.State;
  const std::int64_t restarts = state.RestartCount;
  if (Stopped()) return false;
  if (state.SamplerPresent && !bench_.Instrument.SetSampler(state.SamplerZeroPosition)) {
    bench_.Boxes.Show(kSamplerError);
    return false;
  }
  const QuaOption& option = document_.Option();
  std::string dark;
  for (std::size_t i = 0; i < WavelengthsInUse(option); ++i) {
    if (Stopped() || !TakeBlank(i)) return false;
    if (option.BlankFullEnergy[i] <= option.BlankDarkEnergy[i]) {
      dark = "The blank gives no light at " + Format(WaveLength(i), kMoveFormat) + ".";
    }
  }
  if (state.RestartCount != restarts) return Failed();
  if (dark.empty()) dark = astray_;
  bench_.Display.SetRemark(dark.empty() ? bench_.Live.ReferenceRemark() : dark);
  document_.SetBlankDone(true);
  blankRezero_ = state.RezeroCount;
  blankRestarts_ = restarts;
  return true;
}

bool QuantitationTest::TakeBlank(std::size_t index) {
  if (!MoveTo(index, true)) return false;
  if (Stopped()) return false;
  std::int32_t fullEnergy = 0;
  std::int32_t gain = 0;
  if (!bench_.Instrument.Rezero(fullEnergy, gain) || !bench_.Instrument.LastReply().Complete())
    return Failed();
  // A sample could not be read at another gain than the instrument has.
  if (gain < 1 || gain > bench_.State.GainCount) return Failed();
  bench_.Live.TakeDarkEnergyOf(gain);
  const std::int32_t darkEnergy = bench_.State.DarkEnergy;
  document_.SetBlank(static_cast<std::int32_t>(index), fullEnergy, darkEnergy, gain);
  // The live reading goes on at the gain that was chosen now.
  bench_.Live.ToolsBarFullEnergyData(fullEnergy, darkEnergy, gain);
  bench_.Live.ShowReference();
  return true;
}

bool QuantitationTest::AskWavelength() {
  astray_.clear();
  standsAt_ = kNowhere;
  if (!bench_.Instrument.GetWavelength(standsAt_)) return false;
  if (sentMoves_ != bench_.State.LostMoves) return true;
  const double sent = bench_.State.CurrentWavelength;
  for (std::size_t i = 0; i < WavelengthsInUse(document_.Option()); ++i) {
    if (WaveLength(i) == sent) astray_ = AstrayWords(sent, standsAt_);
  }
  return true;
}

bool QuantitationTest::AskBeforeTest() {
  if (!AskWavelength()) return Failed();
  if (BlankHolds()) return true;
  bench_.Boxes.Show(kBlankWanted);
  return false;
}

bool QuantitationTest::MoveTo(std::size_t index, bool always) {
  const InstrumentState& state = bench_.State;
  const double wanted = WaveLength(index);
  // The instrument would stop at the end of its range, and the reading would stand under another wavelength.
  if (!(wanted >= state.WavelengthMin && wanted <= state.WavelengthMax)) {
    bench_.Display.SetRemark(Format(wanted, kMoveFormat) + " is outside the range of this instrument.");
    return false;
  }
  bench_.Display.SetRemark(Text(kMovingTo) + " " + Format(wanted, kMoveFormat));
  double wavelength = wanted;
  if ((always || standsAt_ != wanted) && !bench_.Instrument.SetWavelength(wavelength)) return Failed();
  standsAt_ = wanted;
  sentMoves_ = state.LostMoves;
  bench_.State.CurrentWavelength = wanted;
  bench_.Live.ToolsBarWaveLength(wanted);
  bench_.Display.SetStatus(StatusPane::Wavelength, Format(wanted, bench_.Formats.WavelengthFormat) + "nm");
  return true;
}

bool QuantitationTest::BlankHolds() const {
  const InstrumentState& state = bench_.State;
  return document_.Option().BlankDone && blankRezero_ == state.RezeroCount &&
         blankRestarts_ == state.RestartCount;
}

bool QuantitationTest::mmuStartTest() {
  if (!bench_.State.InstrumentConnected) {
    bench_.Boxes.Show(kNoInstrument);
    return false;
  }
  if (TestRunning) return false;
  const InstrumentRun run(bench_.State);
  if (!run.Owns()) return false;
  if (!BlankHolds()) {
    bench_.Boxes.Show(kBlankWanted);
    return false;
  }
  if (!document_.CurveHolds()) {
    bench_.Boxes.ShowError(kCurveError);
    return false;
  }
  const RunningTest test(bench_, TestRunning);
  return AskBeforeTest() && MeasureAll();
}

bool QuantitationTest::MeasureAll() {
  if (Stopped()) return false;
  return bench_.State.SamplerPresent ? MeasureCells() : MeasureSample({});
}

bool QuantitationTest::MeasureCells() {
  return MeasureEachCell(
      bench_, {[this] { return Stopped(); }, [this](const std::string& name) { return MeasureSample(name); },
               [this] { return Failed(); }});
}

bool QuantitationTest::MeasureSample(const std::string& name) {
  if (OnSampleBegun) OnSampleBegun(name);
  Readings abs{};
  if (!Read(abs, OnReading)) {
    if (OnSampleDropped) OnSampleDropped();
    return false;
  }
  document_.Append(document_.MakeRecord(name, abs[0], abs[1]));
  bench_.Display.SetRemark(astray_);
  if (OnRecord) OnRecord(document_.RecordCount() - 1);
  return true;
}

bool QuantitationTest::MeasureStandard(std::int32_t row) {
  if (TestRunning || !document_.FitsStandards()) return false;
  if (!BlankHolds()) {
    bench_.Boxes.Show(kBlankWanted);
    return false;
  }
  if (!bench_.State.InstrumentConnected) {
    bench_.Boxes.Show(kNoInstrument);
    return false;
  }
  const InstrumentRun run(bench_.State);
  if (!run.Owns()) return false;
  const RunningTest test(bench_, TestRunning);
  return AskBeforeTest() && ReadStandard(row);
}

bool QuantitationTest::ReadStandard(std::int32_t row) {
  if (Stopped()) return false;
  if (bench_.State.SamplerPresent && SelectSampler && !SelectSampler()) return false;
  Readings abs{};
  if (Stopped() || !Read(abs, {})) return false;
  bench_.Display.SetRemark(astray_);
  TellFit(document_.SetStandardReadings(row, abs[0], abs[1]));
  return true;
}

bool QuantitationTest::Read(Readings& abs, const std::function<void(std::size_t, double)>& onReading) {
  const std::size_t count = WavelengthsInUse(document_.Option());
  for (std::size_t i = 0; i < count; ++i) {
    if (Stopped() || !MoveTo(i, count > 1) || Stopped() || !ReadAt(i, abs[i])) return false;
    if (onReading) onReading(i, abs[i]);
  }
  return true;
}

bool QuantitationTest::ReadAt(std::size_t index, double& abs) {
  const std::int32_t full = document_.Option().BlankFullEnergy[index];
  const std::int32_t dark = document_.Option().BlankDarkEnergy[index];
  std::int32_t gain = document_.Option().BlankGain[index];
  if (!bench_.Instrument.SetGain(gain)) return Failed();
  bench_.Live.ToolsBarFullEnergyData(full, dark, gain);
  if (Stopped()) return false;
  std::int32_t samples = kSamples;
  const std::int32_t energy = bench_.Instrument.GetEnergy(samples);
  // A restart may have been heard at a command before.
  if (blankRestarts_ != bench_.State.RestartCount) return Failed();
  if (!bench_.Instrument.LastReply().Complete()) return Failed();
  abs = AbsFromEnergy(energy, full, dark);
  bench_.Live.ToolsBarAbsData(abs);
  bench_.Live.ToolsBarTransData(TransFromEnergy(energy, full, dark));
  return true;
}

bool QuantitationTest::Failed() {
  bench_.Display.SetRemark({});
  bench_.Boxes.Show(kCommunicationError);
  return false;
}

void QuantitationTest::TellFit(FitOutcome outcome) {
  if (outcome == FitOutcome::Rejected) bench_.Boxes.ShowError(kCurveError);
}

}  // namespace spectrane
