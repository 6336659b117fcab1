// One `ge 10` exchange over a pseudo-terminal, beside a bare write/poll/read loop on the same line in the
// same run. Read the ratios of the medians, not the milliseconds.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <QCoreApplication>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "base/setting.h"
#include "farend.h"
#include "link/exclusion.h"
#include "link/interface.h"
#include "link/messageloop.h"

namespace spectrane {
namespace {

using WallClock = std::chrono::steady_clock;
constexpr double kMicrosecondsPerByte = 10.0 / 115200 * 1e6;  // 8N1: ten bits a byte

/// Answers every line, at once, in pieces as on the wire, or after a delay.
class Peer {
 public:
  Peer(std::size_t pieceBytes, int delayMs) : pieceBytes_(pieceBytes), delayMs_(delayMs) {}

  void operator()(FarEnd& line, std::string_view bytes) {
    received_ += bytes;
    for (std::size_t end; (end = received_.find('\r')) != std::string::npos; received_.erase(0, end + 1)) {
      Answer(line, received_.substr(0, end));
    }
  }

 private:
  void Answer(FarEnd& line, const std::string& command) const {
    std::string reply = command + "\r\n";
    for (int i = 0; i < 10; ++i) reply += "25000\r\n";
    reply += ">";
    if (delayMs_ > 0) std::this_thread::sleep_for(std::chrono::milliseconds(delayMs_));
    if (pieceBytes_ == 0) {
      line.Write(reply);
      return;
    }
    // The command's own bytes took their time on the wire too.
    double due = static_cast<double>(command.size() + 1) * kMicrosecondsPerByte;
    const auto start = WallClock::now();
    for (std::size_t at = 0; at < reply.size(); at += pieceBytes_) {
      const std::string_view piece = std::string_view(reply).substr(at, pieceBytes_);
      due += static_cast<double>(piece.size()) * kMicrosecondsPerByte;
      std::this_thread::sleep_until(start + std::chrono::microseconds(static_cast<std::int64_t>(due)));
      line.Write(piece);
    }
  }

  std::size_t pieceBytes_;
  int delayMs_;
  std::string received_;
};

double ThreadCpuSeconds() {
  rusage usage = {};
  getrusage(RUSAGE_THREAD, &usage);
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Runs `exchange` once an iteration and reports the median, the 99th percentile and the share of one core.
template <class Exchange>
void Measure(benchmark::State& state, Exchange exchange) {
  std::vector<double> microseconds;
  const double cpuBefore = ThreadCpuSeconds();
  const auto begin = WallClock::now();
  for (auto _ : state) {
    const auto start = WallClock::now();
    if (!exchange()) {
      state.SkipWithError("the exchange failed");
      return;
    }
    microseconds.push_back(std::chrono::duration<double, std::micro>(WallClock::now() - start).count());
  }
  const double wall = std::chrono::duration<double>(WallClock::now() - begin).count();
  std::sort(microseconds.begin(), microseconds.end());
  state.counters["median_us"] = microseconds[microseconds.size() / 2];
  state.counters["p99_us"] = microseconds[microseconds.size() * 99 / 100];
  state.counters["cpu_percent"] = (ThreadCpuSeconds() - cpuBefore) / wall * 100.0;
}

/// How the far end answers: bytes a piece (0: all at once) and a delay before [ms].
Peer MakePeer(const benchmark::State& state) {
  return Peer(static_cast<std::size_t>(state.range(0)), static_cast<int>(state.range(1)));
}

void BareLoop(benchmark::State& state) {
  const FarEnd peer(MakePeer(state));
  const int line = open(peer.Path().c_str(), O_RDWR | O_NOCTTY);
  Measure(state, [line] {
    const std::string command = "ge 10\r";
    if (write(line, command.data(), command.size()) != static_cast<ssize_t>(command.size())) return false;
    std::string reply;
    while (reply.empty() || reply.back() != '>') {
      pollfd wait = {line, POLLIN, 0};
      if (poll(&wait, 1, 5000) <= 0) return false;
      char buffer[512];
      const ssize_t count = read(line, buffer, sizeof buffer);
      if (count <= 0) return false;
      reply.append(buffer, static_cast<std::size_t>(count));
    }
    return true;
  });
  close(line);
}

void InterfaceGetEnergy(benchmark::State& state) {
  const FarEnd peer(MakePeer(state));
  const std::string folder = std::filesystem::temp_directory_path() / "spectrane-exchange-bench";
  std::filesystem::create_directories(folder);
  NearEnd ports(peer.Path());
  SteadyClock clock;
  QtMessageLoop loop;
  const auto turn = MakeNamedExclusion("ex_sim_sci");
  SCI sci(ports, clock, loop, *turn);
  InstrumentState instrumentState;
  Setting settings(folder);
  Interface instrument(sci, instrumentState, settings);
  int number = 1;
  if (!sci.OpenPort(number)) {
    state.SkipWithError("the port cannot be opened");
    return;
  }
  Measure(state, [&instrument] {
    std::int32_t samples = 10;
    return instrument.GetEnergy(samples) == 25000;
  });
}

// At once.
BENCHMARK(BareLoop)->Args({0, 0})->Iterations(4000)->UseRealTime();
BENCHMARK(InterfaceGetEnergy)->Args({0, 0})->Iterations(4000)->UseRealTime();
// Paced as on the wire: byte by byte, and in pieces of 16 as from a FIFO.
BENCHMARK(BareLoop)->Args({1, 0})->Args({16, 0})->Iterations(300)->UseRealTime();
BENCHMARK(InterfaceGetEnergy)->Args({1, 0})->Args({16, 0})->Iterations(300)->UseRealTime();
// A reply awaited for three seconds.
BENCHMARK(InterfaceGetEnergy)->Args({0, 3000})->Iterations(2)->UseRealTime();

}  // namespace
}  // namespace spectrane
