#pragma once

#include <string>
#include <vector>

#include "files/dnafile.h"
#include "files/multifile.h"

namespace spectrane {

/// A table of `wavelengths` wavelengths from 200 nm up in steps of 50 nm, the coefficients 1, 2, 3 and so on.
inline MultiOption MultiTable(std::int32_t wavelengths) {
  MultiOption option;
  option.WorkWLNo = wavelengths;
  for (std::size_t k = 0; k < 15; ++k) {
    option.WorkWaveLength[k] = 200.0 + 50.0 * static_cast<double>(k);
    option.Parameter[k] = 1.0 + static_cast<double>(k);
  }
  option.WorkWaveLength[15] = 7777.0;
  option.Parameter[15] = 7777.0;
  return option;
}

/// A sample with the absorbances `first`, `first` + 0.1 and so on, and that result.
inline MultiRecord MultiSample(const std::string& name, double first, double result) {
  MultiRecord record;
  record.Name = name;
  for (std::size_t k = 0; k < 15; ++k) record.Abs[k] = first + 0.1 * static_cast<double>(k);
  record.Abs[15] = 7777.0;
  record.Result = result;
  return record;
}

inline DNAOption DNATable() {
  DNAOption option;
  option.WaveLength = {260.0, 280.0, 320.0, 0.0};
  option.Factor = {62.9, 36.0, 1552.0, 757.3};
  option.Option = 1;
  option.Spare = 4711;
  return option;
}

inline DNARecord DNASample(const std::string& name, double a1, double a2, double reference) {
  DNARecord record;
  record.Name = name;
  record.Abs = {a1, a2, reference, 7777.0};
  record.DNA = 1.5;
  record.Protein = 2.5;
  record.Ratio = 3.5;
  record.Note = "note of " + name;
  return record;
}

/// A file of these rows. False: it could not be written.
template <typename OptionT, typename RecordT>
bool WriteSamples(const FileModule<OptionT, RecordT>& module, const std::string& path, const OptionT& option,
                  const std::vector<RecordT>& records) {
  return !SaveDataFile(
      module, path, option, static_cast<std::int32_t>(records.size()),
      [&records](std::int32_t i) -> const RecordT& { return records[static_cast<std::size_t>(i)]; });
}

}  // namespace spectrane
