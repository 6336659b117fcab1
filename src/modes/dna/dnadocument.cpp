#include "modes/dna/dnadocument.h"

#include <algorithm>

#include "modes/dna/dnaresult.h"

namespace spectrane {

void TakeDNASettings(const DNASettings& settings, DNAOption& option) {
  option.Option = settings.Option;
  std::ranges::copy(settings.Values.WaveLength, option.WaveLength.begin());
  std::ranges::copy(settings.Values.Factor, option.Factor.begin());
}

DNADocument::DNADocument() : RecordDocumentOf(DNAModule()) {
  TakeDNASettings(DNASettings(), option_);
}

DNASettings DNADocument::Settings() const {
  DNASettings settings;
  settings.Option = option_.Option;
  std::copy_n(option_.WaveLength.begin(), settings.Values.WaveLength.size(),
              settings.Values.WaveLength.begin());
  std::ranges::copy(option_.Factor, settings.Values.Factor.begin());
  return settings;
}

void DNADocument::Begin(const DNASettings& settings) {
  *this = DNADocument();
  TakeDNASettings(settings, option_);
}

bool DNADocument::Configure(const DNASettings& settings) {
  const DNASettings before = Settings();
  if (settings == before) return false;
  TakeDNASettings(settings, option_);
  if (records_.empty()) return false;
  LeaveFile();
  MarkModified();
  if (settings.Values == before.Values) return false;
  for (DNARecord& record : records_) ComputeDNA(option_, record);
  return true;
}

void DNADocument::SetRecordName(std::int32_t row, const std::string& name) {
  SetText(MutableRecord(row).Name, name);
}

void DNADocument::SetRecordNote(std::int32_t row, const std::string& note) {
  SetText(MutableRecord(row).Note, note);
}

}  // namespace spectrane
