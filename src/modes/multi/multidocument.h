#pragma once

#include <cstdint>
#include <string>

#include "files/multifile.h"
#include "modes/multi/multisettings.h"
#include "modes/recorddocument.h"

namespace spectrane {

/// One multi wavelength test: the wavelengths with their coefficients, the samples, and the file they belong
/// to. A file may bring any numbers.
class MultiDocument : public RecordDocumentOf<MultiOption, MultiRecord> {
 public:
  /// As of a first start: one wavelength, no sample.
  MultiDocument();

  const MultiOption& Option() const { return option_; }
  /// What the option dialog shows.
  MultiSettings Settings() const;
  /// A new document with these settings: no sample, nothing to save.
  void Begin(const MultiSettings& settings);
  /// Whether Configure() would change what the samples rest on; entries that are not in use do not count.
  bool WouldChange(const MultiSettings& settings) const;
  /// Takes the dialog's values. Samples keep their absorbances, by place in the table; where anything they
  /// rest on has changed their results are computed anew, and the document is one without a file.
  void Configure(const MultiSettings& settings);

  void SetRecordName(std::int32_t row, const std::string& name);
};

}  // namespace spectrane
