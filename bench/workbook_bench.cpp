// A spreadsheet of a whole spectrum, 10001 rows of seven numbers, in memory.

#include <benchmark/benchmark.h>

#include "output/workbook/workbook.h"

namespace spectrane {
namespace {

void WorkbookOfASpectrum(benchmark::State& state) {
  for (auto _ : state) {
    Workbook book("sheet1");
    const Workbook::Style style = book.AddStyle({.NumberFormat = "0.000"});
    for (std::uint32_t row = 0; row < 10001; ++row) {
      for (std::uint32_t column = 0; column < 7; ++column)
        book.WriteNumber(row, column, row * 0.1 + column, style);
    }
    benchmark::DoNotOptimize(book.Bytes());
  }
}
BENCHMARK(WorkbookOfASpectrum)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace spectrane
