#include "cli/filecommands.h"

#include <algorithm>
#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>

#include "base/utf8path.h"
#include "cli/filekinds.h"
#include "cli/jsonblock.h"
#include "cli/outputs.h"
#include "cli/packdocument.h"
#include "files/datafile.h"

namespace spectrane {
namespace {

/// Largest JSON document that is read [bytes].
constexpr std::size_t kLargestDocument = std::size_t{1} << 27;
constexpr const char* kStandardInput = "-";

void AddInfo(CLI::App& root, BatchContext& context) {
  const auto path = std::make_shared<std::string>();
  CLI::App* const command =
      root.add_subcommand("info", "Header, options and number of records of a data file");
  AddText(command, "FILE", *path, "A data file")->required();
  RunsAs(command, context, [path](BatchContext& run) { run.Result = KindOfFile(*path).Describe(*path); });
}

struct DumpArguments {
  std::string File;
  bool Smooth = false;
};

void AddDump(CLI::App& root, BatchContext& context) {
  const auto arguments = std::make_shared<DumpArguments>();
  CLI::App* const command = root.add_subcommand("dump", "Everything in a data file");
  AddText(command, "FILE", arguments->File, "A data file")->required();
  command->add_flag("--smooth-enable", arguments->Smooth,
                    "%T and Abs of a measured spectrum as weighted means of five points");
  RunsAs(command, context, [arguments](BatchContext& run) {
    run.Result = KindOfFile(arguments->File).Dump(arguments->File, arguments->Smooth);
  });
}

[[noreturn]] void RefuseLargeDocument(const std::string& path) {
  throw Refusal(path, "larger than the " + std::to_string(kLargestDocument >> 20) + " MB that are read");
}

std::string ReadStandardInput(std::istream& in) {
  const std::string name = "standard input";
  std::string text;
  std::string piece(kLargestPiece, '\0');
  while (in.read(piece.data(), static_cast<std::streamsize>(piece.size())), in.gcount() > 0) {
    text.append(piece, 0, static_cast<std::size_t>(in.gcount()));
    if (text.size() > kLargestDocument) RefuseLargeDocument(name);
  }
  if (in.bad()) throw Refusal(name, "cannot be read");
  return text;
}

struct PackArguments {
  std::string Document;
  std::string File;
  bool Force = false;
};

void RunPack(const PackArguments& arguments, BatchContext& run) {
  if (arguments.File == kStandardInput) throw Refusal("a data file cannot be written to standard output");
  RefuseTakenOutput(arguments.File, arguments.Force, {arguments.Document});
  const std::string text = ReadDocument(arguments.Document, run.In);
  const std::string& named = arguments.Document == kStandardInput ? "standard input" : arguments.Document;
  try {
    const PackedFile packed = PackDocument(text, arguments.File);
    if (packed.TextLost) {
      run.Err << Utf8FromPath(PathFromUtf8(arguments.File).filename())
              << ": characters without a place in the file were written as \"?\"\n";
    }
    run.Result = JsonText({{"kind", packed.Kind->Kind->Name}, {"records", packed.Records}});
  } catch (const BadJson& fault) {
    throw Refusal(named, fault.what());
  }
}

void AddPack(CLI::App& root, BatchContext& context) {
  const auto arguments = std::make_shared<PackArguments>();
  CLI::App* const command = root.add_subcommand("pack", "Write a data file from what dump printed");
  AddText(command, "JSON", arguments->Document, "The document; - reads standard input")->required();
  AddText(command, "FILE", arguments->File, "The data file to write")->required();
  command->add_flag("--force", arguments->Force, "Replace an existing file");
  RunsAs(command, context, [arguments](BatchContext& run) { RunPack(*arguments, run); });
}

}  // namespace

void AddFileCommands(CLI::App& root, BatchContext& context) {
  AddInfo(root, context);
  AddDump(root, context);
  AddPack(root, context);
}

std::string ReadDocument(const std::string& path, std::istream& standardInput) {
  if (path == kStandardInput) return ReadStandardInput(standardInput);
  ClosedAtEnd file;
  file.Number = FreeFileNumber();
  if (!OpenBinaryFile(path, file.Number)) throw Refusal(path, FaultOf(file.Number));
  const auto length = static_cast<std::size_t>(FileLength(file.Number));
  if (length > kLargestDocument) RefuseLargeDocument(path);
  std::string text;
  text.reserve(length);
  while (text.size() < length) {
    const std::size_t size = std::min(kLargestPiece, length - text.size());
    const unsigned char* const bytes = ViewBytes(file.Number, static_cast<std::int64_t>(text.size()), size);
    if (bytes == nullptr) throw Refusal(path, "cannot be read");
    text.append(reinterpret_cast<const char*>(bytes), size);
  }
  return text;
}

std::string LowerEnding(const std::string& path) {
  std::string ending = Utf8FromPath(PathFromUtf8(path).extension());
  for (char& c : ending) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return ending;
}

}  // namespace spectrane
