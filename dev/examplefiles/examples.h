#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "examplefiles/examplebench.h"
#include "files/datafile.h"

namespace spectrane {

/// Makes every example in `folder`, which exists. The files are the same bytes in every run: the readings
/// follow from fixed seeds, the dates are fixed. Throws ExampleFailure.
void WriteExamples(const std::string& folder);

/// The moment that stands in files with a date.
double ExampleDate();

/// Each works on a bench of its own and writes its file or files into `folder`.
void MakePhotometry(ExampleBench& bench, const std::string& folder);
void MakeHolmium(ExampleBench& bench, const std::string& folder);
void MakeDye(ExampleBench& bench, const std::string& folder);
void MakeEnzyme(ExampleBench& bench, const std::string& folder);
void MakeMulti(ExampleBench& bench, const std::string& folder);
void MakeNucleic(ExampleBench& bench, const std::string& folder);
void MakeBaseline(ExampleBench& bench, const std::string& folder);

/// The plain name that the simulator has for a sample: what stands on the label of the cell.
std::string LabelOf(const std::string& sample);

/// Writes a whole file; throws ExampleFailure.
template <typename OptionT, typename RecordT>
void Save(const FileModule<OptionT, RecordT>& module, const std::string& path, const OptionT& option,
          const std::vector<RecordT>& records) {
  bool lost = false;
  const FileFault fault = SaveDataFile(
      module, path, option, static_cast<std::int32_t>(records.size()),
      [&](std::int32_t i) { return records[static_cast<std::size_t>(i)]; }, &lost);
  if (fault) throw ExampleFailure(path + ": " + FaultWords(fault));
  if (lost) throw ExampleFailure(path + ": a text has characters without a place in the file");
}

}  // namespace spectrane
