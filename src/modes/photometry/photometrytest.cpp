#include "modes/photometry/photometrytest.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/language.h"
#include "base/numbers.h"
#include "base/textnumbers.h"
#include "link/function.h"

namespace spectrane {
namespace {

constexpr std::int32_t kSamples = 10;
constexpr int kTestNeedsInstrument = 970;
constexpr int kBlankWanted = 971;
constexpr int kTestCommunicationError = 972;
constexpr int kSamplerError = 1912;
/// Finest step of a monochromator [nm].
constexpr double kDriveStep = 0.1001;
constexpr const char* kAstrayFormat = "0.0nm";
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
  BlankFullEnergy = state.FullEnergy;
  BlankDarkEnergy = state.DarkEnergy;
  blankGain_ = state.GainIndex;
  blankRezero_ = state.RezeroCount;
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
  bench_.State.CurrentWavelength = WaveLength;
  bench_.Live.ToolsBarWaveLength(WaveLength);
  bench_.Display.SetStatus(StatusPane::Wavelength,
                           Format(WaveLength, bench_.Formats.WavelengthFormat) + "nm");
}

bool PhotometryTest::BlankHolds() const {
  return BlankDone && blankRezero_ == bench_.State.RezeroCount && blankGain_ == bench_.State.GainIndex &&
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
  // Nobody has sent it elsewhere since the blank: a drive that answers a move and does not go stands there.
  const bool astray = state.CurrentWavelength == WaveLength && std::abs(wavelength - WaveLength) > kDriveStep;
  if (!MoveFrom(wavelength)) return LinkFailed();
  TellWavelength();
  if (astray) {
    bench_.Display.SetRemark("The instrument stood at " + Format(wavelength, kAstrayFormat) +
                             ", not where it was sent: what was read last may be of that wavelength.");
  }
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
  const auto& used = bench_.State.SamplerPositions;
  if (std::none_of(used.begin() + 1, used.end(), [](bool position) { return position; })) {
    bench_.Display.SetRemark("No sampler position is in use.");
    return true;
  }
  for (std::int32_t position = 1; position <= kSamplerPositionCount; ++position) {
    if (!bench_.State.SamplerPositions[static_cast<std::size_t>(position)]) continue;
    if (Stopped()) return false;
    std::int32_t cell = position;
    if (!bench_.Instrument.SetSampler(cell)) return RunFailed();
    if (Stopped()) return false;
    if (!MeasureRow("Sampler Position " + std::to_string(position))) return RunFailed();
  }
  return true;
}

bool PhotometryTest::MeasureRow(const std::string& note) {
  std::int32_t samples = kSamples;
  const std::int32_t energy = bench_.Instrument.GetEnergy(samples);
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
