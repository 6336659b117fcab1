#include "modes/photometry/photometrydocument.h"

#include "base/dateserial.h"
#include "base/version.h"
#include "link/function.h"

namespace spectrane {

PhotometryDocument::PhotometryDocument() : RecordDocumentOf(BasicModule()) {}

double PhotometryDocument::RecordTrans(std::int32_t row) const {
  const BasicRecord& record = Record(row);
  return TransFromEnergy(record.SampleEnergy, record.ReferenceEnergy, record.DarkEnergy);
}

double PhotometryDocument::RecordAbs(std::int32_t row) const {
  const BasicRecord& record = Record(row);
  return AbsFromEnergy(record.SampleEnergy, record.ReferenceEnergy, record.DarkEnergy);
}

void PhotometryDocument::SetRecordNote(std::int32_t row, const std::string& note) {
  SetText(MutableRecord(row).Note, note);
}

void PhotometryDocument::StampOption(BasicOption& option) const {
  option.Version = VersionText();
  option.Written = DateTimeText(Now());
}

}  // namespace spectrane
