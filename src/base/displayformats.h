#pragma once

#include <string>

namespace spectrane {

/// The number patterns of all displays, and the texts of the three data-display fields.
struct DisplayFormats {
  /// 0 standard, 1 high; any other value shows as standard.
  int PrecisionMode = 0;
  std::string WavelengthFormat = "0.0";
  std::string AbsFormat = "0.000";
  std::string TransFormat = "0.0";
  /// Curve coefficients: six decimals after start, those of AbsFormat once the options were confirmed. The
  /// difference is meant.
  std::string CoefficientFormat = "0.000000";

  /// The patterns after start.
  static DisplayFormats AtStart(int precisionMode);
  /// The patterns after OK in the option dialog.
  void ApplyOption(int precisionMode);
  bool IsHighPrecision() const { return PrecisionMode == 1; }
};

/// Wavelength field [nm]: "1000.0nm", " 546.0nm".
std::string WavelengthDisplay(double wavelength, const DisplayFormats& formats);
/// Absorbance field: a blank stands in the place of the sign unless a negative figure shows.
std::string AbsDisplay(double abs, const DisplayFormats& formats);
/// %T field: as many blanks in front as digits are short of three.
std::string TransDisplay(double trans, const DisplayFormats& formats);

}  // namespace spectrane
