#include "files/multifile.h"

namespace spectrane {
namespace {

constexpr LayoutField kOption[] = {
    Field<&MultiOption::WorkWaveLength>("WorkWaveLength", 0, 128),
    Field<&MultiOption::Parameter>("Parameter", 128, 128),
    Field<&MultiOption::WorkWLNo>("WorkWLNo", 256, 4),
    Field<&MultiOption::RecordCount>("RecordCount", 260, 4),
};
constexpr LayoutField kRecord[] = {
    Field<&MultiRecord::Abs>("Abs", 0, 128),
    Field<&MultiRecord::Result>("Result", 128, 8),
    Field<&MultiRecord::Name>("Name", 136, 256),
};
constexpr FileModule<MultiOption, MultiRecord> kModule = {
    {"mul", 4, BlockOf<MultiOption, kOption, 264>(), 368, BlockOf<MultiRecord, kRecord, 392>(),
     kNoRecordLimit},
    [](const MultiOption& option) -> std::int64_t { return option.RecordCount; },
    [](MultiOption& option, std::int32_t count) { option.RecordCount = count; },
};
static_assert(KindHolds(kModule));

}  // namespace

const FileModule<MultiOption, MultiRecord>& MultiModule() {
  return kModule;
}

bool CreateMultiFile(const std::string& path, int& fileNumber, const MultiOption& option) {
  return kModule.Create(path, fileNumber, option);
}

bool OpenMultiFile(const std::string& path, int& fileNumber, MultiOption& option) {
  return kModule.Open(path, fileNumber, option);
}

bool ReadMultiRecord(int fileNumber, MultiRecord& record, std::int32_t index) {
  return kModule.Read(fileNumber, record, index);
}

bool WriteMultiRecord(int fileNumber, const MultiRecord& record, std::int32_t index) {
  return kModule.Write(fileNumber, record, index);
}

void CloseMultiFile(int fileNumber) {
  CloseDataFile(fileNumber);
}

}  // namespace spectrane
