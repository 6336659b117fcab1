#include "modes/photometry/photometrytest.h"

#include <limits>

#include "base/language.h"
#include "base/numbers.h"
#include "base/textnumbers.h"
#include "link/function.h"
#include "modes/samplercells.h"

namespace spectrane {
namespace {

constexpr std::int32_t kSamples = 10;
constexpr int kTestNeedsInstrument = 970;
constexpr int kBlankWanted = 971;
constexpr int kTestCommunicationError = 972;
constexpr int kSamplerError = 1912;
// Differs from every wavelength, so that an instrument that tells none is moved.
constexpr double kUnknownWavelength = std::numeric_limits<double>::quiet_NaN();

}  // namespace

PhotometryTest::PhotometryTest(const TestBench& bench, PhotometryDocument& document)
    : bench_(bench), document_(document) {}

void PhotometryTest::mmuOperationRezero() {
  if (!bench_.State.InstrumentConnected) return;
  const InstrumentRun run(bench_.State);
  if (!run.Owns()) return;
  bench_.Live.SampleTimerStop();
  TakeBlank();
  bench_.State.InstrumentBusy = false;
  bench_.Live.SampleTimerStart();
}

bool PhotometryTest::TakeBlank() {
  InstrumentState& state = bench_.State;
  state.InstrumentBusy = true;
  double wavelength = kUnknownWavelength;
  if (!bench_.Instrument.GetWavelength(wavelength)) return LinkFailed();
  if (bench_.Instrument.LastReply().Restarted) wavelength = kUnknownWavelength;
  const std::int64_t restarts = state.RestartCount;
  if (Stopped()) return false;
  if (state.SamplerPresent && !bench_.Instrument.SetSampler(state.SamplerZeroPosition)) {
    bench_.Boxes.Show(kSamplerError);
    return false;
  }
  if (Stopped()) return false;
  if (!MoveFrom(wavelength)) return LinkFailed();
  TellWavelength();
  if (Stopped()) return false;
  // From here on the instrument may have chosen another gain: an older blank no longer fits what it reads.
  BlankDone = bench_.Live.mmuRezeroEnergy();
  if (!BlankDone) return false;
  if (state.RestartCount != restarts) {
    BlankDone = false;
    return LinkFailed();
  }
  BlankFullEnergy = state.FullEnergy;
  BlankDarkEnergy = state.DarkEnergy;
  blankGain_ = state.GainIndex;
  blankRezero_ = state.RezeroCount;
  blankRestarts_ = restarts;
  blankWavelength_ = WaveLength;
  return true;
}

bool PhotometryTest::MoveFrom(double wavelength) {
  return wavelength == WaveLength || bench_.Instrument.SetWavelength(WaveLength);
}

bool PhotometryTest::LinkFailed() {
  // It stands until the next command; a live reading that passes does not take it away.
  bench_.Display.SetRemark(Text(kCommunicationError));
  return false;
}

void PhotometryTest::TellWavelength() {
  sentMoves_ = bench_.State.LostMoves;
  bench_.State.CurrentWavelength = WaveLength;
  bench_.Live.ToolsBarWaveLength(WaveLength);
  bench_.Display.SetStatus(StatusPane::Wavelength,
                           Format(WaveLength, bench_.Formats.WavelengthFormat) + "nm");
}

bool PhotometryTest::BlankHolds() const {
  return BlankDone && blankRezero_ == bench_.State.RezeroCount &&
         blankRestarts_ == bench_.State.RestartCount && blankGain_ == bench_.State.GainIndex &&
         blankWavelength_ == WaveLength;
}

bool PhotometryTest::mmuStartTest() {
  if (!bench_.State.InstrumentConnected) {
    bench_.Boxes.Show(kTestNeedsInstrument);
    return false;
  }
  const InstrumentRun run(bench_.State);
  if (!run.Owns()) return false;
  if (!BlankHolds()) {
    bench_.Boxes.Show(kBlankWanted);
    return false;
  }
  const RunningTest test(bench_, TestRunning);
  return MeasureAll();
}

bool PhotometryTest::MeasureAll() {
  const InstrumentState& state = bench_.State;
  double wavelength = kUnknownWavelength;
  if (!bench_.Instrument.GetWavelength(wavelength)) return LinkFailed();
  if (Stopped()) return false;
  const bool sentThere = state.CurrentWavelength == WaveLength && sentMoves_ == state.LostMoves;
  const std::string astray = sentThere ? AstrayWords(WaveLength, wavelength) : std::string();
  if (!MoveFrom(wavelength)) return LinkFailed();
  TellWavelength();
  if (!astray.empty()) bench_.Display.SetRemark(astray);
  // The range of another instrument may have held the wavelength elsewhere.
  if (!BlankHolds()) {
    bench_.Boxes.Show(kBlankWanted);
    return false;
  }
  bench_.Live.ToolsBarFullEnergyData(BlankFullEnergy, BlankDarkEnergy, state.GainIndex);
  if (Stopped()) return false;
  if (!state.SamplerPresent) return MeasureRow({}) || RunFailed();
  return MeasureCells();
}

bool PhotometryTest::MeasureCells() {
  return MeasureEachCell(bench_, {[this] { return Stopped(); },
                                  [this](const std::string& note) { return MeasureRow(note) || RunFailed(); },
                                  [this] { return RunFailed(); }});
}

bool PhotometryTest::MeasureRow(const std::string& note) {
  std::int32_t samples = kSamples;
  const std::int32_t energy = bench_.Instrument.GetEnergy(samples);
  // A restart may have been heard at the sampler's command before.
  if (blankRestarts_ != bench_.State.RestartCount) return false;
  if (!bench_.Instrument.LastReply().Complete()) return false;
  document_.Append({energy, BlankFullEnergy, BlankDarkEnergy, WaveLength, note});
  const double trans = TransFromEnergy(energy, BlankFullEnergy, BlankDarkEnergy);
  const double abs = AbsFromEnergy(energy, BlankFullEnergy, BlankDarkEnergy);
  bench_.Live.ToolsBarAbsData(abs);
  bench_.Live.ToolsBarTransData(trans);
  if (OnRow) OnRow(document_.RecordCount() - 1);
  return true;
}

bool PhotometryTest::RunFailed() {
  bench_.Boxes.Show(kTestCommunicationError);
  return false;
}

}  // namespace spectrane
