#include "output/quantitationhint.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

#include "modes/quantitation/curveaxes.h"
#include "modes/quantitation/curvefit.h"

namespace spectrane {
namespace {

bool IsTyped(const QuaOption& qua) {
  return qua.CurveItem == static_cast<std::int32_t>(CurveSource::Coefficients);
}

bool CountIsPossible(const QuaOption& qua) {
  return qua.SampleNumber >= 1 && qua.SampleNumber <= kMostStandards;
}

/// Rows in use whose flag is not set.
std::vector<std::int32_t> RowsWithout(const QuaOption& qua, const std::array<bool, kStandardRows>& flags) {
  std::vector<std::int32_t> rows;
  for (std::int32_t i = 0; i < qua.SampleNumber; ++i) {
    if (!flags[static_cast<std::size_t>(i)]) rows.push_back(i);
  }
  return rows;
}

QString OfStandards(const std::vector<std::int32_t>& rows) {
  const QString word = rows.size() == 1 ? QStringLiteral("standard ") : QStringLiteral("standards ");
  return word + RowNumbers(rows);
}

QuantitationHint IncompleteHint(const QuaOption& qua) {
  const std::vector<std::int32_t> unmeasured = RowsWithout(qua, qua.StandardAbsSet);
  const std::vector<std::int32_t> unnamed = RowsWithout(qua, qua.StandardConcSet);
  std::int32_t complete = 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(qua.SampleNumber); ++i)
    complete += qua.StandardAbsSet[i] && qua.StandardConcSet[i] ? 1 : 0;
  QStringList advice;
  if (!unnamed.empty()) advice << QStringLiteral("Type the concentration of %1.").arg(OfStandards(unnamed));
  if (!unmeasured.empty()) {
    const QString words = qua.BlankDone ? QStringLiteral("Measure %1 by a click on %2.")
                                        : QStringLiteral("Set the blank, then measure %1 by a click on %2.");
    const QString place =
        unmeasured.size() == 1 ? QStringLiteral("its absorbance") : QStringLiteral("the absorbance of each");
    advice << words.arg(OfStandards(unmeasured), place);
  }
  return {QStringLiteral("%1 of %2 standards complete").arg(complete).arg(qua.SampleNumber),
          advice.join(u'\n')};
}

bool NeedsTwo(const QuaOption& qua) {
  const auto method = static_cast<FittingMethod>(qua.FittingMethod);
  return method == FittingMethod::FirstOrder ||
         (method == FittingMethod::ZeroCrossing && FitColumn(qua) != 0);
}

QuantitationHint RejectedHint(const QuaOption& qua) {
  if (qua.SampleNumber < 2 && NeedsTwo(qua)) {
    return {QStringLiteral("Curve rejected: this fitting takes two standards or more"),
            QStringLiteral("Choose more standards or another fitting in the option.")};
  }
  return {QStringLiteral("Curve rejected: no line with |r| of 0.8 or more"),
          QStringLiteral("Measure the standard that is off again, or choose another fitting in the option.")};
}

}  // namespace

QuantitationState StateOf(const QuaOption& qua) {
  if (!IsTyped(qua)) {
    if (!CountIsPossible(qua)) return QuantitationState::NoStandards;
    if (!StandardsComplete(qua)) return QuantitationState::Incomplete;
  }
  if (!AxesOf(qua).Drawable()) return QuantitationState::OffScale;
  return IsTyped(qua) || qua.CurveValid ? QuantitationState::Curve : QuantitationState::Rejected;
}

bool HasEquation(QuantitationState state) {
  return state == QuantitationState::Curve || state == QuantitationState::Rejected ||
         state == QuantitationState::OffScale;
}

QuantitationHint HintOf(const QuaOption& qua) {
  switch (StateOf(qua)) {
    case QuantitationState::NoStandards:
      return {QStringLiteral("No standards"), QStringLiteral("Choose 1 to 20 standards in the option.")};
    case QuantitationState::Incomplete:
      return IncompleteHint(qua);
    case QuantitationState::Rejected:
      return RejectedHint(qua);
    case QuantitationState::OffScale:
      return {QStringLiteral("The curve has no scale"),
              QStringLiteral("Absorbances and concentrations can be drawn up to 10000. "
                             "A larger unit makes the numbers smaller.")};
    case QuantitationState::Curve:
      break;
  }
  return {};
}

QString RowNumbers(const std::vector<std::int32_t>& rows) {
  QStringList words;
  for (std::size_t first = 0; first < rows.size();) {
    std::size_t last = first;
    while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1) ++last;
    // Two neighbours are no stretch.
    if (last == first + 1) last = first;
    const QString number = QString::number(rows[first] + 1);
    words << (last == first ? number : QStringLiteral("%1 to %2").arg(number).arg(rows[last] + 1));
    first = last + 1;
  }
  return words.join(QStringLiteral(", "));
}

}  // namespace spectrane
