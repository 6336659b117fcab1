#include "cli/importcommand.h"

#include <memory>
#include <ostream>

#include "base/utf8path.h"
#include "cli/filecommands.h"
#include "cli/jsontext.h"
#include "cli/outputs.h"
#include "exchange/importedspectrum.h"
#include "files/wlsfile2.h"
#include "spectrum/spectrumfiles.h"

namespace spectrane {
namespace {

struct ImportArguments {
  std::string In;
  std::string Out;
  bool Force = false;
};

ImportedSpectrum Import(const std::string& path, std::istream& standardInput) {
  const std::string ending = LowerEnding(path);
  if (ending != ".csv" && ending != ".jdx" && ending != ".dx" && ending != ".txt")
    throw Refusal(path, "not one of .csv, .txt, .jdx and .dx");
  const std::string text = ReadDocument(path, standardInput);
  const bool jcamp = ending == ".jdx" || ending == ".dx";
  ImportedSpectrum spectrum = jcamp ? ImportJcamp(text) : ImportCsv(text);
  if (!spectrum.Reason.empty()) throw Refusal(path, spectrum.Reason);
  return spectrum;
}

void RunImport(const ImportArguments& arguments, BatchContext& run) {
  if (LowerEnding(arguments.Out) != ".wls") throw Refusal(arguments.Out, "not a .wls file");
  RefuseTakenOutput(arguments.Out, arguments.Force, {arguments.In});
  const ImportedSpectrum spectrum = Import(arguments.In, run.In);
  const FileFault fault = SaveProcessedSpectrum(arguments.Out, HomeViewOf(spectrum), spectrum.Points);
  if (fault) throw Refusal(arguments.Out, fault);
  if (!spectrum.Remark.empty()) {
    run.Err << Utf8FromPath(PathFromUtf8(arguments.In).filename()) << ": passed over " << spectrum.Remark
            << "\n";
  }
  run.Result = JsonText({{"kind", WLS2Module().Name}, {"records", spectrum.Points.Size()}});
}

}  // namespace

void AddImportCommand(CLI::App& root, BatchContext& context) {
  const auto arguments = std::make_shared<ImportArguments>();
  CLI::App* const command =
      root.add_subcommand("import", "A spectrum of another program (.csv, .jdx) as a processed spectrum");
  AddText(command, "FILE", arguments->In, "A table in text, or a JCAMP-DX file")->required();
  AddText(command, "OUT", arguments->Out, "The .wls file to write")->required();
  command->add_flag("--force", arguments->Force, "Replace an existing file");
  RunsAs(command, context, [arguments](BatchContext& run) { RunImport(*arguments, run); });
}

}  // namespace spectrane
