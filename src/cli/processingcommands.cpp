#include "cli/processingcommands.h"

#include <map>
#include <memory>
#include <string>

#include "cli/filekinds.h"
#include "cli/jsontext.h"
#include "cli/outputs.h"
#include "files/wlsfile2.h"
#include "spectrum/calculation.h"
#include "spectrum/derivative.h"
#include "spectrum/smoothing.h"
#include "spectrum/spectrumfiles.h"

namespace spectrane {
namespace {

constexpr std::int32_t kMeasuredType = 3;
constexpr std::int32_t kProcessedType = 12;

constexpr std::int32_t kAbsMode = 1;
constexpr std::int32_t kTransMode = 2;

struct ProcessArguments {
  std::string In;
  std::string Out;
  bool Smooth = false;
  bool Force = false;
};

struct CalcArguments {
  std::string Operation;
  std::string A;
  std::string B;
  std::string Out;
  std::string Mode = "abs";
  bool Force = false;
};

const std::map<std::string, SpectrumOperation>& Operations() {
  static const std::map<std::string, SpectrumOperation> operations = {
      {"add", SpectrumOperation::Add},
      {"sub", SpectrumOperation::Subtract},
      {"mul", SpectrumOperation::Multiply},
      {"div", SpectrumOperation::Divide},
  };
  return operations;
}

/// A measured or a processed spectrum.
StoredSpectrum Load(const std::string& path, bool smooth) {
  const std::int32_t type = KindOfFile(path).Kind->FileType;
  if (type != kMeasuredType && type != kProcessedType) throw Refusal(path, "is no spectrum");
  StoredSpectrum spectrum;
  const FileFault fault = type == kMeasuredType ? LoadMeasuredSpectrum(path, smooth, spectrum)
                                                : LoadProcessedSpectrum(path, spectrum);
  if (fault) throw Refusal(path, fault);
  return spectrum;
}

StoredSpectrum LoadMeasured(const std::string& path) {
  StoredSpectrum spectrum;
  if (const FileFault fault = LoadMeasuredSpectrum(path, false, spectrum)) throw Refusal(path, fault);
  spectrum.Points = FromHighestWavelength(std::move(spectrum.Points));
  return spectrum;
}

void Save(const std::string& path, const WLSOption& option, const Spectrum& result) {
  if (const FileFault fault = SaveProcessedSpectrum(path, option, result)) throw Refusal(path, fault);
}

Json Written(const Spectrum& result) {
  return {{"kind", WLS2Module().Name}, {"records", result.Size()}};
}

using Process = ProcessedSpectrum (*)(const Spectrum& source);

void RunProcess(Process process, const ProcessArguments& arguments, BatchContext& run) {
  RefuseTakenOutput(arguments.Out, arguments.Force, {arguments.In});
  StoredSpectrum source = Load(arguments.In, arguments.Smooth);
  const ProcessedSpectrum processed = process(source.Points);
  // A spectrum without points has a result without points.
  if (processed.Reason != NoResult::None && processed.Reason != NoResult::NoSource) {
    throw Refusal(arguments.In, WordsOf(processed.Reason));
  }
  // Energy has no meaning for a processed spectrum.
  if (source.Option.DisplayMode != kTransMode) source.Option.DisplayMode = kAbsMode;
  Save(arguments.Out, source.Option, processed.Result);
  run.Result = JsonText(Written(processed.Result));
}

void AddProcess(CLI::App& root, BatchContext& context, const char* name, const char* description,
                Process process) {
  const auto arguments = std::make_shared<ProcessArguments>();
  CLI::App* const command = root.add_subcommand(name, description);
  AddText(command, "IN", arguments->In, "A wls or wls2 file")->required();
  AddText(command, "OUT", arguments->Out, "The wls2 file to write")->required();
  command->add_flag("--smooth-enable", arguments->Smooth,
                    "Begin with the weighted means of five points of a measured spectrum");
  command->add_flag("--force", arguments->Force, "Replace an existing file");
  RunsAs(command, context, [arguments, process](BatchContext& run) { RunProcess(process, *arguments, run); });
}

void RunCalc(const CalcArguments& arguments, BatchContext& run) {
  RefuseTakenOutput(arguments.Out, arguments.Force, {arguments.A, arguments.B});
  StoredSpectrum base = LoadMeasured(arguments.A);
  const StoredSpectrum other = LoadMeasured(arguments.B);
  const bool onTrans = arguments.Mode == "trans";
  const ProcessedSpectrum combined =
      CombineSpectra(base.Points, other.Points, Operations().at(arguments.Operation), onTrans);
  base.Option.DisplayMode = onTrans ? kTransMode : kAbsMode;
  Save(arguments.Out, base.Option, combined.Result);
  if (combined.Reason != NoResult::None) {
    run.Err << "The result has no points: " << WordsOf(combined.Reason) << '\n';
  }
  if (combined.Skipped > 0) {
    const bool one = combined.Skipped == 1;
    run.Err << combined.Skipped << (one ? " point" : " points")
            << " left out: no point of the second spectrum stands beside " << (one ? "it\n" : "them\n");
  }
  run.Result = JsonText(Written(combined.Result));
}

void AddCalc(CLI::App& root, BatchContext& context) {
  const auto arguments = std::make_shared<CalcArguments>();
  CLI::App* const command = root.add_subcommand("calc", "Combine two spectra point by point");
  std::vector<std::string> names;
  for (const auto& [name, operation] : Operations()) names.push_back(name);
  AddText(command, "OPERATION", arguments->Operation, "add, sub, mul or div")
      ->required()
      ->check(CLI::IsMember(names));
  AddText(command, "A", arguments->A, "A wls file; its wavelengths are those of the result")->required();
  AddText(command, "B", arguments->B, "A wls file")->required();
  AddText(command, "OUT", arguments->Out, "The wls2 file to write")->required();
  AddText(command, "--mode", arguments->Mode, "What is combined: abs (absorbance) or trans (%T)")
      ->check(CLI::IsMember({"abs", "trans"}));
  command->add_flag("--force", arguments->Force, "Replace an existing file");
  RunsAs(command, context, [arguments](BatchContext& run) { RunCalc(*arguments, run); });
}

}  // namespace

void AddProcessingCommands(CLI::App& root, BatchContext& context) {
  AddProcess(root, context, "smooth", "Smooth the absorbance of a spectrum", SmoothSpectrum);
  AddProcess(root, context, "derivative", "First derivative of the absorbance by the wavelength",
             DeriveSpectrum);
  AddCalc(root, context);
}

}  // namespace spectrane
