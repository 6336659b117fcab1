#include "modes/multi/multidocument.h"

#include <algorithm>

namespace spectrane {
namespace {

/// Of two tables of that many entries in use.
bool SameEntries(const MultiSettings& one, const MultiSettings& other, std::int32_t count) {
  return std::equal(one.WorkWaveLength.begin(), one.WorkWaveLength.begin() + count,
                    other.WorkWaveLength.begin()) &&
         std::equal(one.Parameter.begin(), one.Parameter.begin() + count, other.Parameter.begin());
}

void TakeMultiSettings(const MultiSettings& settings, MultiOption& option) {
  option.WorkWLNo = settings.WorkWLNo;
  std::ranges::copy(settings.WorkWaveLength, option.WorkWaveLength.begin());
  std::ranges::copy(settings.Parameter, option.Parameter.begin());
}

}  // namespace

MultiDocument::MultiDocument() : RecordDocumentOf(MultiModule()) {
  TakeMultiSettings(MultiSettings(), option_);
}

MultiSettings MultiDocument::Settings() const {
  MultiSettings settings;
  settings.WorkWLNo = option_.WorkWLNo;
  std::copy_n(option_.WorkWaveLength.begin(), kMostMultiWavelengths, settings.WorkWaveLength.begin());
  std::copy_n(option_.Parameter.begin(), kMostMultiWavelengths, settings.Parameter.begin());
  return settings;
}

void MultiDocument::Begin(const MultiSettings& settings) {
  *this = MultiDocument();
  TakeMultiSettings(settings, option_);
}

bool MultiDocument::WouldChange(const MultiSettings& settings) const {
  return option_.WorkWLNo != settings.WorkWLNo ||
         !SameEntries(Settings(), settings, MultiWavelengths(option_));
}

void MultiDocument::Configure(const MultiSettings& settings) {
  const bool changes = WouldChange(settings);
  TakeMultiSettings(settings, option_);
  if (!changes || records_.empty()) return;
  for (MultiRecord& record : records_) record.Result = MultiResult(option_, record);
  LeaveFile();
  MarkModified();
}

void MultiDocument::SetRecordName(std::int32_t row, const std::string& name) {
  SetText(MutableRecord(row).Name, name);
}

}  // namespace spectrane
