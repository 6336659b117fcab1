#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "files/basicfile.h"
#include "files/filefault.h"

namespace spectrane {

/// The readings of one photometry test, and the file they belong to. Rows count from 0.
class PhotometryDocument {
 public:
  std::int32_t RecordCount() const { return static_cast<std::int32_t>(rows_.size()); }
  /// A row outside the table throws NumericFault, here and below.
  const BasicRecord& Record(std::int32_t row) const;
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

  void Append(BasicRecord record);
  void SetRecordNote(std::int32_t row, const std::string& note);
  /// Removes the row that the grid numbers `number`, from 1; later rows move up. False when it is 0 or beyond
  /// the last.
  bool DeleteRecord(std::int32_t number);

  /// Rows that no file has yet.
  bool IsModified() const { return modified_; }
  /// Only a part of the rows of its file could be read. Such a document is shown; it
  /// never takes the place of that file.
  bool IsHalfLoaded() const { return halfLoaded_; }
  /// Path of the file; empty before the first save.
  const std::string& FileName() const { return fileName_; }
  /// The last save had texts with characters that the file has no place for; "?" stands there.
  bool TextWasLost() const { return textLost_; }
  /// Why the last OpenFile() or SaveFile() gave false.
  const FileFault& LastFault() const { return fault_; }

  /// Takes the rows of a file in the place of its own. False: the document is as it was, except that a file
  /// with fewer rows than it states gives those it has (IsHalfLoaded).
  bool OpenFile(const std::string& path);
  /// Writes all rows to `path`, whose old file is replaced when the new one is whole. False: the old file is
  /// as it was and the document stays modified. A document without rows is refused. A half-loaded one is
  /// saved only when it was modified, and elsewhere than in its own file, which still has what was not read;
  /// from then on it is whole.
  bool SaveFile(const std::string& path);

 private:
  bool MaySave(const std::string& path) const;

  std::vector<BasicRecord> rows_;
  std::string fileName_;
  FileFault fault_;
  bool modified_ = false;
  bool halfLoaded_ = false;
  bool textLost_ = false;
};

}  // namespace spectrane
