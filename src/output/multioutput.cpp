#include "output/multioutput.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/language.h"
#include "base/numbers.h"
#include "output/plottexts.h"

namespace spectrane {
namespace {

constexpr int kParameterHeading = 1019;
constexpr const char* kMultiReport = "Multi Wavelength Test Report";
constexpr const char* kNoMultiSamples = "No Multi-Wavelength Record!";
/// Absorbances that a page has room for beside name and result.
constexpr std::size_t kWavelengthsOfPage = 5;
constexpr std::size_t kFirstAbsColumn = 2;
constexpr const char* kBadTable = "Error Wavelength and Error Wavelength Coefficient!";

/// The same rows with some of the columns.
DataTable WithColumns(const DataTable& table, const std::vector<std::size_t>& columns) {
  DataTable part = table;
  part.Columns.clear();
  for (const std::size_t column : columns) part.Columns.push_back(table.Columns[column]);
  part.CellAt = [cellAt = table.CellAt, columns](std::int32_t row, std::size_t column) {
    return cellAt(row, columns[column]);
  };
  return part;
}

/// The table in parts that a page is wide enough for: number and name with some of the wavelengths each, the
/// result with the last of them.
std::vector<DataTable> PageTables(const DataTable& table) {
  const std::size_t result = table.Columns.size() - 1;
  const std::size_t wavelengths = result - kFirstAbsColumn;
  if (wavelengths <= kWavelengthsOfPage) return {table};
  std::vector<DataTable> parts;
  for (std::size_t first = 0; first < wavelengths; first += kWavelengthsOfPage) {
    const std::size_t end = std::min(first + kWavelengthsOfPage, wavelengths);
    std::vector<std::size_t> columns = {0, 1};
    for (std::size_t k = first; k < end; ++k) columns.push_back(kFirstAbsColumn + k);
    if (end == wavelengths) columns.push_back(result);
    parts.push_back(WithColumns(table, columns));
    parts.back().Heading = Text(kWavelengthWord) + " " + std::to_string(first + 1);
    if (end > first + 1) parts.back().Heading += " - " + std::to_string(end);
  }
  if (table.RowCount == 0) {
    parts.resize(1);
    parts.front().Heading = table.Heading;
  }
  return parts;
}

}  // namespace

std::string MultiFormula(const MultiOption& option) {
  if (!IsMultiTableGood(option)) return kBadTable;
  std::string terms;
  for (std::size_t k = 0; k < static_cast<std::size_t>(option.WorkWLNo); ++k) {
    if (k > 0) terms += "+";
    terms += Format(option.Parameter[k], "0.000") + "×" + AbsAt(option.WorkWaveLength[k]);
  }
  return "Result = " + terms;
}

DataTable MultiSampleTable(const MultiDocument& document, const DisplayFormats& formats) {
  const auto pattern = [formats](double value) { return MultiPattern(value, formats); };
  const auto wavelengths = static_cast<std::size_t>(MultiWavelengths(document.Option()));
  DataTable table;
  table.Columns = {{Text(kNumberTitle), "0", 6}, {Text(kSampleNameTitle), "", 24}};
  for (std::size_t k = 0; k < wavelengths; ++k)
    table.Columns.push_back({AbsAt(document.Option().WorkWaveLength[k]), kBySize, 14, pattern});
  table.Columns.push_back({Text(kResultTitle), kBySize, 12, pattern});
  table.RowCount = document.RecordCount();
  table.EmptyWords = kNoMultiSamples;
  table.CellAt = [&document, wavelengths](std::int32_t row, std::size_t column) -> TableCell {
    const MultiRecord& record = document.Record(row);
    if (column == 0) return row + 1.0;
    if (column == 1) return record.Name;
    const std::size_t k = column - kFirstAbsColumn;
    return k < wavelengths ? record.Abs[k] : record.Result;
  };
  return table;
}

ExportSheet MultiSheet(const MultiDocument& document, const DisplayFormats& formats,
                       const DocumentHead& head) {
  ExportSheet sheet;
  sheet.Lines = {head.Name(), kMultiReport + head.TimeWords(), MultiFormula(document.Option())};
  sheet.Tables = {MultiSampleTable(document, formats)};
  return sheet;
}

Report MultiReport(const MultiDocument& document, const DisplayFormats& formats, const DocumentHead& head) {
  Report report = ReportOf(head, kMultiReport);
  report.Blocks.emplace_back(ReportText{QString::fromStdString(Text(kParameterHeading)),
                                        QString::fromStdString(MultiFormula(document.Option()))});
  for (DataTable& table : PageTables(MultiSampleTable(document, formats)))
    report.Blocks.emplace_back(std::move(table));
  return report;
}

}  // namespace spectrane
