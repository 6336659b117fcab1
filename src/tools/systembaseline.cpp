#include "tools/systembaseline.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/utf8path.h"
#include "files/datafile.h"

namespace spectrane {
std::int32_t SystemBaseline::RecordsOfRange(double wavelengthMin, double wavelengthMax) {
  const double records = std::trunc(wavelengthMax) - std::trunc(wavelengthMin) + 1.0;
  return static_cast<std::int32_t>(std::clamp(records, 0.0, double{kSize}));
}

bool SystemBaseline::Load(const std::string& path, FileFault& fault) {
  BSLOption option;
  std::vector<BSLRecord> records;
  fault = LoadDataFile(BSLModule(), path, option, records);
  if (records.empty()) {
    if (!fault) fault.Error = FileError::Damaged;
    return false;
  }
  count_ = std::min(static_cast<std::int32_t>(records.size()), kSize);
  leftOut_ = static_cast<std::int64_t>(records.size()) - count_;
  records_.fill({});
  std::copy_n(records.begin(), count_, records_.begin());
  present_ = true;
  fileName_ = Utf8FromPath(PathFromUtf8(path).filename());
  halfReadPath_ = fault ? path : std::string();
  return true;
}

FileFault SystemBaseline::Save(const std::string& path, double wavelengthMin, double wavelengthMax,
                               double now) const {
  FileFault refused;
  if (!present_) refused.Error = FileError::NotSavable;
  if (SameFile(halfReadPath_, path)) refused.Error = FileError::HalfRead;
  if (refused) return refused;
  const BSLOption option{wavelengthMax, wavelengthMin, now, 0};
  return SaveDataFile(BSLModule(), path, option, RecordsOfRange(wavelengthMin, wavelengthMax),
                      [this](std::int32_t index) -> const BSLRecord& { return records_.at(At(index)); });
}

}  // namespace spectrane
