#include "cli/numbercommands.h"

#include <memory>

#include "base/numbers.h"
#include "cli/jsontext.h"
#include "link/function.h"

namespace spectrane {
namespace {

void AddEnergy(CLI::App& root, BatchContext& context) {
  struct Arguments {
    std::int32_t E = 0;
    std::int32_t R = 0;
    std::int32_t D = 0;
  };
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* const command = root.add_subcommand("energy", "%T and absorbance of an energy reading");
  AddLong(command, "E", arguments->E, "Energy of the sample")->required();
  AddLong(command, "R", arguments->R, "Energy of the blank (100 %T)")->required();
  AddLong(command, "D", arguments->D, "Dark energy (0 %T)")->required();
  RunsAs(command, context, [arguments](BatchContext& run) {
    const auto [E, R, D] = *arguments;
    run.Result = JsonText({{"Trans", TransFromEnergy(E, R, D)}, {"Abs", AbsFromEnergy(E, R, D)}});
  });
}

void AddFormat(CLI::App& root, BatchContext& context) {
  struct Arguments {
    double Value = 0;
    std::string Pattern;
  };
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* const command = root.add_subcommand("format", "A number as the windows print it");
  AddNumber(command, "VALUE", arguments->Value, "The number")->required();
  AddText(command, "PATTERN", arguments->Pattern, "The number pattern, such as 0.000")->required();
  RunsAs(command, context, [arguments](BatchContext& run) {
    run.Result = JsonText({{"text", Format(arguments->Value, arguments->Pattern)}});
  });
}

}  // namespace

void AddNumberCommands(CLI::App& root, BatchContext& context) {
  AddEnergy(root, context);
  AddFormat(root, context);
}

}  // namespace spectrane
