#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/displayformats.h"

namespace spectrane {

/// A stretch of the equation in one size of type.
struct FormulaPart {
  std::string Text;
  /// Smaller, above the line.
  bool Raised = false;
  bool operator==(const FormulaPart&) const = default;
};

/// A coefficient; the larger it is the fewer decimals it has.
std::string Get5BitString(double value, const DisplayFormats& formats);
/// The equation of a fitting method with its coefficients, lowest power first, and r where the method has
/// one. Empty for an unknown method.
std::vector<FormulaPart> CurveFormula(std::int32_t fittingMethod, const std::array<double, 4>& coefficients,
                                      double r, const DisplayFormats& formats);
/// The parts in one line: "Conc.=(0.100)xA2+(1.000)xA+(0.000)".
std::string FormulaText(const std::vector<FormulaPart>& parts);

}  // namespace spectrane
