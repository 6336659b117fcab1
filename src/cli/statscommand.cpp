#include "cli/statscommand.h"

#include <memory>

#include "cli/jsontext.h"
#include "files/wlsfile.h"
#include "spectrum/scanvalues.h"
#include "spectrum/statistics.h"

namespace spectrane {
namespace {

struct StatsArguments {
  std::string File;
  double Start = 0;
  double End = 0;
  bool Smooth = false;
};

Json PointJson(const SpectrumValues& point) {
  return {{"Wavelength", point.Wavelength}, {"Abs", point.Abs}, {"Trans", point.Trans}};
}

void RunStats(const StatsArguments& arguments, BatchContext& run) {
  WLSOption option;
  std::vector<WLSRecord> records;
  const FileFault fault = LoadDataFile(WLSModule(), arguments.File, option, records);
  if (fault) throw Refusal(arguments.File, fault);
  const ScanValues values = DeriveScanValues(records, arguments.Smooth);
  std::vector<double> wavelength;
  for (const WLSRecord& record : records) wavelength.push_back(record.Wavelength);
  const MaxMinAverage result =
      CaculateMaxMinAverage({wavelength, values.Trans, values.Abs}, arguments.Start, arguments.End);
  run.Result = JsonText({{"max", PointJson(result.Max)},
                         {"min", PointJson(result.Min)},
                         {"average", {{"Abs", result.Average.Abs}, {"Trans", result.Average.Trans}}}});
}

}  // namespace

void AddStatsCommand(CLI::App& root, BatchContext& context) {
  const auto arguments = std::make_shared<StatsArguments>();
  CLI::App* const command =
      root.add_subcommand("stats", "Maximum, minimum and average of a range of a spectrum");
  AddText(command, "FILE", arguments->File, "A measured spectrum")->required();
  AddNumber(command, "START", arguments->Start, "One end of the range [nm]")->required();
  AddNumber(command, "END", arguments->End, "The other end")->required();
  command->add_flag("--smooth-enable", arguments->Smooth, "%T and Abs as weighted means of five points");
  RunsAs(command, context, [arguments](BatchContext& run) { RunStats(*arguments, run); });
}

}  // namespace spectrane
