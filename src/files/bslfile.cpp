#include "files/bslfile.h"

#include <cmath>
#include <limits>

#include "base/numbers.h"

namespace spectrane {
namespace {

constexpr LayoutField kOption[] = {
    Field<&BSLOption::EndWavelength>("EndWavelength", 0, 8),
    Field<&BSLOption::StartWavelength>("StartWavelength", 8, 8),
    Field<&BSLOption::CreateDate>("CreateDate", 16, 8),
    Field<&BSLOption::Reserved>("Reserved", 24, 4),
};
constexpr LayoutField kRecord[] = {
    Field<&BSLRecord::Wavelength>("Wavelength", 0, 8),
    Field<&BSLRecord::Amp>("Amp", 8, 4),
    Field<&BSLRecord::Energy>("Energy", 12, 4),
};

/// A range that is no number states no sensible count.
std::int64_t RecordsOfRange(const BSLOption& option) {
  const double last = RoundHalfEven(option.EndWavelength - option.StartWavelength);
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  if (!(last >= -1) || std::isinf(last)) return -1;
  return last < kMost ? static_cast<std::int64_t>(last) + 1 : kMost;
}

/// The range ends where the records do. Without any it stays: a range of no length still has one.
void EndRangeAt(BSLOption& option, std::int32_t count) {
  if (count > 0 && RecordsOfRange(option) != count) option.EndWavelength = option.StartWavelength + count - 1;
}

constexpr FileModule<BSLOption, BSLRecord> kModule = {
    {"bsl", 6, BlockOf<BSLOption, kOption, 28>(), 132, BlockOf<BSLRecord, kRecord, 16>(),
     kMostBaselineRecords},
    RecordsOfRange,
    EndRangeAt,
};
static_assert(KindHolds(kModule));

}  // namespace

const FileModule<BSLOption, BSLRecord>& BSLModule() {
  return kModule;
}

bool CreateBaselineFile(const std::string& path, int& fileNumber, const BSLOption& option) {
  return kModule.Create(path, fileNumber, option);
}

bool OpenBaselineFile(const std::string& path, int& fileNumber, BSLOption& option) {
  return kModule.Open(path, fileNumber, option);
}

bool ReadBaselineRecord(int fileNumber, BSLRecord& record, std::int32_t index) {
  return kModule.Read(fileNumber, record, index);
}

bool WriteBaselineRecord(int fileNumber, const BSLRecord& record, std::int32_t index) {
  return kModule.Write(fileNumber, record, index);
}

void CloseBaselineFile(int fileNumber) {
  CloseDataFile(fileNumber);
}

}  // namespace spectrane
