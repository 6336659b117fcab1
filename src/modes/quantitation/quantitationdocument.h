#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "files/filefault.h"
#include "files/quafile.h"
#include "modes/quantitation/curvefit.h"
#include "modes/quantitation/curveformula.h"
#include "modes/quantitation/quantitationsettings.h"

namespace spectrane {

/// One quantitation: the table of standards, the curve, the blank, the measured samples, and the file they
/// belong to. Rows of standards and records count from 0; a row outside its table throws NumericFault.
class QuantitationDocument {
 public:
  /// As of a first start: two standards at 546 nm, nothing measured.
  QuantitationDocument();

  /// Everything but the records; TestRecordCount is their number. A file may bring any numbers.
  const QuaOption& Option() const { return option_; }
  /// Rows that the grid of standards shows: the stored number of standards, held to 0 to 20.
  std::int32_t StandardRows() const;
  bool FitsStandards() const {
    return option_.CurveItem == static_cast<std::int32_t>(CurveSource::Standards);
  }

  /// What the option dialog shows. The operator's own unit is not kept here.
  QuantitationSettings Settings() const;
  /// A new document with these settings, as after a start: nothing measured, nothing to save.
  void Begin(const QuantitationSettings& settings);
  /// Whether Configure() would change anything that the records rest on.
  bool WouldChange(const QuantitationSettings& settings) const;
  /// Takes the dialog's values and fits anew. When they change anything, the records go, and a document that
  /// had records is a new one without a file; other wavelengths or factors also take the absorbances of the
  /// standards and the blank. Names, concentrations and notes of the standards stay.
  FitOutcome Configure(const QuantitationSettings& settings);

  /// Standards; names and notes do not touch the curve, a value gives the row its flag and fits anew.
  void SetStandardName(std::int32_t row, const std::string& name);
  void SetStandardNote(std::int32_t row, const std::string& note);
  FitOutcome SetStandardConc(std::int32_t row, double conc);
  FitOutcome ClearStandardConc(std::int32_t row);
  /// Absorbances at the first and the second wavelength; with one wavelength the second is not looked at.
  FitOutcome SetStandardReadings(std::int32_t row, double first, double second = 0);

  /// Fits the standards. With typed coefficients nothing is fitted (FitOutcome::Typed).
  FitOutcome Refit();
  /// By the equation in force, of an absorbance that WorkingAbs() gave.
  double CalcConc(double absorbance) const { return spectrane::CalcConc(option_, absorbance); }
  /// The absorbance that the curve works on: the reading, or both readings, times the factors.
  double WorkingAbs(double first, double second = 0) const;
  std::vector<FormulaPart> Formula(const DisplayFormats& formats) const;

  /// Reference and dark energy [counts] and gain at wavelength `index`, 0 to 2. The blank alone is nothing
  /// that has to be saved: it does not mark the document.
  void SetBlank(std::int32_t index, std::int32_t fullEnergy, std::int32_t darkEnergy, std::int32_t gain);
  void SetBlankDone(bool done) { option_.BlankDone = done; }

  std::int32_t RecordCount() const { return static_cast<std::int32_t>(records_.size()); }
  const QuaRecord& Record(std::int32_t row) const;
  /// A record of these readings with its concentration; not yet in the table.
  QuaRecord MakeRecord(const std::string& name, double first, double second = 0) const;
  void Append(QuaRecord record);
  /// The curve was fitted and the record's working absorbance lies outside those of its standards.
  bool IsBeyondStandards(std::int32_t row) const;
  void SetRecordName(std::int32_t row, const std::string& name);
  void SetRecordNote(std::int32_t row, const std::string& note);
  /// Removes the row that the grid numbers `number`, from 1; later rows move up. False when it is 0 or beyond
  /// the last.
  bool DeleteRecord(std::int32_t number);
  void ClearRecords();

  /// Changes that no file has yet.
  bool IsModified() const { return modified_; }
  /// There is more than options: a file, records, or something of a standard.
  bool HoldsWork() const;
  /// Only a part of the records of its file could be read. Such a document is shown; it never takes the place
  /// of that file.
  bool IsHalfLoaded() const { return halfLoaded_; }
  /// Path of the file; empty before the first save.
  const std::string& FileName() const { return fileName_; }
  /// The last save had texts with characters that the file has no place for; "?" stands there.
  bool TextWasLost() const { return textLost_; }
  /// Why the last OpenFile() or SaveFile() gave false.
  const FileFault& LastFault() const { return fault_; }

  /// Takes the contents of a file in the place of its own, the curve as it is stored. False: the document is
  /// as it was, except that a file with fewer records than it states gives those it has (IsHalfLoaded).
  bool OpenFile(const std::string& path);
  /// Writes everything to `path`, whose old file is replaced when the new one is whole. False: the old file
  /// is as it was and the document stays modified. A half-loaded document is saved only when it was modified,
  /// and elsewhere than in its own file, which still has what was not read; from then on it is whole.
  bool SaveFile(const std::string& path);

 private:
  std::size_t StandardIndex(std::int32_t row) const;
  QuaRecord& MutableRecord(std::int32_t row);
  void SetText(std::string& text, const std::string& value);
  void RecordsChanged();
  bool MaySave(const std::string& path) const;

  QuaOption option_;
  std::vector<QuaRecord> records_;
  std::string fileName_;
  FileFault fault_;
  bool modified_ = false;
  bool halfLoaded_ = false;
  bool textLost_ = false;
};

}  // namespace spectrane
