#include "cli/computecommand.h"

#include <memory>
#include <string>

#include "cli/filekinds.h"
#include "cli/jsontext.h"
#include "modes/dna/dnaresult.h"
#include "modes/multi/multiresult.h"

namespace spectrane {
namespace {

template <typename OptionT, typename RecordT>
std::vector<RecordT> LoadRows(const FileModule<OptionT, RecordT>& module, const std::string& path,
                              OptionT& option) {
  std::vector<RecordT> rows;
  if (const FileFault fault = LoadDataFile(module, path, option, rows)) throw Refusal(path, fault);
  return rows;
}

Json MultiResults(const std::string& path) {
  MultiOption option;
  Json results = Json::array();
  for (const MultiRecord& row : LoadRows(MultiModule(), path, option)) {
    results.push_back(MultiResult(option, row));
  }
  return {{"Result", results}};
}

Json DNAResults(const std::string& path) {
  DNAOption option;
  Json dna = Json::array();
  Json protein = Json::array();
  Json ratio = Json::array();
  for (DNARecord& row : LoadRows(DNAModule(), path, option)) {
    ComputeDNA(option, row);
    dna.push_back(row.DNA);
    protein.push_back(row.Protein);
    ratio.push_back(row.Ratio);
  }
  return {{"DNA", dna}, {"Protein", protein}, {"Ratio", ratio}};
}

void RunCompute(const std::string& path, BatchContext& run) {
  const std::int32_t type = KindOfFile(path).Kind->FileType;
  if (type == MultiModule().FileType) {
    run.Result = JsonText(MultiResults(path));
  } else if (type == DNAModule().FileType) {
    run.Result = JsonText(DNAResults(path));
  } else {
    throw Refusal(path, "has no results to compute");
  }
}

}  // namespace

void AddComputeCommand(CLI::App& root, BatchContext& context) {
  const auto file = std::make_shared<std::string>();
  CLI::App* const command =
      root.add_subcommand("compute", "Compute the results of every row of a table again");
  AddText(command, "FILE", *file, "A mul or dna file")->required();
  RunsAs(command, context, [file](BatchContext& run) { RunCompute(*file, run); });
}

}  // namespace spectrane
