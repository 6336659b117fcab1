// A spectrum of 861 points from the simulated instrument at once over a pseudo-terminal, beside the bare
// exchanges of the same texts on the same line in the same run: what a scan costs beyond its exchanges. Read
// overhead_percent.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "acquire/spectrumscan.h"
#include "base/brand.h"
#include "farend.h"
#include "link/exclusion.h"
#include "link/instrumentlink.h"
#include "link/silentdisplay.h"
#include "simulator/simulatedline.h"

namespace spectrane {
namespace {

using ScanClock = std::chrono::steady_clock;

/// The simulated instrument at the far end of a line.
FarEnd::Serve InstantInstrument() {
  const auto instrument = std::make_shared<SimulatedLine>(InstrumentOptions{.Instant = true});
  return [instrument](FarEnd& line, std::string_view bytes) {
    for (const Delivery& piece : instrument->Receive(std::string(bytes), 0)) line.Write(piece.Bytes);
  };
}

class NoBoxes : public Messages {
 public:
  void Show(int, const std::string&) override {}
};

double Seconds(ScanClock::time_point since) {
  return std::chrono::duration<double>(ScanClock::now() - since).count();
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

/// The program's loop with a stopwatch: an exchange lets it run once at its beginning and once at its end.
class TimedLoop : public MessageLoop {
 public:
  void RunOnce() override {
    inside_ = !inside_;
    if (inside_) begin_ = ScanClock::now();
    loop_.RunOnce();
    if (!inside_) InExchanges += Seconds(begin_);
  }
  void RunUntil(const Clock& clock, std::int64_t deadlineMs) override { loop_.RunUntil(clock, deadlineMs); }

  /// [s]
  double InExchanges = 0;

 private:
  QtMessageLoop loop_;
  bool inside_ = false;
  ScanClock::time_point begin_;
};

void ScanOfASpectrum(benchmark::State& state) {
  const FarEnd instrument(InstantInstrument());
  const std::string folder = std::filesystem::temp_directory_path() / "spectrane-acquire-bench";
  std::filesystem::create_directories(folder);
  NearEnd ports(instrument.Path());
  SteadyClock clock;
  TimedLoop loop;
  const auto turn = MakeNamedExclusion("ex_sim_sci");
  Setting settings(folder);
  SilentDisplay display;
  NoBoxes boxes;
  InstrumentLink link({ports, clock, loop, *turn, settings, display, boxes, BuildBrand()});
  AcquisitionSteps steps({link.Instrument, link.State, link.Live, display, boxes, link.Formats});
  std::vector<BSLRecord> references;
  if (!link.Connect.mmuOperationConnect() ||
      ScanReferences(steps, ScanGrid::Between(2300, 6600, 5), references) != AcquisitionEnd::Finished) {
    state.SkipWithError("the instrument does not answer");
    return;
  }
  std::int32_t done = 0;
  steps.StopWanted = [] { return false; };
  steps.OnDone = [&done](std::int32_t points) { done = points; };
  std::vector<double> seconds;
  std::vector<double> overhead;
  for (auto _ : state) {
    std::vector<WLSRecord> points;
    loop.InExchanges = 0;
    const auto start = ScanClock::now();
    const AcquisitionEnd end = ScanSpectrum(steps, references, 20, points);
    seconds.push_back(Seconds(start));
    overhead.push_back((seconds.back() / loop.InExchanges - 1.0) * 100.0);
    if (end != AcquisitionEnd::Finished || points.size() != references.size()) {
      state.SkipWithError("the scan failed");
      return;
    }
  }
  state.counters["point_us"] = Median(seconds) / static_cast<double>(references.size()) * 1e6;
  state.counters["overhead_percent"] = Median(overhead);
  link.Connect.ReleaseConnection();
}

BENCHMARK(ScanOfASpectrum)->Iterations(15)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace spectrane
