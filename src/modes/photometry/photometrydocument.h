#pragma once

#include <cstdint>
#include <string>

#include "files/basicfile.h"
#include "modes/recorddocument.h"

namespace spectrane {

/// The readings of one photometry test, and the file they belong to. A document without rows is not saved.
class PhotometryDocument : public RecordDocumentOf<BasicOption, BasicRecord> {
 public:
  PhotometryDocument();

  /// Energies of sample, 100 %T reference and dark [counts].
  std::int32_t RecordEnergy(std::int32_t row) const { return Record(row).SampleEnergy; }
  std::int32_t RecordFullEnergy(std::int32_t row) const { return Record(row).ReferenceEnergy; }
  std::int32_t RecordDarkEnergy(std::int32_t row) const { return Record(row).DarkEnergy; }
  /// [nm]
  double RecordWavelength(std::int32_t row) const { return Record(row).Wavelength; }
  const std::string& RecordNote(std::int32_t row) const { return Record(row).Note; }
  /// %T and absorbance follow from the three energies; nothing stores them.
  double RecordTrans(std::int32_t row) const;
  double RecordAbs(std::int32_t row) const;

  void SetRecordNote(std::int32_t row, const std::string& note);

 protected:
  void StampOption(BasicOption& option) const override;
};

}  // namespace spectrane
