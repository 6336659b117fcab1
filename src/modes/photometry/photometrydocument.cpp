#include "modes/photometry/photometrydocument.h"

#include <utility>

#include "base/dateserial.h"
#include "base/numericfault.h"
#include "base/utf8path.h"
#include "base/version.h"
#include "link/function.h"

namespace spectrane {

const BasicRecord& PhotometryDocument::Record(std::int32_t row) const {
  if (row < 0 || row >= RecordCount()) throw NumericFault("row outside the table");
  return rows_[static_cast<std::size_t>(row)];
}

double PhotometryDocument::RecordTrans(std::int32_t row) const {
  const BasicRecord& record = Record(row);
  return TransFromEnergy(record.SampleEnergy, record.ReferenceEnergy, record.DarkEnergy);
}

double PhotometryDocument::RecordAbs(std::int32_t row) const {
  const BasicRecord& record = Record(row);
  return AbsFromEnergy(record.SampleEnergy, record.ReferenceEnergy, record.DarkEnergy);
}

void PhotometryDocument::Append(BasicRecord record) {
  rows_.push_back(std::move(record));
  modified_ = true;
}

void PhotometryDocument::SetRecordNote(std::int32_t row, const std::string& note) {
  if (Record(row).Note == note) return;
  rows_[static_cast<std::size_t>(row)].Note = note;
  modified_ = true;
}

bool PhotometryDocument::DeleteRecord(std::int32_t number) {
  if (number < 1 || number > RecordCount()) return false;
  rows_.erase(rows_.begin() + (number - 1));
  modified_ = true;
  return true;
}

bool PhotometryDocument::OpenFile(const std::string& path) {
  BasicOption option;
  std::vector<BasicRecord> rows;
  fault_ = LoadDataFile(BasicModule(), path, option, rows);
  if (fault_ && rows.empty()) return false;
  rows_ = std::move(rows);
  fileName_ = path;
  modified_ = false;
  halfLoaded_ = static_cast<bool>(fault_);
  textLost_ = false;
  return !halfLoaded_;
}

bool PhotometryDocument::MaySave(const std::string& path) const {
  return !rows_.empty() && (!halfLoaded_ || (modified_ && !SameFile(path, fileName_)));
}

bool PhotometryDocument::SaveFile(const std::string& path) {
  if (!MaySave(path)) {
    fault_ = {halfLoaded_ ? FileError::HalfRead : FileError::NotSavable, 0, 0, 0, {}};
    return false;
  }
  BasicOption option;
  option.Version = VersionText();
  option.Written = DateTimeText(Now());
  bool lost = false;
  fault_ = SaveDataFile(
      BasicModule(), path, option, RecordCount(),
      [this](std::int32_t i) -> const BasicRecord& { return rows_[static_cast<std::size_t>(i)]; }, &lost);
  if (fault_) return false;
  fileName_ = path;
  modified_ = false;
  halfLoaded_ = false;
  textLost_ = lost;
  return true;
}

}  // namespace spectrane
