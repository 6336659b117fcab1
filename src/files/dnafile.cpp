#include "files/dnafile.h"

namespace spectrane {
namespace {

constexpr LayoutField kOption[] = {
    Field<&DNAOption::WaveLength>("WaveLength", 0, 32),   Field<&DNAOption::Factor>("Factor", 32, 32),
    Field<&DNAOption::Option>("Option", 64, 4),           Field<&DNAOption::Spare>("Spare", 68, 4),
    Field<&DNAOption::RecordCount>("RecordCount", 72, 4),
};
constexpr LayoutField kRecord[] = {
    Field<&DNARecord::Name>("Name", 0, 256),   Field<&DNARecord::Abs>("Abs", 256, 32),
    Field<&DNARecord::DNA>("DNA", 288, 8),     Field<&DNARecord::Protein>("Protein", 296, 8),
    Field<&DNARecord::Ratio>("Ratio", 304, 8), Field<&DNARecord::Note>("Note", 312, 256),
};
constexpr FileModule<DNAOption, DNARecord> kModule = {
    {"dna", 5, BlockOf<DNAOption, kOption, 76>(), 180, BlockOf<DNARecord, kRecord, 568>(), kNoRecordLimit},
    [](const DNAOption& option) -> std::int64_t { return option.RecordCount; },
    [](DNAOption& option, std::int32_t count) { option.RecordCount = count; },
};
static_assert(KindHolds(kModule));

}  // namespace

const FileModule<DNAOption, DNARecord>& DNAModule() {
  return kModule;
}

bool CreateDNAFile(const std::string& path, int& fileNumber, const DNAOption& option) {
  return kModule.Create(path, fileNumber, option);
}

bool OpenDNAFile(const std::string& path, int& fileNumber, DNAOption& option) {
  return kModule.Open(path, fileNumber, option);
}

bool ReadDNARecord(int fileNumber, DNARecord& record, std::int32_t index) {
  return kModule.Read(fileNumber, record, index);
}

bool WriteDNARecord(int fileNumber, const DNARecord& record, std::int32_t index) {
  return kModule.Write(fileNumber, record, index);
}

void CloseDNAFile(int fileNumber) {
  CloseDataFile(fileNumber);
}

}  // namespace spectrane
