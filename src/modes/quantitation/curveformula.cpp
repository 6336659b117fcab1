#include "modes/quantitation/curveformula.h"

#include <utility>

#include "base/numbers.h"
#include "modes/quantitation/curvefit.h"

namespace spectrane {
namespace {

/// Collects the terms of an equation.
class FormulaWriter {
 public:
  explicit FormulaWriter(const DisplayFormats& formats) : formats_(formats) {}

  /// One term of the equation; its absorbance has the power given.
  void Term(double coefficient, int power) {
    const bool carriesMinus = coefficient <= -5e-5;
    if (!parts_.empty() && !carriesMinus) Plain("+");
    if (parts_.empty()) Plain("Conc.=");
    Plain("(" + Get5BitString(coefficient, formats_) + ")");
    if (power > 0) Plain("xA");
    if (power > 1) parts_.push_back({std::to_string(power), true});
  }
  void Correlation(double r) { Plain("  r = " + Format(r, formats_.CoefficientFormat)); }
  std::vector<FormulaPart> Parts() && { return std::move(parts_); }

 private:
  void Plain(const std::string& text) {
    if (parts_.empty() || parts_.back().Raised) parts_.emplace_back();
    parts_.back().Text += text;
  }

  const DisplayFormats& formats_;
  std::vector<FormulaPart> parts_;
};

}  // namespace

std::string Get5BitString(double value, const DisplayFormats& formats) {
  // The bounds above and below zero differ by a digit, and are meant to.
  if (value > 999.95) return Format(value, "0.0");
  if (value > 99.995) return Format(value, "0.00");
  if (value > 9.9995) return Format(value, "0.000");
  if (value <= -999.995) return Format(value, "0.0");
  if (value <= -99.9995) return Format(value, "0.00");
  if (value <= -9.99995) return Format(value, "0.000");
  return Format(value, formats.AbsFormat);
}

std::vector<FormulaPart> CurveFormula(std::int32_t fittingMethod, const std::array<double, 4>& coefficients,
                                      double r, const DisplayFormats& formats) {
  FormulaWriter formula(formats);
  switch (static_cast<FittingMethod>(fittingMethod)) {
    case FittingMethod::ZeroCrossing:
      formula.Term(coefficients[1], 1);
      formula.Correlation(r);
      break;
    case FittingMethod::FirstOrder:
      formula.Term(coefficients[1], 1);
      formula.Term(coefficients[0], 0);
      formula.Correlation(r);
      break;
    case FittingMethod::SecondOrder:
      for (const int power : {2, 1, 0}) formula.Term(coefficients[static_cast<std::size_t>(power)], power);
      break;
    case FittingMethod::ThirdOrder:
      for (const int power : {3, 2, 1, 0}) formula.Term(coefficients[static_cast<std::size_t>(power)], power);
      break;
  }
  return std::move(formula).Parts();
}

std::string FormulaText(const std::vector<FormulaPart>& parts) {
  std::string text;
  for (const FormulaPart& part : parts) text += part.Text;
  return text;
}

}  // namespace spectrane
