#pragma once

#include <array>
#include <cstdint>

#include "files/quafile.h"

namespace spectrane {

/// How the curve runs through the standards. Concentration follows from absorbance, never the reverse.
/// Numbers as in files and settings; a file may hold others.
enum class FittingMethod : std::int32_t { ZeroCrossing = 0, FirstOrder = 1, SecondOrder = 2, ThirdOrder = 3 };

/// Where the coefficients in force come from: a fit of standards, or typing.
enum class CurveSource : std::int32_t { Standards = 1, Coefficients = 2 };

/// Most standards that a fit takes. The table has one row more, so that the row behind the last standard is
/// always there.
inline constexpr std::int32_t kMostStandards = 20;

enum class FitOutcome {
  /// A standard was not measured or has no concentration: the coefficients are 0 and r is 1, CurveValid is
  /// as it was. Nothing to tell and nothing to draw.
  Incomplete,
  /// CurveValid is set.
  Accepted,
  /// CurveValid is cleared; a line through zero shows its figures all the same.
  Rejected,
  /// The coefficients are typed and nothing was fitted; only a document says so.
  Typed,
};

/// The curve of the standards by FittingMethod and WaveLengthNumber; what it writes are CurveK, CurveR,
/// CurveValid and, in a fit through zero, the row behind the last standard.
FitOutcome CreateCurve(QuaOption& qua);

/// The fits one by one: concentration over column 0 of the absorbances, or over the combined absorbance of
/// column 2. They write coefficients and r over what is there; nothing clears them first. False: rejected.
/// A count of standards outside 0 to 20, and a standard whose absorbance or concentration is no finite
/// number, are refused by all with nothing written.
///
/// Through zero: 1 to 20 standards, with two wavelengths 2 to 20. Sets absorbance and concentration of the
/// row behind the last standard to 0 (not with one standard alone): that row counts for r as a point of the
/// origin. K1 and the signed r are stored though |r| is below 0.8 and the fit is rejected.
bool FitZeroCrossing(QuaOption& qua);
bool FitZeroCrossingTwoWavelength(QuaOption& qua);
/// Straight line: 2 to 20 standards. Stores |r|. A rejected fit stores nothing.
bool FitFirstOrder(QuaOption& qua);
bool FitFirstOrderTwoWavelength(QuaOption& qua);
/// Parabola; no quality is asked for and r is not touched. A coefficient whose formula divides by zero or
/// overflows keeps what it had, and the fit counts as done.
bool QUA_Linear2(QuaOption& qua);
bool QUA_Linear2TwoWavelength(QuaOption& qua);
/// The same parabola, over the rows 1 to n instead of 0 to n - 1. That is meant: there is no cubic term.
bool QUA_Linear3(QuaOption& qua);
bool QUA_Linear3TwoWavelength(QuaOption& qua);

/// Column of the absorbances that a fit takes: 0 with one wavelength, 2 otherwise.
std::size_t FitColumn(const QuaOption& qua);
/// All standards in use were measured and have a concentration; false for a count outside 0 to 20.
bool StandardsComplete(const QuaOption& qua);
/// The coefficients that count now, fitted or typed, lowest power first.
const std::array<double, 4>& CoefficientsInForce(const QuaOption& qua);
/// The r that is told beside them; typed coefficients have 1.
double CorrelationInForce(const QuaOption& qua);
/// The concentration of an absorbance by the equation in force. An unknown fitting method gives the
/// absorbance times the typed K0. Not finite when the formula overflows.
double CalcConc(const QuaOption& qua, double absorbance);

}  // namespace spectrane
