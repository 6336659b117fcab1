// A photometry file of 100,000 rows (27.6 MB) through its procedures, beside one fwrite and one fread of as
// many bytes in the same run. Read the ratios, not the milliseconds.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "files/basicfile.h"

namespace spectrane {
namespace {

using WallClock = std::chrono::steady_clock;
constexpr std::int32_t kRows = 100000;
constexpr std::size_t kBytes = 492 + std::size_t{kRows} * 276;

/// A file in a folder of its own, gone with this object.
class BenchFile {
 public:
  BenchFile() : folder_(std::filesystem::temp_directory_path() / "spectrane-basicfile-bench") {
    std::filesystem::create_directories(folder_);
  }
  ~BenchFile() { std::filesystem::remove_all(folder_); }
  std::string Path() const { return folder_ / "a.bas"; }
  void Remove() const { std::filesystem::remove(Path()); }

 private:
  std::filesystem::path folder_;
};

/// Notes: 0 none, 1 short ones, 2 fields filled to the last byte.
std::vector<BasicRecord> MakeRows(std::int64_t notes) {
  std::vector<BasicRecord> rows;
  for (std::int32_t i = 0; i < kRows; ++i) {
    const std::string note =
        notes == 1 ? "Sampler Position " + std::to_string(i % 8 + 1) : std::string(notes == 2 ? 256 : 0, 'n');
    rows.push_back({20000 + i % 97, 50000, 120, 546.0, note});
  }
  return rows;
}

bool WriteThroughProcedures(const std::string& path, const std::vector<BasicRecord>& rows) {
  int number = 0;
  if (!CreateBasicFile(path, number, {"1.62.0", "2024-02-29  13:05:09", kRows})) return false;
  for (std::int32_t i = 0; i < kRows; ++i) WriteBasicRecord(number, rows[static_cast<std::size_t>(i)], i);
  CloseBasicFile(number);
  return !FaultOf(number);
}

bool ReadThroughProcedures(const std::string& path) {
  int number = 0;
  BasicOption option;
  BasicRecord record;
  bool whole = OpenBasicFile(path, number, option);
  for (std::int32_t i = 0; i < option.RecordCount && whole; ++i) whole = ReadBasicRecord(number, record, i);
  CloseBasicFile(number);
  benchmark::DoNotOptimize(record);
  return whole;
}

bool WriteAtOnce(const std::string& path, const std::vector<char>& bytes) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  const bool whole = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && whole;
}

bool ReadAtOnce(const std::string& path, std::vector<char>& bytes) {
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  const bool whole = std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && whole;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Times both ways in turn, so that a disturbance of the machine meets both.
template <typename Procedures, typename AtOnce, typename Between>
void Compare(benchmark::State& state, Procedures procedures, AtOnce atOnce, Between between) {
  std::vector<double> own;
  std::vector<double> peer;
  const auto timed = [&](auto& work, std::vector<double>& times) {
    between();
    const auto start = WallClock::now();
    const bool done = work();
    times.push_back(std::chrono::duration<double, std::milli>(WallClock::now() - start).count());
    return done;
  };
  for (auto _ : state) {
    if (!timed(procedures, own) || !timed(atOnce, peer)) {
      state.SkipWithError("the file could not be written or read");
      return;
    }
  }
  state.counters["procedures_ms"] = Median(own);
  state.counters["at_once_ms"] = Median(peer);
  state.counters["ratio"] = Median(own) / Median(peer);
}

void BasicFileWrite(benchmark::State& state) {
  const BenchFile file;
  const std::vector<BasicRecord> rows = MakeRows(state.range(0));
  const std::vector<char> bytes(kBytes, 'x');
  Compare(
      state, [&] { return WriteThroughProcedures(file.Path(), rows); },
      [&] { return WriteAtOnce(file.Path(), bytes); }, [&] { file.Remove(); });
}

void BasicFileRead(benchmark::State& state) {
  const BenchFile file;
  if (!WriteThroughProcedures(file.Path(), MakeRows(state.range(0)))) {
    state.SkipWithError("no file");
    return;
  }
  std::vector<char> bytes(kBytes, 'x');
  Compare(
      state, [&] { return ReadThroughProcedures(file.Path()); },
      [&] { return ReadAtOnce(file.Path(), bytes); }, [] {});
}

void BasicFileWriteAndRead(benchmark::State& state) {
  const BenchFile file;
  const std::vector<BasicRecord> rows = MakeRows(state.range(0));
  std::vector<char> bytes(kBytes, 'x');
  Compare(
      state, [&] { return WriteThroughProcedures(file.Path(), rows) && ReadThroughProcedures(file.Path()); },
      [&] { return WriteAtOnce(file.Path(), bytes) && ReadAtOnce(file.Path(), bytes); },
      [&] { file.Remove(); });
}

BENCHMARK(BasicFileWrite)->DenseRange(0, 2)->Iterations(15)->UseRealTime();
BENCHMARK(BasicFileRead)->DenseRange(0, 2)->Iterations(15)->UseRealTime();
BENCHMARK(BasicFileWriteAndRead)->DenseRange(0, 2)->Iterations(15)->UseRealTime();

}  // namespace
}  // namespace spectrane
