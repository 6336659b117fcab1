#include "modes/quantitation/quantitationdocument.h"

#include <algorithm>

#include "base/numericfault.h"

namespace spectrane {
namespace {

template <std::size_t kFrom, std::size_t kTo>
void CopyFirst(const std::array<double, kFrom>& from, std::array<double, kTo>& to) {
  std::copy_n(from.begin(), std::min(kFrom, kTo), to.begin());
}

void TakeSettings(const QuantitationSettings& settings, QuaOption& option) {
  option.WaveLengthNumber = settings.WaveLengthNumber;
  CopyFirst(settings.WaveLengthList, option.WaveLengthList);
  CopyFirst(settings.WaveLengthPara, option.WaveLengthPara);
  option.SampleNumber = settings.SampleNumber;
  option.CurveItem = settings.CurveItem;
  option.InputK = settings.InputK;
  option.FittingMethod = settings.FittingMethod;
  option.ConcUnit = settings.ConcUnit;
}

void ForgetCurve(QuaOption& option) {
  option.CurveK.fill(0);
  option.CurveR = 1;
  option.CurveValid = false;
}

void ForgetReadings(QuaOption& option) {
  option.StandardAbs = {};
  option.StandardAbsSet = {};
  option.BlankDone = false;
}

bool SameReadings(const QuantitationSettings& one, const QuantitationSettings& other) {
  return one.WaveLengthNumber == other.WaveLengthNumber && one.WaveLengthList == other.WaveLengthList &&
         one.WaveLengthPara == other.WaveLengthPara;
}

}  // namespace

QuantitationDocument::QuantitationDocument() : RecordDocumentOf(QuaModule()) {
  TakeSettings(QuantitationSettings(), option_);
  ForgetCurve(option_);
}

std::int32_t QuantitationDocument::StandardRows() const {
  return std::clamp(option_.SampleNumber, 0, kMostStandards);
}

QuantitationSettings QuantitationDocument::Settings() const {
  QuantitationSettings settings;
  settings.WaveLengthNumber = option_.WaveLengthNumber;
  CopyFirst(option_.WaveLengthList, settings.WaveLengthList);
  CopyFirst(option_.WaveLengthPara, settings.WaveLengthPara);
  settings.SampleNumber = option_.SampleNumber;
  settings.CurveItem = option_.CurveItem;
  settings.InputK = option_.InputK;
  settings.FittingMethod = option_.FittingMethod;
  settings.ConcUnit = option_.ConcUnit;
  return settings;
}

void QuantitationDocument::Begin(const QuantitationSettings& settings) {
  *this = QuantitationDocument();
  TakeSettings(settings, option_);
}

bool QuantitationDocument::WouldChange(const QuantitationSettings& settings) const {
  QuantitationSettings own = Settings();
  own.CustomConcUnit = settings.CustomConcUnit;
  return own != settings;
}

FitOutcome QuantitationDocument::Configure(const QuantitationSettings& settings) {
  if (WouldChange(settings)) {
    if (!records_.empty()) {
      ClearRecords();
      LeaveFile();
    }
    if (!SameReadings(Settings(), settings)) ForgetReadings(option_);
    const std::int32_t rows = StandardRows();
    TakeSettings(settings, option_);
    ForgetZeroed(rows);
    ForgetCurve(option_);
    MarkModified();
  }
  return Refit();
}

// A fit through zero has put the origin into the row behind its last standard. When that row is one of a
// standard again it is none that anybody measured.
void QuantitationDocument::ForgetZeroed(std::int32_t rowsBefore) {
  for (auto i = static_cast<std::size_t>(rowsBefore); i < static_cast<std::size_t>(StandardRows()); ++i) {
    if (option_.StandardAbs[i][FitColumn(option_)] != 0 || option_.StandardConc[i] != 0) continue;
    option_.StandardAbsSet[i] = false;
    option_.StandardConcSet[i] = false;
  }
}

std::size_t QuantitationDocument::StandardIndex(std::int32_t row) const {
  if (row < 0 || row >= static_cast<std::int32_t>(kStandardRows)) {
    throw NumericFault("row outside the table of standards");
  }
  return static_cast<std::size_t>(row);
}

void QuantitationDocument::SetStandardName(std::int32_t row, const std::string& name) {
  SetText(option_.StandardName[StandardIndex(row)], name);
}

void QuantitationDocument::SetStandardNote(std::int32_t row, const std::string& note) {
  SetText(option_.StandardNote[StandardIndex(row)], note);
}

FitOutcome QuantitationDocument::SetStandardConc(std::int32_t row, double conc) {
  const std::size_t index = StandardIndex(row);
  option_.StandardConc[index] = conc;
  option_.StandardConcSet[index] = true;
  MarkModified();
  return Refit();
}

FitOutcome QuantitationDocument::ClearStandardConc(std::int32_t row) {
  const std::size_t index = StandardIndex(row);
  option_.StandardConc[index] = 0;
  option_.StandardConcSet[index] = false;
  // A fit of incomplete standards leaves the verdict as it was: nothing may be measured with that one.
  ForgetCurve(option_);
  MarkModified();
  return Refit();
}

FitOutcome QuantitationDocument::SetStandardReadings(std::int32_t row, double first, double second) {
  const std::size_t index = StandardIndex(row);
  const double working = WorkingAbs(first, second);
  if (FitColumn(option_) == 0) {
    option_.StandardAbs[index] = {working};
  } else {
    option_.StandardAbs[index] = {first, second, working};
  }
  option_.StandardAbsSet[index] = true;
  MarkModified();
  return Refit();
}

FitOutcome QuantitationDocument::Refit() {
  if (!FitsStandards()) return FitOutcome::Typed;
  const QuaOption before = option_;
  const FitOutcome outcome = CreateCurve(option_);
  if (option_ != before) MarkModified();
  return outcome;
}

double QuantitationDocument::WorkingAbs(double first, double second) const {
  const double working = first * option_.WaveLengthPara[0];
  return FitColumn(option_) == 0 ? working : working + second * option_.WaveLengthPara[1];
}

std::vector<FormulaPart> QuantitationDocument::Formula(const DisplayFormats& formats) const {
  return CurveFormula(option_.FittingMethod, CoefficientsInForce(option_), CorrelationInForce(option_),
                      formats);
}

void QuantitationDocument::SetBlank(std::int32_t index, std::int32_t fullEnergy, std::int32_t darkEnergy,
                                    std::int32_t gain) {
  if (index < 0 || index > 2) throw NumericFault("no such wavelength");
  const auto i = static_cast<std::size_t>(index);
  option_.BlankFullEnergy[i] = fullEnergy;
  option_.BlankDarkEnergy[i] = darkEnergy;
  option_.BlankGain[i] = gain;
}

QuaRecord QuantitationDocument::MakeRecord(const std::string& name, double first, double second) const {
  const double working = WorkingAbs(first, second);
  QuaRecord record;
  record.Name = name;
  record.Abs[0] = first;
  if (FitColumn(option_) != 0) record.Abs = {first, second, working, working};
  record.Conc = CalcConc(working);
  return record;
}

bool QuantitationDocument::CurveHolds() const {
  if (!FitsStandards()) return true;
  const bool fitted = std::ranges::any_of(option_.CurveK, [](double k) { return k != 0; });
  return option_.CurveValid && (fitted || StandardsComplete(option_));
}

bool QuantitationDocument::IsBeyondStandards(std::int32_t row) const {
  if (!FitsStandards() || !option_.CurveValid || !StandardsComplete(option_) || StandardRows() == 0)
    return false;
  const QuaRecord& record = Record(row);
  const double working = FitColumn(option_) == 0 ? WorkingAbs(record.Abs[0]) : record.Abs[2];
  double lowest = option_.StandardAbs[0][FitColumn(option_)];
  double highest = lowest;
  for (std::size_t i = 0; i < static_cast<std::size_t>(StandardRows()); ++i) {
    lowest = std::min(lowest, option_.StandardAbs[i][FitColumn(option_)]);
    highest = std::max(highest, option_.StandardAbs[i][FitColumn(option_)]);
  }
  return !(working >= lowest && working <= highest);
}

void QuantitationDocument::SetRecordName(std::int32_t row, const std::string& name) {
  SetText(MutableRecord(row).Name, name);
}

void QuantitationDocument::SetRecordNote(std::int32_t row, const std::string& note) {
  SetText(MutableRecord(row).Note, note);
}

void QuantitationDocument::ClearRecords() {
  if (records_.empty()) return;
  records_.clear();
  RecordsChanged();
}

bool QuantitationDocument::HoldsWork() const {
  const auto isSet = [](bool flag) { return flag; };
  const auto isText = [](const std::string& text) { return !text.empty(); };
  return !FileName().empty() || !records_.empty() || std::ranges::any_of(option_.StandardAbsSet, isSet) ||
         std::ranges::any_of(option_.StandardConcSet, isSet) ||
         std::ranges::any_of(option_.StandardName, isText) ||
         std::ranges::any_of(option_.StandardNote, isText);
}

}  // namespace spectrane
