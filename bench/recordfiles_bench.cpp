// Quantitation, multi wavelength and DNA files of 1,000 to 100,000 records: the time for each MB must not
// grow with the number of records (read the counters "read_us_per_MB" and "write_us_per_MB").

#include "filebench.h"
#include "files/dnafile.h"
#include "files/multifile.h"
#include "files/quafile.h"

namespace spectrane {
namespace {

template <typename OptionT, typename RecordT>
void WriteAndRead(benchmark::State& state, const FileModule<OptionT, RecordT>& module,
                  const RecordT& record) {
  const BenchFile file(std::string("a.") + module.Name);
  const auto count = static_cast<std::int32_t>(state.range(0));
  const double megabytes = static_cast<double>(count) * static_cast<double>(module.Record.Size) / 1e6;
  std::vector<double> written;
  std::vector<double> read;
  const auto timed = [&](std::vector<double>& times, auto work) {
    const auto start = std::chrono::steady_clock::now();
    const bool done = work();
    const std::chrono::duration<double, std::micro> spent = std::chrono::steady_clock::now() - start;
    times.push_back(spent.count() / megabytes);
    return done;
  };
  for (auto _ : state) {
    OptionT option;
    std::vector<RecordT> records;
    const bool done = timed(written,
                            [&] {
                              return !SaveDataFile(module, file.Path(), option, count,
                                                   [&](std::int32_t) -> const RecordT& { return record; });
                            }) &&
                      timed(read, [&] { return !LoadDataFile(module, file.Path(), option, records); });
    if (!done || records.size() != static_cast<std::size_t>(count)) {
      state.SkipWithError("the file could not be written or read");
      return;
    }
  }
  state.counters["write_us_per_MB"] = Median(written);
  state.counters["read_us_per_MB"] = Median(read);
}

void QuantitationFile(benchmark::State& state) {
  WriteAndRead<QuaOption, QuaRecord>(state, QuaModule(),
                                     {"Sample 17", {0.5, 0, 0, 0}, 12.5, "second dilution"});
}
void MultiFile(benchmark::State& state) {
  WriteAndRead<MultiOption, MultiRecord>(state, MultiModule(), {{}, 1.5, "Sample 17"});
}
void DNAFile(benchmark::State& state) {
  WriteAndRead<DNAOption, DNARecord>(state, DNAModule(), {"Sample 17", {}, 50, 600, 1.8, "second dilution"});
}

BENCHMARK(QuantitationFile)->RangeMultiplier(10)->Range(1000, 100000)->Iterations(7)->UseRealTime();
BENCHMARK(MultiFile)->RangeMultiplier(10)->Range(1000, 100000)->Iterations(7)->UseRealTime();
BENCHMARK(DNAFile)->RangeMultiplier(10)->Range(1000, 100000)->Iterations(7)->UseRealTime();

}  // namespace
}  // namespace spectrane
