#pragma once

#include <QString>

#include <cstdint>
#include <vector>

#include "files/quafile.h"

namespace spectrane {

/// What there is to show of a quantitation.
enum class QuantitationState {
  /// The number of standards is not one that a curve can have.
  NoStandards,
  /// A standard was not measured or has no concentration.
  Incomplete,
  /// The fit did not take the standards. They are drawn, with what the fit left, so that the one that is off
  /// can be seen.
  Rejected,
  /// The values have no axes: beyond the last scale, or no numbers.
  OffScale,
  /// A fitted or typed curve.
  Curve,
};

QuantitationState StateOf(const QuaOption& qua);

/// Whether there is an equation to show; without a scale it stands there without its curve.
bool HasEquation(QuantitationState state);

/// In place of a picture: what is the matter, and what to do.
struct QuantitationHint {
  QString Headline;
  QString Advice;
};

/// Empty when there is a curve.
QuantitationHint HintOf(const QuaOption& qua);

/// The numbers of the table's rows in few words: "1 to 4, 6". `rows` rise and count from 0.
QString RowNumbers(const std::vector<std::int32_t>& rows);

}  // namespace spectrane
