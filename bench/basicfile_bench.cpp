// A photometry file of 100,000 rows (27.6 MB) through its procedures, beside one fwrite and one fread of as
// many bytes in the same run. Read the ratios, not the milliseconds.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "filebench.h"
#include "files/basicfile.h"

namespace spectrane {
namespace {

constexpr std::int32_t kRows = 100000;
constexpr std::size_t kBytes = 492 + std::size_t{kRows} * 276;

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

void BasicFileWrite(benchmark::State& state) {
  const BenchFile file("a.bas");
  const std::vector<BasicRecord> rows = MakeRows(state.range(0));
  const std::vector<char> bytes(kBytes, 'x');
  Compare(
      state, [&] { return WriteThroughProcedures(file.Path(), rows); },
      [&] { return WriteAtOnce(file.Path(), bytes); }, [&] { file.Remove(); });
}

void BasicFileRead(benchmark::State& state) {
  const BenchFile file("a.bas");
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
  const BenchFile file("a.bas");
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
