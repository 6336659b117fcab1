#pragma once

#include <cstdint>
#include <string>

#include "files/dnafile.h"
#include "modes/dna/dnasettings.h"
#include "modes/recorddocument.h"

namespace spectrane {

/// Mode, wavelengths and factors of `settings` into an option block; the rest of it stays.
void TakeDNASettings(const DNASettings& settings, DNAOption& option);

/// One DNA/protein test: its mode, wavelengths and factors, the samples, and the file they belong to. A file
/// may bring any numbers.
class DNADocument : public RecordDocumentOf<DNAOption, DNARecord> {
 public:
  /// As of a first start: the first mode, no sample.
  DNADocument();

  const DNAOption& Option() const { return option_; }
  /// What the option dialog shows.
  DNASettings Settings() const;
  /// A new document with these settings: no sample, nothing to save.
  void Begin(const DNASettings& settings);
  /// Takes the dialog's values. Samples keep their absorbances; with other values of the formulas their
  /// results are computed anew, and with any change the document is one without a file. False: there were no
  /// samples, or they stay as they were.
  bool Configure(const DNASettings& settings);

  void SetRecordName(std::int32_t row, const std::string& name);
  void SetRecordNote(std::int32_t row, const std::string& note);
};

}  // namespace spectrane
