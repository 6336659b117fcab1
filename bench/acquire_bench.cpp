// A spectrum of 861 points from the simulated instrument at once over a pseudo-terminal, beside the bare
// exchanges of the same texts on the same line in the same run: what a scan costs beyond its exchanges. Read
// overhead_percent.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "acquire/spectrumscan.h"
#include "base/brand.h"
#include "link/exclusion.h"
#include "link/instrumentlink.h"
#include "simulator/simulatedline.h"

namespace spectrane {
namespace {

using ScanClock = std::chrono::steady_clock;

/// The simulated instrument at the far end of a pseudo-terminal.
class InstantInstrument {
 public:
  InstantInstrument() {
    master_ = posix_openpt(O_RDWR | O_NOCTTY);
    grantpt(master_);
    unlockpt(master_);
    path_ = ptsname(master_);
    slave_ = open(path_.c_str(), O_RDWR | O_NOCTTY);
    termios raw = {};
    tcgetattr(slave_, &raw);
    cfmakeraw(&raw);
    tcsetattr(slave_, TCSANOW, &raw);
    thread_ = std::thread([this] { Serve(); });
  }
  ~InstantInstrument() {
    stop_ = true;
    thread_.join();
    close(slave_);
    close(master_);
  }
  const std::string& Path() const { return path_; }

 private:
  void Serve() {
    SimulatedLine instrument({.Instant = true});
    while (!stop_) {
      pollfd wait = {master_, POLLIN, 0};
      if (poll(&wait, 1, 50) <= 0) continue;
      char buffer[256];
      const ssize_t count = read(master_, buffer, sizeof buffer);
      if (count <= 0) continue;
      for (const Delivery& piece : instrument.Receive({buffer, static_cast<std::size_t>(count)}, 0)) {
        static_cast<void>(!write(master_, piece.Bytes.data(), piece.Bytes.size()));
      }
    }
  }

  int master_ = -1;
  int slave_ = -1;
  std::string path_;
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

class ScanPort : public SerialPortList {
 public:
  explicit ScanPort(std::string path) : path_(std::move(path)) {}
  std::string Path(int number) const override { return number == 1 ? path_ : std::string(); }

 private:
  std::string path_;
};

/// Nothing is shown.
class NoDisplay : public MainDisplay, public Messages {
 public:
  void SetWavelengthField(const std::string&) override {}
  void SetAbsField(const std::string&) override {}
  void SetTransField(const std::string&) override {}
  void SetStatus(StatusPane, const std::string&) override {}
  void SetRemark(const std::string&) override {}
  bool DataDisplayShown() const override { return false; }
  void EnableSampleTimer(bool) override {}
  void Lock(bool) override {}
  void UpdateCommands() override {}
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
  const InstantInstrument instrument;
  const std::string folder = std::filesystem::temp_directory_path() / "spectrane-acquire-bench";
  std::filesystem::create_directories(folder);
  ScanPort ports(instrument.Path());
  SteadyClock clock;
  TimedLoop loop;
  const auto turn = MakeNamedExclusion("ex_sim_sci");
  Setting settings(folder);
  NoDisplay display;
  InstrumentLink link({ports, clock, loop, *turn, settings, display, display, BuildBrand()});
  AcquisitionSteps steps({link.Instrument, link.State, link.Live, display, display, link.Formats});
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
