#include "modes/timescan/timescantest.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/language.h"
#include "base/numbers.h"
#include "link/function.h"

namespace spectrane {
namespace {

constexpr std::int32_t kPointSamples = 20;
constexpr std::int32_t kBlankSamples = 30;
constexpr int kMoving = 931;
constexpr int kTimeScanBlankWanted = 971;
constexpr int kTimeScanNeedsInstrument = 976;
constexpr int kPutBlank = 977;
constexpr int kPutSample = 978;
constexpr int kReadingFailed = 1096;
/// So long, at most, a wait does not look whether it is to stop [ms].
constexpr std::int64_t kLookEveryMs = 10;

}  // namespace

TimeScanTest::TimeScanTest(const TestBench& bench, TimeScanDocument& document, const Clock& clock,
                           MessageLoop& loop)
    : bench_(bench), document_(document), clock_(clock), loop_(loop) {}

bool TimeScanTest::BlankHolds() const {
  const InstrumentState& state = bench_.State;
  return BlankDone && blankRezero_ == state.RezeroCount && blankRestarts_ == state.RestartCount &&
         blankMoves_ == state.LostMoves && blankGain_ == state.GainIndex &&
         blankWavelength_ == document_.Option().WorkWL;
}

void TimeScanTest::mmuOperationRezero() {
  if (!bench_.State.InstrumentConnected) return;
  const InstrumentRun run(bench_.State);
  if (!run.Owns()) return;
  TakeBlank();
}

bool TimeScanTest::TakeBlank() {
  InstrumentState& state = bench_.State;
  const auto done = [this](bool taken) {
    bench_.State.InstrumentBusy = false;
    bench_.Live.SampleTimerStart();
    return taken;
  };
  bench_.Live.SampleTimerStop();
  // A reading that was due already does not come in between.
  state.InstrumentBusy = true;
  // Equal to no wavelength: an answer without one makes the drive move.
  double wavelength = std::numeric_limits<double>::quiet_NaN();
  if (!bench_.Instrument.GetWavelength(wavelength)) return done(false);
  if (wavelength > 0) state.CurrentWavelength = wavelength;
  const std::int64_t restarts = state.RestartCount;
  // What was told before a restart is no place any more.
  if (wavelength != document_.Option().WorkWL || bench_.Instrument.LastReply().Restarted) {
    if (!Move()) return done(false);
    bench_.Boxes.Show(kPutSample);
  }
  std::int32_t blank = 0;
  std::int32_t gain = 0;
  if (!bench_.Instrument.Rezero(blank, gain) || !bench_.Instrument.LastReply().Complete()) return done(false);
  std::int32_t samples = kBlankSamples;
  const std::int32_t fullEnergy = bench_.Instrument.GetEnergy(samples);
  if (!bench_.Instrument.LastReply().Complete() || state.RestartCount != restarts) return done(false);
  bench_.Live.TakeDarkEnergyOf(gain);
  // A test takes the blank with it when it begins; points of an earlier one belong to an earlier blank.
  if (document_.DataCount() == 0) document_.SetBlank(fullEnergy, state.DarkEnergy, gain);
  bench_.Live.ToolsBarFullEnergyData(fullEnergy, state.DarkEnergy, gain);
  bench_.Live.ShowReference();
  BlankDone = true;
  blankRezero_ = state.RezeroCount;
  blankRestarts_ = restarts;
  blankMoves_ = state.LostMoves;
  blankGain_ = gain;
  blankWavelength_ = document_.Option().WorkWL;
  return done(true);
}

bool TimeScanTest::Move() {
  const InstrumentState& state = bench_.State;
  const double wanted = document_.Option().WorkWL;
  const std::string shown = Format(wanted, bench_.Formats.WavelengthFormat) + "nm";
  // The instrument would stop at the end of its range, and the points would stand under another wavelength.
  if (!(wanted >= state.WavelengthMin && wanted <= state.WavelengthMax)) {
    bench_.Display.SetRemark(shown + " is outside the range of this instrument.");
    return false;
  }
  bench_.Live.ToolsBarClearWaveLength();
  bench_.Display.SetStatus(StatusPane::Wavelength, Text(kMoving) + shown);
  double wavelength = wanted;
  if (!bench_.Instrument.SetWavelength(wavelength)) return false;
  bench_.State.CurrentWavelength = wanted;
  bench_.Live.ToolsBarWaveLength(wanted);
  bench_.Display.SetStatus(StatusPane::Wavelength, shown);
  return true;
}

TimeScanEnd TimeScanTest::mmuStartTest() {
  if (!bench_.State.InstrumentConnected) {
    bench_.Boxes.Show(kTimeScanNeedsInstrument);
    return TimeScanEnd::NotBegun;
  }
  const InstrumentRun run(bench_.State);
  if (!run.Owns()) return TimeScanEnd::NotBegun;
  bench_.Live.SampleTimerStop();
  document_.BeginTest();
  TestRunning = true;
  if (OnBegin) OnBegin();
  try {
    return Run();
  } catch (...) {
    TestRunning = false;
    throw;
  }
}

TimeScanEnd TimeScanTest::Run() {
  const auto over = [this](TimeScanEnd end) {
    TestRunning = false;
    bench_.State.InstrumentBusy = false;
    bench_.Live.SampleTimerStart();
    return end;
  };
  if (!MoveToStart()) return over(TimeScanEnd::NotBegun);
  if (!TestRunning) return over(TimeScanEnd::StoppedBefore);
  if (!BlankHolds()) {
    // Until the next command the live reading stays off, and the test counts as running.
    bench_.Boxes.Show(kTimeScanBlankWanted);
    return TimeScanEnd::NotBegun;
  }
  bench_.Live.SampleTimerStop();
  bench_.State.InstrumentBusy = true;
  const InstrumentState& state = bench_.State;
  document_.SetBlank(state.FullEnergy, state.DarkEnergy, state.GainIndex);
  TimeScanEnd end = Delay();
  if (end == TimeScanEnd::Finished) end = Measure();
  if (end == TimeScanEnd::Finished && OnFinished) OnFinished();
  return over(end);
}

bool TimeScanTest::MoveToStart() {
  if (bench_.State.CurrentWavelength == document_.Option().WorkWL) return true;
  if (!Move()) return false;
  if (!TestRunning) return true;
  bench_.Boxes.Show(kPutBlank);
  TakeBlank();
  if (TestRunning) bench_.Boxes.Show(kPutSample);
  return true;
}

TimeScanEnd TimeScanTest::Delay() {
  if (OnDelay) OnDelay();
  const double delayMs = std::max(0.0, std::ceil(document_.StartSecond() * 1000));
  const bool waited = WaitUntil(clock_.NowMs() + static_cast<std::int64_t>(std::min(delayMs, 1e12)));
  return waited ? TimeScanEnd::Finished : TimeScanEnd::StoppedBefore;
}

TimeScanEnd TimeScanTest::Measure() {
  const std::int32_t total = document_.PointTotal();
  for (std::int32_t i = 0; i < total; ++i) {
    std::int32_t energy = 0;
    if (!Read(energy)) {
      document_.EndTest(i);
      bench_.Boxes.Show(kReadingFailed);
      return TimeScanEnd::Stopped;
    }
    document_.Append(energy);
    if (OnPoint) OnPoint(i);
    const std::int64_t shown = clock_.NowMs();
    bench_.Live.ToolsBarAbsData(document_.PointAbs(i));
    bench_.Live.ToolsBarTransData(document_.PointTrans(i));
    if (!WaitUntil(shown + document_.Interval())) {
      document_.EndTest(i);
      return TimeScanEnd::Stopped;
    }
  }
  document_.EndTest(total);
  return TimeScanEnd::Finished;
}

bool TimeScanTest::Read(std::int32_t& energy) {
  for (int attempt = 0; attempt < 2; ++attempt) {
    std::int32_t samples = kPointSamples;
    energy = bench_.Instrument.GetEnergy(samples);
    // An instrument that restarted stands at another gain and wavelength: what it reads now fits no blank.
    if (blankRestarts_ != bench_.State.RestartCount) return false;
    if (bench_.Instrument.LastReply().Complete()) return true;
  }
  return false;
}

bool TimeScanTest::WaitUntil(std::int64_t deadlineMs) {
  for (;;) {
    if (!TestRunning) return false;
    const std::int64_t now = clock_.NowMs();
    if (now >= deadlineMs) return true;
    if (OnWait) OnWait(deadlineMs - now);
    loop_.RunUntil(clock_, std::min(deadlineMs, now + kLookEveryMs));
  }
}

}  // namespace spectrane
