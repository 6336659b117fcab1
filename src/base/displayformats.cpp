#include "base/displayformats.h"

#include "base/numbers.h"

namespace spectrane {

DisplayFormats DisplayFormats::AtStart(int precisionMode) {
  DisplayFormats formats;
  const std::string coefficientFormat = formats.CoefficientFormat;
  formats.ApplyOption(precisionMode);
  formats.CoefficientFormat = coefficientFormat;
  return formats;
}

void DisplayFormats::ApplyOption(int precisionMode) {
  PrecisionMode = precisionMode;
  WavelengthFormat = "0.0";
  AbsFormat = IsHighPrecision() ? "0.0000" : "0.000";
  TransFormat = IsHighPrecision() ? "0.00" : "0.0";
  CoefficientFormat = AbsFormat;
}

std::string WavelengthDisplay(double wavelength, const DisplayFormats& formats) {
  const std::string text = Format(wavelength, formats.WavelengthFormat) + "nm";
  return wavelength >= 1000.0 ? text : " " + text;
}

std::string AbsDisplay(double abs, const DisplayFormats& formats) {
  const std::string text = Format(abs, formats.AbsFormat) + "Abs";
  return abs <= (formats.IsHighPrecision() ? -0.00005 : -0.0005) ? text : " " + text;
}

std::string TransDisplay(double trans, const DisplayFormats& formats) {
  std::string text = Format(trans, formats.TransFormat) + "%T";
  const bool high = formats.IsHighPrecision();
  if (trans > (high ? 99.995 : 99.95)) return text;
  return (trans > (high ? 9.995 : 9.95) ? " " : "  ") + text;
}

}  // namespace spectrane
