#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "files/quafile.h"
#include "modes/quantitation/curvefit.h"
#include "modes/quantitation/curveformula.h"
#include "modes/quantitation/quantitationsettings.h"
#include "modes/recorddocument.h"

namespace spectrane {

/// One quantitation: the table of standards, the curve, the blank, the measured samples, and the file they
/// belong to. Rows of standards and records count from 0; a row outside its table throws NumericFault.
class QuantitationDocument : public RecordDocumentOf<QuaOption, QuaRecord> {
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
  /// Concentrations can be computed: with typed coefficients, or a fit that was accepted and whose standards
  /// are not gone since.
  bool CurveHolds() const;

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

  /// A record of these readings with its concentration; not yet in the table.
  QuaRecord MakeRecord(const std::string& name, double first, double second = 0) const;
  /// The curve was fitted and the record's working absorbance lies outside those of its standards.
  bool IsBeyondStandards(std::int32_t row) const;
  void SetRecordName(std::int32_t row, const std::string& name);
  void SetRecordNote(std::int32_t row, const std::string& note);
  void ClearRecords();

  /// There is more than options: a file, records, or something of a standard.
  bool HoldsWork() const;

 protected:
  /// Options alone are enough.
  bool HasContents() const override { return true; }
  /// The standards and their curve are in them.
  bool StandsWithoutRecords() const override { return true; }

 private:
  std::size_t StandardIndex(std::int32_t row) const;
  void ForgetZeroed(std::int32_t rowsBefore);
};

}  // namespace spectrane
