#include "cli/quantitationcommands.h"

#include <memory>

#include "base/displayformats.h"
#include "cli/jsontext.h"
#include "cli/storedsettings.h"
#include "files/quafile.h"
#include "link/function.h"
#include "modes/quantitation/curvefit.h"
#include "modes/quantitation/curveformula.h"

namespace spectrane {
namespace {

/// Standards and curve of a file. Its records are not looked at, so it may have lost some; a file whose count
/// of them makes no sense is refused all the same.
QuaOption CurveOf(const std::string& path) {
  const FileModule<QuaOption, QuaRecord>& module = QuaModule();
  ClosedAtEnd file;
  QuaOption option;
  if (!module.Open(path, file.Number, option)) throw Refusal(path, FaultOf(file.Number));
  FileFault fault;
  ReadableCount(module, file.Number, module.StatedCount(option), fault);
  if (fault && fault.Stated < 0) throw Refusal(path, fault);
  return option;
}

/// What the windows print numbers with.
DisplayFormats StoredFormats() {
  return DisplayFormats::AtStart(StoredSettings().StartSettings().PrecisionMode);
}

void AddFit(CLI::App& root, BatchContext& context) {
  const auto path = std::make_shared<std::string>();
  CLI::App* const command = root.add_subcommand("fit", "Fit the standards of a quantitation anew");
  AddText(command, "FILE", *path, "A quantitation file; it stays as it is")->required();
  RunsAs(command, context, [path](BatchContext& run) {
    QuaOption qua = CurveOf(*path);
    CreateCurve(qua);
    const std::vector<FormulaPart> equation =
        CurveFormula(qua.FittingMethod, qua.CurveK, qua.CurveR, StoredFormats());
    run.Result = JsonText({{"CurveK", qua.CurveK},
                           {"CurveR", qua.CurveR},
                           {"CurveValid", qua.CurveValid},
                           {"equation", FormulaText(equation)}});
  });
}

struct ConcArguments {
  std::string File;
  std::vector<double> Absorbances;
};

void AddConc(CLI::App& root, BatchContext& context) {
  const auto arguments = std::make_shared<ConcArguments>();
  CLI::App* const command =
      root.add_subcommand("conc", "Concentrations of absorbances by the equation of a quantitation");
  AddText(command, "FILE", arguments->File, "A quantitation file")->required();
  AddNumbers(command, "ABS", arguments->Absorbances, "Absorbances")->required();
  RunsAs(command, context, [arguments](BatchContext& run) {
    const QuaOption qua = CurveOf(arguments->File);
    Json conc = Json::array();
    Json text = Json::array();
    for (const double absorbance : arguments->Absorbances) {
      const double value = CalcConc(qua, absorbance);
      conc.push_back(value);
      text.push_back(FormatValue(value));
    }
    run.Result = JsonText({{"conc", std::move(conc)}, {"text", std::move(text)}});
  });
}

}  // namespace

void AddQuantitationCommands(CLI::App& root, BatchContext& context) {
  AddFit(root, context);
  AddConc(root, context);
}

}  // namespace spectrane
