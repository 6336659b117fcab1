// What keeping a journal costs a measurement: the row or point that came is appended, beside one write of as
// many bytes in the same run.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "files/basicfile.h"
#include "files/journalkeeper.h"
#include "files/quafile.h"
#include "files/tsfile.h"

namespace spectrane {
namespace {

/// Appends to a document that has `range(0)` records already; with range(1) the whole document is compared,
/// as after an edit, not the new record alone.
template <typename OptionT, typename RecordT>
void JournalAppend(benchmark::State& state, const FileModule<OptionT, RecordT>& module) {
  const std::string folder = std::filesystem::temp_directory_path().string() + "/journal-bench";
  const OptionT option;
  std::vector<RecordT> records(static_cast<std::size_t>(state.range(0)));
  JournalKeeper keeper(folder);
  const auto keep = [&](std::int32_t first) {
    return keeper.Keep(JournalImageOf(module, option, static_cast<std::int32_t>(records.size()),
                                      [&records](std::int32_t i) -> const RecordT& {
                                        return records[static_cast<std::size_t>(i)];
                                      }),
                       first, false);
  };
  bool kept = keep(0);
  for (auto _ : state) {
    records.emplace_back();
    kept = kept && keep(state.range(1) != 0 ? 0 : static_cast<std::int32_t>(records.size()) - 1);
    if (keeper.Size() < kLargestJournal / 2) continue;
    state.PauseTiming();
    records.resize(static_cast<std::size_t>(state.range(0)));
    keeper.Drop();
    kept = kept && keep(0);
    state.ResumeTiming();
  }
  if (!kept) state.SkipWithError("no journal");
  keeper.Drop();
}

BENCHMARK_CAPTURE(JournalAppend, Photometry, BasicModule())
    ->Args({100, 0})
    ->Args({10000, 0})
    ->Args({10000, 1});
BENCHMARK_CAPTURE(JournalAppend, TimeScan, TSModule())->Args({100, 0})->Args({10000, 0})->Args({10000, 1});
BENCHMARK_CAPTURE(JournalAppend, Quantitation, QuaModule())->Args({100, 0})->Args({1000, 1});

void PlainWrite(benchmark::State& state) {
  const std::string path = std::filesystem::temp_directory_path().string() + "/journal-bench-plain";
  const std::string bytes(static_cast<std::size_t>(state.range(0)), 'x');
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  std::setvbuf(file, nullptr, _IONBF, 0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(std::fwrite(bytes.data(), 1, bytes.size(), file));
    if (std::ftell(file) > (1 << 25)) std::rewind(file);
  }
  std::fclose(file);
  std::filesystem::remove(path);
}
BENCHMARK(PlainWrite)->Arg(293)->Arg(29);

}  // namespace
}  // namespace spectrane
