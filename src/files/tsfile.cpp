#include "files/tsfile.h"

namespace spectrane {
namespace {

constexpr LayoutField kOption[] = {
    Field<&TSOption::WorkWL>("WorkWL", 0, 8),
    Field<&TSOption::StartSecond>("StartSecond", 8, 4),
    Field<&TSOption::EndSecond>("EndSecond", 12, 4),
    Field<&TSOption::IntervalSecond>("IntervalSecond", 16, 4),
    Field<&TSOption::DisplayMode>("DisplayMode", 20, 2),
    Field<&TSOption::AbsBottom>("AbsBottom", 22, 8),
    Field<&TSOption::AbsTop>("AbsTop", 30, 8),
    Field<&TSOption::TransBottom>("TransBottom", 38, 8),
    Field<&TSOption::TransTop>("TransTop", 46, 8),
    Field<&TSOption::DataCount>("DataCount", 54, 4),
    Field<&TSOption::GainNo>("GainNo", 58, 4),
    Field<&TSOption::FullEnergy>("FullEnergy", 62, 4),
    Field<&TSOption::DarkEnergy>("DarkEnergy", 66, 4),
};
constexpr LayoutField kRecord[] = {
    Field<&TSRecord::Energy>("Energy", 0, 4),
    Field<&TSRecord::Time>("Time", 4, 8),
};
constexpr FileModule<TSOption, TSRecord> kModule = {
    {"tis", 2, BlockOf<TSOption, kOption, 70>(), 174, BlockOf<TSRecord, kRecord, 12>(), kMostTimeScanPoints},
    [](const TSOption& option) -> std::int64_t { return option.DataCount; },
    [](TSOption& option, std::int32_t count) { option.DataCount = count; },
};
static_assert(KindHolds(kModule));

}  // namespace

const FileModule<TSOption, TSRecord>& TSModule() {
  return kModule;
}

bool CreateTSFile(const std::string& path, int& fileNumber, const TSOption& option) {
  return kModule.Create(path, fileNumber, option);
}

bool OpenTSFile(const std::string& path, int& fileNumber, TSOption& option) {
  return kModule.Open(path, fileNumber, option);
}

bool ReadTSRecord(int fileNumber, TSRecord& record, std::int32_t index) {
  return kModule.Read(fileNumber, record, index);
}

bool WriteTSRecord(int fileNumber, const TSRecord& record, std::int32_t index) {
  return kModule.Write(fileNumber, record, index);
}

void CloseTSFile(int fileNumber) {
  CloseDataFile(fileNumber);
}

}  // namespace spectrane
