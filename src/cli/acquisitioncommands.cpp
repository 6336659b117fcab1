#include "cli/acquisitioncommands.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

#include "base/numbers.h"
#include "cli/kineticscommand.h"
#include "cli/scancommand.h"
#include "cli/tablecommand.h"
#include "link/instrumentstate.h"
#include "modes/multi/multiresult.h"
#include "modes/timescan/timescanaxes.h"

namespace spectrane {
namespace {

constexpr std::int32_t kMostSamplesOfAReading = 200;
constexpr std::int32_t kMostRows = 100000;
constexpr std::int32_t kOneNanometre = 10;

std::string CheckTenths(const std::string& text) {
  const auto value = ParseNumber(PlainArgument(text));
  if (!value || WholeTenths(*value)) return {};  // another check tells what is no number
  return PlainArgument(text) + " is no whole tenth of a nanometre";
}

std::string CheckStep(const std::string& text) {
  const auto value = ParseNumber(PlainArgument(text));
  if (!value) return {};
  const auto tenths = WholeTenths(*value);
  return tenths && IntervalIndex(*tenths) ? "" : "not one of 0.1, 0.2, 0.5, 1, 2 and 5";
}

/// Index of an interval [s] in the table of the time scan.
std::optional<std::int32_t> TimeScanInterval(double seconds) {
  for (std::int32_t i = 0; i < static_cast<std::int32_t>(kTimeScanIntervals); ++i) {
    if (std::round(seconds * 1000.0) == IntervalMs(i) && std::abs(seconds * 1000.0 - IntervalMs(i)) < 1e-6)
      return i;
  }
  return std::nullopt;
}

std::string CheckInterval(const std::string& text) {
  const auto value = ParseNumber(PlainArgument(text));
  return !value || TimeScanInterval(*value) ? "" : "not one of 0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 30 and 60";
}

std::int32_t TenthsOf(double nm) {
  return WholeTenths(nm).value_or(0);
}

/// Options that all commands have; those of the sampler where samples are measured.
template <typename Order>
void AddCommon(CLI::App* command, Order& order, const char* ending) {
  AddText(command, "--out", order.Out, std::string("The ") + ending + " file to write")
      ->required()
      ->check(CheckPath);
  command->add_flag("--yes", order.Yes, "No waiting for Enter");
  command->add_flag("--force", order.Force, "Replace an existing file");
}

void AddCells(CLI::App* command, std::vector<double>& cells, const char* each) {
  AddNumberList(command, "--from-sampler", cells,
                std::string("Cells of the automatic sampler, ") + each + " of each");
}

/// Throws what is wrong usage.
std::vector<std::int32_t> CellsOf(const std::vector<double>& numbers) {
  std::vector<std::int32_t> cells;
  for (const double number : numbers) {
    if (!(number >= 1 && number <= kSamplerPositionCount && number == std::floor(number)))
      throw CLI::ValidationError("--from-sampler", "cells have the numbers 1 to 8");
    const auto cell = static_cast<std::int32_t>(number);
    if (std::find(cells.begin(), cells.end(), cell) != cells.end())
      throw CLI::ValidationError("--from-sampler", "cell " + std::to_string(cell) + " stands there twice");
    cells.push_back(cell);
  }
  return cells;
}

struct Range {
  double From = 0;
  double To = 0;
  double Step = 1;
};

void AddBaseline(CLI::App* group, BatchContext& context) {
  struct Line : BaselineOrder {
    Range Given;
  };
  const auto line = std::make_shared<Line>();
  CLI::App* const command =
      group->add_subcommand("baseline", "The blank at each whole nanometre into a system baseline");
  CLI::Option* const from =
      AddNumber(command, "--from", line->Given.From, "One end in nm (that of the instrument)");
  CLI::Option* const to = AddNumber(command, "--to", line->Given.To, "The other end in nm");
  const auto checkWhole = [](const std::string& text) {
    const auto value = ParseNumber(PlainArgument(text));
    return !value || *value == std::floor(*value) ? "" : "not a whole nanometre";
  };
  from->check(checkWhole)->check(CheckTenths)->needs(to);
  to->check(checkWhole)->check(CheckTenths)->needs(from);
  AddCommon(command, *line, ".bsl");
  RunsAs(
      command, context, [line](BatchContext& run) { MeasureBaseline(*line, run); },
      [line, from] {
        line->HasRange = from->count() > 0;
        line->Grid = ScanGrid::Between(TenthsOf(line->Given.From), TenthsOf(line->Given.To), kOneNanometre);
      });
}

void AddScan(CLI::App* group, BatchContext& context) {
  struct Line : ScanOrder {
    Range Given;
    std::vector<double> CellNumbers;
  };
  const auto line = std::make_shared<Line>();
  CLI::App* const command = group->add_subcommand("scan", "A spectrum into a wavelength scan file");
  AddNumber(command, "--from", line->Given.From, "One end in nm")->required()->check(CheckTenths);
  AddNumber(command, "--to", line->Given.To, "The other end in nm")->required()->check(CheckTenths);
  AddNumber(command, "--step", line->Given.Step, "0.1, 0.2, 0.5, 1, 2 or 5 nm")->required()->check(CheckStep);
  AddLong(command, "--samples", line->Samples, "Samples of one reading (20)")
      ->check([](const std::string& text) { return CheckWhole(text, 1, kMostSamplesOfAReading); });
  CLI::Option* const baseline =
      AddText(command, "--baseline", line->Baseline,
              "The .bsl file with the reference (that of the windows); whole nanometres only")
          ->check(CheckPath);
  command->add_flag("--blank", line->Blank, "The reference from a pass over the blank")->excludes(baseline);
  AddCells(command, line->CellNumbers, "a file");
  AddCommon(command, *line, ".wls");
  RunsAs(
      command, context, [line](BatchContext& run) { MeasureSpectrum(*line, run); },
      [line] {
        line->Cells = CellsOf(line->CellNumbers);
        line->Grid = ScanGrid::Between(TenthsOf(line->Given.From), TenthsOf(line->Given.To),
                                       TenthsOf(line->Given.Step));
      });
}

template <typename Line>
void AddTable(CLI::App* command, Line& line, const char* ending) {
  AddLong(command, "--count", line.Count, "How many samples; with the sampler, how often all cells (1)")
      ->check([](const std::string& text) { return CheckWhole(text, 1, kMostRows); });
  AddCells(command, line.CellNumbers, "a row");
  AddCommon(command, line, ending);
}

void CheckTable(CLI::App* command, std::vector<double>& numbers, std::vector<std::int32_t>& cells) {
  cells = CellsOf(numbers);
  if (cells.empty() && command->get_option("--count")->count() == 0) throw CLI::RequiredError("--count");
}

void CheckMulti(const MultiOrder& order) {
  if (order.Wavelengths.size() > static_cast<std::size_t>(kMostMultiWavelengths))
    throw CLI::ValidationError("--wavelengths", "more than 15");
  for (const double wavelength : order.Wavelengths) {
    if (!WholeTenths(wavelength)) {
      throw CLI::ValidationError("--wavelengths",
                                 ShortestText(wavelength) + " is no whole tenth of a nanometre");
    }
  }
  if (!order.Parameters.empty() && order.Parameters.size() != order.Wavelengths.size())
    throw CLI::ValidationError("--parameters", "not as many as wavelengths");
}

void AddMulti(CLI::App* group, BatchContext& context) {
  struct Line : MultiOrder {
    std::vector<double> CellNumbers;
  };
  const auto line = std::make_shared<Line>();
  CLI::App* const command =
      group->add_subcommand("multi", "Samples at several wavelengths into a multi wavelength file");
  AddNumberList(command, "--wavelengths", line->Wavelengths, "Up to 15 wavelengths in nm")->required();
  AddNumberList(command, "--parameters", line->Parameters, "A coefficient for each (1)");
  AddTable(command, *line, ".mul");
  RunsAs(
      command, context, [line](BatchContext& run) { MeasureMulti(*line, run); },
      [line, command] {
        CheckTable(command, line->CellNumbers, line->Cells);
        CheckMulti(*line);
      });
}

void AddDna(CLI::App* group, BatchContext& context) {
  struct Line : DnaOrder {
    std::vector<double> CellNumbers;
  };
  const auto line = std::make_shared<Line>();
  CLI::App* const command = group->add_subcommand("dna", "DNA and protein into a DNA/protein file");
  AddLong(command, "--mode", line->Mode, "1: 260 and 280 nm, 2: 260 and 230 nm (1)")
      ->check([](const std::string& text) { return CheckWhole(text, 1, 2); });
  AddTable(command, *line, ".dna");
  RunsAs(
      command, context, [line](BatchContext& run) { MeasureDna(*line, run); },
      [line, command] { CheckTable(command, line->CellNumbers, line->Cells); });
}

void AddKinetics(CLI::App* group, BatchContext& context) {
  struct Line : KineticsOrder {
    double Seconds = 1;
    std::vector<double> CellNumbers;
  };
  const auto line = std::make_shared<Line>();
  CLI::App* const command = group->add_subcommand("kinetics", "A reaction into a time scan file");
  AddNumber(command, "--wavelength", line->Wavelength, "Test wavelength in nm")
      ->required()
      ->check(CheckTenths);
  AddNumber(command, "--interval", line->Seconds, "0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 30 or 60 s")
      ->required()
      ->check(CheckInterval);
  AddLong(command, "--points", line->Points, "How many readings")
      ->required()
      ->check([](const std::string& text) { return CheckWhole(text, 1, kMostTestPoints); });
  AddCells(command, line->CellNumbers, "a file");
  AddCommon(command, *line, ".tis");
  RunsAs(
      command, context, [line](BatchContext& run) { MeasureKinetics(*line, run); },
      [line] {
        line->Cells = CellsOf(line->CellNumbers);
        line->Interval = TimeScanInterval(line->Seconds).value_or(0);
      });
}

}  // namespace

void AddAcquisitionCommands(CLI::App* group, BatchContext& context) {
  AddBaseline(group, context);
  AddScan(group, context);
  AddMulti(group, context);
  AddDna(group, context);
  AddKinetics(group, context);
}

}  // namespace spectrane
