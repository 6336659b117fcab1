#include "files/quafile.h"

namespace spectrane {
namespace {

constexpr LayoutField kOption[] = {
    Field<&QuaOption::StandardName>("StandardName", 0, 5376),
    Field<&QuaOption::StandardAbs>("StandardAbs", 5376, 1008),
    Field<&QuaOption::StandardAbsSet>("StandardAbsSet", 6384, 42),
    Field<&QuaOption::StandardConc>("StandardConc", 6426, 168),
    Field<&QuaOption::StandardConcSet>("StandardConcSet", 6594, 42),
    Field<&QuaOption::StandardNote>("StandardNote", 6636, 5376),
    Field<&QuaOption::FittingMethod>("FittingMethod", 12012, 4),
    Field<&QuaOption::SampleNumber>("SampleNumber", 12016, 4),
    Field<&QuaOption::CurveK>("CurveK", 12020, 32),
    Field<&QuaOption::CurveR>("CurveR", 12052, 8),
    Field<&QuaOption::CurveValid>("CurveValid", 12060, 2),
    Field<&QuaOption::CurveItem>("CurveItem", 12062, 4),
    Field<&QuaOption::InputK>("InputK", 12066, 32),
    Field<&QuaOption::ConcUnit>("ConcUnit", 12098, 256),
    Field<&QuaOption::WaveLengthNumber>("WaveLengthNumber", 12354, 4),
    Field<&QuaOption::WaveLengthList>("WaveLengthList", 12358, 32),
    Field<&QuaOption::BlankFullEnergy>("BlankFullEnergy", 12390, 16),
    Field<&QuaOption::BlankDarkEnergy>("BlankDarkEnergy", 12406, 16),
    Field<&QuaOption::BlankGain>("BlankGain", 12422, 16),
    Field<&QuaOption::BlankDone>("BlankDone", 12438, 2),
    Field<&QuaOption::WaveLengthPara>("WaveLengthPara", 12440, 32),
    Field<&QuaOption::TestRecordCount>("TestRecordCount", 12472, 4),
};
constexpr LayoutField kRecord[] = {
    Field<&QuaRecord::Name>("Name", 0, 256),
    Field<&QuaRecord::Abs>("Abs", 256, 32),
    Field<&QuaRecord::Conc>("Conc", 288, 8),
    Field<&QuaRecord::Note>("Note", 296, 256),
};
constexpr FileModule<QuaOption, QuaRecord> kModule = {
    {"qua", 1, BlockOf<QuaOption, kOption, 12476>(), 12582, BlockOf<QuaRecord, kRecord, 552>(),
     kNoRecordLimit},
    [](const QuaOption& option) -> std::int64_t { return option.TestRecordCount; },
    [](QuaOption& option, std::int32_t count) { option.TestRecordCount = count; },
};
static_assert(KindHolds(kModule));

}  // namespace

const FileModule<QuaOption, QuaRecord>& QuaModule() {
  return kModule;
}

bool CreateQuaFile(const std::string& path, int& fileNumber, const QuaOption& option) {
  return kModule.Create(path, fileNumber, option);
}

bool OpenQuaFile(const std::string& path, int& fileNumber, QuaOption& option) {
  return kModule.Open(path, fileNumber, option);
}

bool ReadQuaRecord(int fileNumber, QuaRecord& record, std::int32_t index) {
  return kModule.Read(fileNumber, record, index);
}

bool WriteQuaRecord(int fileNumber, const QuaRecord& record, std::int32_t index) {
  return kModule.Write(fileNumber, record, index);
}

void CloseQuaFile(int fileNumber) {
  CloseDataFile(fileNumber);
}

}  // namespace spectrane
