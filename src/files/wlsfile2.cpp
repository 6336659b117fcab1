#include "files/wlsfile2.h"

namespace spectrane {
namespace {

constexpr LayoutField kRecord[] = {
    Field<&WLS2Record::Wavelength>("Wavelength", 0, 8),
    Field<&WLS2Record::Trans>("Trans", 8, 8),
    Field<&WLS2Record::Abs>("Abs", 16, 8),
};
constexpr FileModule<WLSOption, WLS2Record> kModule = {
    {"wls2", 12, kWLSOptionBlock, 184, BlockOf<WLS2Record, kRecord, 24>(), kMostSpectrumPoints},
    PointsOf,
    SetPoints,
};
static_assert(KindHolds(kModule));

}  // namespace

const FileModule<WLSOption, WLS2Record>& WLS2Module() {
  return kModule;
}

bool CreateWLS2File(const std::string& path, int& fileNumber, const WLSOption& option) {
  return kModule.Create(path, fileNumber, option);
}

bool OpenWLS2File(const std::string& path, int& fileNumber, WLSOption& option) {
  return kModule.Open(path, fileNumber, option);
}

bool ReadWLS2Record(int fileNumber, WLS2Record& record, std::int32_t index) {
  return kModule.Read(fileNumber, record, index);
}

bool WriteWLS2Record(int fileNumber, const WLS2Record& record, std::int32_t index) {
  return kModule.Write(fileNumber, record, index);
}

void CloseWLS2File(int fileNumber) {
  CloseDataFile(fileNumber);
}

}  // namespace spectrane
