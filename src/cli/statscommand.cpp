#include "cli/statscommand.h"

#include <memory>

#include "cli/filekinds.h"
#include "cli/jsontext.h"
#include "files/wlsfile.h"
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
  const BatchKind& kind = KindOfFile(arguments.File);
  if (kind.Kind->FileType != WLSModule().FileType) throw Refusal(arguments.File, "is no measured spectrum");
  const BatchCurve curve = kind.Curve(arguments.File, arguments.Smooth);
  const MaxMinAverage result =
      CaculateMaxMinAverage({curve.X, curve.Trans, curve.Abs}, arguments.Start, arguments.End);
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
