#include "modes/windows/numberentry.h"

#include <cmath>
#include <optional>

#include "app/ground/dialogparts.h"
#include "app/ground/mainwindow.h"
#include "app/ground/numberfield.h"
#include "base/numbers.h"
#include "modes/windows/wavelengthentry.h"

namespace spectrane {
namespace {

std::optional<double> NumberIn(const NumberField& field) {
  if (field.text().trimmed().isEmpty()) return ParseNumber(field.placeholderText().toStdString());
  return field.Number();
}

}  // namespace

bool TakeNumber(MainWindow& frame, NumberField& field, double& value) {
  const std::optional<double> number = NumberIn(field);
  if (number && std::isfinite(*number)) {
    value = *number;
    return true;
  }
  frame.Boxes().ShowWords(
      QStringLiteral("%1: a number is needed here, such as 0.25 or 1.5e-3.").arg(field.accessibleName()));
  field.PointOut();
  return false;
}

bool TakeWavelength(MainWindow& frame, NumberField& field, int refusalText, double& value) {
  const std::optional<double> wavelength = NumberIn(field);
  const InstrumentState& state = frame.Link().State;
  if (wavelength && *wavelength >= state.WavelengthMin && *wavelength <= state.WavelengthMax) {
    value = *wavelength == value ? value : RoundToTenth(*wavelength);
    return true;
  }
  const QString details =
      QStringLiteral("%1 %2 (%3)").arg(field.accessibleName(), field.text(), InstrumentRangeText(frame));
  frame.Boxes().Show(refusalText, details.toStdString());
  field.PointOut();
  return false;
}

QString InstrumentRangeText(MainWindow& frame) {
  const InstrumentState& state = frame.Link().State;
  return WavelengthRangeText(state.WavelengthMin, state.WavelengthMax);
}

}  // namespace spectrane
