#include "cli/batch.h"

#include <algorithm>
#include <new>
#include <ostream>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "base/version.h"
#include "cli/command.h"
#include "cli/computecommand.h"
#include "cli/exportcommand.h"
#include "cli/filecommands.h"
#include "cli/importcommand.h"
#include "cli/instrumentcommands.h"
#include "cli/numbercommands.h"
#include "cli/processingcommands.h"
#include "cli/quantitationcommands.h"
#include "cli/spectrumcommands.h"
#include "cli/statscommand.h"

namespace spectrane {
namespace {

constexpr const char* kProgram = "spectrane-cli";

/// Every group of commands; one row adds a group.
constexpr AddCommands kCommandGroups[] = {
    AddNumberCommands, AddFileCommands, AddQuantitationCommands, AddSpectrumCommands, AddProcessingCommands,
    AddComputeCommand, AddStatsCommand, AddExportCommand,        AddImportCommand,    AddInstrumentCommands,
};

/// The arguments, last one first, as the reader takes them.
std::vector<std::string> Arguments(int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  for (int i = argc - 1; i > 0; --i) {
    std::string text = argv[i];
    // "-3" is known to be a number, "-.5" is not.
    if (text.starts_with("-.") && ParseNumber(text)) text.insert(text.begin(), kValueMark);
    arguments.push_back(std::move(text));
  }
  return arguments;
}

int Refuse(std::ostream& err, const std::string& line) {
  err << line << std::endl;
  return kBatchRefused;
}

int RunChosen(BatchContext& context, std::ostream& out) {
  try {
    context.Chosen(context);
    if (!context.Result.empty() && context.Result.back() != '\n') context.Result += '\n';
    out << context.Result << std::flush;
  } catch (const Refusal& refusal) {
    return Refuse(context.Err, refusal.what());
  } catch (const std::bad_alloc&) {
    return Refuse(context.Err, std::string(kProgram) + ": not enough memory");
  } catch (const std::exception& fault) {
    return Refuse(context.Err, std::string(kProgram) + ": " + fault.what());
  }
  return out ? context.Status : Refuse(context.Err, "standard output: cannot be written");
}

}  // namespace

int RunBatch(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err) {
  BatchContext context{in, err, {}, kBatchDone, {}};
  CLI::App root("Files, numbers and instrument of Spectrane without its windows. Results are JSON.",
                kProgram);
  root.set_version_flag("--version", std::string(kProgram) + " " + VersionText());
  root.require_subcommand(1);
  root.allow_windows_style_options(false);
  for (const AddCommands add : kCommandGroups) add(root, context);
  try {
    root.parse(Arguments(argc, argv));
  } catch (const CLI::Success& answer) {
    // --help and --version
    root.exit(answer, out, err);
    return out.flush() ? kBatchDone : Refuse(err, "standard output: cannot be written");
  } catch (const CLI::ParseError& fault) {
    err << fault.what() << "\n" << root.help() << std::flush;
    return kBatchWrongUsage;
  }
  return RunChosen(context, out);
}

}  // namespace spectrane
