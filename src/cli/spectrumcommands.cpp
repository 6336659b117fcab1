#include "cli/spectrumcommands.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/filekinds.h"
#include "cli/jsontext.h"
#include "spectrum/findpeak.h"

namespace spectrane {
namespace {

struct PeakArguments {
  std::string File;
  std::optional<double> Height;
  bool NoPeaks = false;
  bool NoValleys = false;
  bool Smooth = false;
};

Json PointsJson(const BatchCurve& curve, const std::vector<std::int32_t>& indices) {
  Json points = Json::array();
  for (const std::int32_t index : indices) {
    const auto i = static_cast<std::size_t>(index);
    points.push_back({{"index", index}, {"x", curve.X[i]}, {"Abs", curve.Abs[i]}, {"Trans", curve.Trans[i]}});
  }
  return points;
}

void RunPeaks(const PeakArguments& arguments, BatchContext& run) {
  const BatchKind& kind = KindOfFile(arguments.File);
  if (!kind.Curve) throw Refusal(arguments.File, "has no curve to search");
  const BatchCurve curve = kind.Curve(arguments.File, arguments.Smooth);
  const FoundPeaks found =
      FindPeak(curve.X, curve.Abs,
               {arguments.Height.value_or(kind.PeakHeight), !arguments.NoPeaks, !arguments.NoValleys});
  run.Result = JsonText(
      {{"peaks", PointsJson(curve, found.PeakIndex)}, {"valleys", PointsJson(curve, found.ValleyIndex)}});
}

void AddPeaks(CLI::App& root, BatchContext& context) {
  struct Line : PeakArguments {
    double GivenHeight = 0;
  };
  const auto line = std::make_shared<Line>();
  CLI::App* const command = root.add_subcommand("peaks", "Peaks and valleys of a spectrum or a time scan");
  AddText(command, "FILE", line->File, "A wls, wls2 or tis file")->required();
  CLI::Option* const height =
      AddNumber(command, "--height", line->GivenHeight,
                "By how much a peak stands out [Abs]; 0.001, for a processed spectrum 0.01");
  command->add_flag("--no-peaks", line->NoPeaks, "Valleys only");
  command->add_flag("--no-valleys", line->NoValleys, "Peaks only");
  command->add_flag("--smooth-enable", line->Smooth,
                    "Search the weighted means of five points of a measured spectrum");
  RunsAs(command, context, [line, height](BatchContext& run) {
    if (height->count() > 0) line->Height = line->GivenHeight;
    RunPeaks(*line, run);
  });
}

}  // namespace

void AddSpectrumCommands(CLI::App& root, BatchContext& context) {
  AddPeaks(root, context);
}

}  // namespace spectrane
