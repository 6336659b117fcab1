#include "cli/tablecommand.h"

#include <algorithm>
#include <span>

#include "acquire/wavelengthtable.h"
#include "cli/jsonblock.h"
#include "files/dnafile.h"
#include "files/multifile.h"
#include "modes/dna/dnadocument.h"
#include "modes/dna/dnaresult.h"
#include "modes/multi/multiresult.h"
#include "modes/multi/multisettings.h"
#include "modes/samplercells.h"

namespace spectrane {
namespace {

constexpr const char* kRowUnit = "row";
std::string RowName(std::int32_t place, std::size_t row) {
  return place != 0 ? SamplerCellName(place) : "Sample " + std::to_string(row + 1);
}

/// Blank, then all samples. Each finished sample is handed to `take`.
AcquisitionDesk::Problem MeasureRows(
    AcquisitionDesk& desk, const TableOrder& order, const std::vector<double>& wavelengths,
    const std::function<void(std::int32_t place, const std::vector<double>& abs)>& take) {
  const auto rows = static_cast<std::int32_t>(desk.Places().size()) * order.Count;
  const PlannedPass samples = PlanTableSamples(wavelengths, rows);
  desk.Announce({PlanTableBlank(wavelengths), samples});
  if (auto problem = desk.ReadDark()) return problem;
  WavelengthTable table(desk.Steps(), wavelengths);
  if (auto problem = desk.AskForBlank(false)) return problem;
  if (auto problem = desk.ProblemOf(table.TakeBlanks())) return problem;
  ProgressBar bar = desk.MakeBar(samples, desk.AsksForSamples());
  for (std::int32_t row = 0; row < rows; ++row) {
    const std::int32_t place = desk.Places()[static_cast<std::size_t>(row) % desk.Places().size()];
    std::vector<double> abs;
    bar.Show(row);
    if (auto problem = desk.AskForSample(place, false)) return problem;
    if (auto problem = desk.ProblemOf(table.MeasureSample(abs))) return problem;
    take(place, abs);
  }
  bar.Show(rows);
  return std::nullopt;
}

/// Saves the rows and ends the command.
template <typename OptionT, typename RecordT>
void FinishTable(AcquisitionDesk& desk, const AcquisitionDesk::Problem& problem,
                 const FileModule<OptionT, RecordT>& module, const OptionT& option,
                 const std::vector<RecordT>& records) {
  const auto count = static_cast<std::int32_t>(records.size());
  const auto unsaved = desk.Save(0, count, [&](const std::string& path) {
    return SaveDataFile(module, path, option, count, [&](std::int32_t i) -> const RecordT& {
      return records[static_cast<std::size_t>(i)];
    });
  });
  desk.Finish(AcquisitionDesk::Joined(problem, unsaved), kRowUnit, [&](Json& result) {
    Json rows = Json::array();
    for (const RecordT& record : records) rows.push_back(JsonOfBlock(module.Record.Fields, &record));
    result["data"] = rows;
  });
}

void ConnectFor(AcquisitionDesk& desk, const std::vector<double>& wavelengths) {
  desk.RefuseOutputs(false, 0);
  const auto [lowest, highest] = std::minmax_element(wavelengths.begin(), wavelengths.end());
  desk.Connect(*lowest, *highest);
}

MultiOption OptionOf(const MultiOrder& order) {
  MultiOption option;
  option.WorkWLNo = static_cast<std::int32_t>(order.Wavelengths.size());
  for (std::size_t k = 0; k < static_cast<std::size_t>(kMostMultiWavelengths); ++k) {
    option.WorkWaveLength[k] = k < order.Wavelengths.size() ? order.Wavelengths[k] : kUsualMultiWavelength;
    option.Parameter[k] = k < order.Parameters.size() ? order.Parameters[k] : kUsualMultiParameter;
  }
  return option;
}

}  // namespace

void MeasureMulti(const MultiOrder& order, BatchContext& run) {
  AcquisitionDesk desk(order, run);
  ConnectFor(desk, order.Wavelengths);
  const MultiOption option = OptionOf(order);
  std::vector<MultiRecord> records;
  const auto take = [&](std::int32_t place, const std::vector<double>& abs) {
    MultiRecord record;
    record.Name = RowName(place, records.size());
    std::copy(abs.begin(), abs.end(), record.Abs.begin());
    record.Result = MultiResult(option, record);
    records.push_back(record);
  };
  const auto problem = MeasureRows(desk, order, order.Wavelengths, take);
  FinishTable(desk, problem, MultiModule(), option, records);
}

void MeasureDna(const DnaOrder& order, BatchContext& run) {
  AcquisitionDesk desk(order, run);
  const DNAValues& values = order.Mode == static_cast<std::int32_t>(DNAMode::Mode2) ? kDNAMode2 : kDNAMode1;
  const std::vector<double> wavelengths(values.WaveLength.begin(), values.WaveLength.end());
  ConnectFor(desk, wavelengths);
  DNAOption option;
  TakeDNASettings({order.Mode, values}, option);
  std::vector<DNARecord> records;
  const auto take = [&](std::int32_t place, const std::vector<double>& abs) {
    DNARecord record;
    record.Name = RowName(place, records.size());
    std::copy(abs.begin(), abs.end(), record.Abs.begin());
    ComputeDNA(option, record);
    records.push_back(record);
  };
  const auto problem = MeasureRows(desk, order, wavelengths, take);
  FinishTable(desk, problem, DNAModule(), option, records);
}

}  // namespace spectrane
