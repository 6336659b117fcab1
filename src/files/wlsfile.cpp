#include "files/wlsfile.h"

namespace spectrane {
namespace {

constexpr LayoutField kRecord[] = {
    Field<&WLSRecord::SampleEnergy>("SampleEnergy", 0, 4),
    Field<&WLSRecord::ReferenceEnergy>("ReferenceEnergy", 4, 4),
    Field<&WLSRecord::DarkEnergy>("DarkEnergy", 8, 4),
    Field<&WLSRecord::Wavelength>("Wavelength", 12, 8),
    Field<&WLSRecord::Gain>("Gain", 20, 4),
};
constexpr FileModule<WLSOption, WLSRecord> kModule = {
    {"wls", 3, kWLSOptionBlock, 184, BlockOf<WLSRecord, kRecord, 24>(), kMostSpectrumPoints},
    PointsOf,
    SetPoints,
};
static_assert(KindHolds(kModule));

}  // namespace

const FileModule<WLSOption, WLSRecord>& WLSModule() {
  return kModule;
}

bool CreateWLSFile(const std::string& path, int& fileNumber, const WLSOption& option) {
  return kModule.Create(path, fileNumber, option);
}

bool OpenWLSFile(const std::string& path, int& fileNumber, WLSOption& option) {
  return kModule.Open(path, fileNumber, option);
}

bool ReadWLSRecord(int fileNumber, WLSRecord& record, std::int32_t index) {
  return kModule.Read(fileNumber, record, index);
}

bool WriteWLSRecord(int fileNumber, const WLSRecord& record, std::int32_t index) {
  return kModule.Write(fileNumber, record, index);
}

void CloseWLSFile(int fileNumber) {
  CloseDataFile(fileNumber);
}

}  // namespace spectrane
