#include "files/basicfile.h"

namespace spectrane {
namespace {

constexpr LayoutField kOption[] = {
    Field<&BasicOption::Version>("Version", 0, 256),
    Field<&BasicOption::Written>("Written", 256, 128),
    Field<&BasicOption::RecordCount>("RecordCount", 384, 4),
};
constexpr LayoutField kRecord[] = {
    Field<&BasicRecord::SampleEnergy>("SampleEnergy", 0, 4),
    Field<&BasicRecord::ReferenceEnergy>("ReferenceEnergy", 4, 4),
    Field<&BasicRecord::DarkEnergy>("DarkEnergy", 8, 4),
    Field<&BasicRecord::Wavelength>("Wavelength", 12, 8),
    Field<&BasicRecord::Note>("Note", 20, 256),
};
constexpr FileModule<BasicOption, BasicRecord> kModule = {
    {"bas", 11, BlockOf<BasicOption, kOption, 388>(), 492, BlockOf<BasicRecord, kRecord, 276>(),
     kNoRecordLimit},
    [](const BasicOption& option) -> std::int64_t { return option.RecordCount; },
    [](BasicOption& option, std::int32_t count) { option.RecordCount = count; },
};
static_assert(KindHolds(kModule));

}  // namespace

const FileModule<BasicOption, BasicRecord>& BasicModule() {
  return kModule;
}

bool CreateBasicFile(const std::string& path, int& fileNumber, const BasicOption& option) {
  return kModule.Create(path, fileNumber, option);
}

bool OpenBasicFile(const std::string& path, int& fileNumber, BasicOption& option) {
  return kModule.Open(path, fileNumber, option);
}

bool ReadBasicRecord(int fileNumber, BasicRecord& record, std::int32_t index) {
  return kModule.Read(fileNumber, record, index);
}

bool WriteBasicRecord(int fileNumber, const BasicRecord& record, std::int32_t index) {
  return kModule.Write(fileNumber, record, index);
}

void CloseBasicFile(int fileNumber) {
  CloseDataFile(fileNumber);
}

}  // namespace spectrane
