#pragma once

#include <optional>
#include <string>
#include <vector>

namespace spectrane {

/// A spectrum or a time scan on its way to other programs.
struct ExchangeCurve {
  std::string Title;
  /// Who measured, and where; may be empty.
  std::string Owner;
  std::string Origin;
  /// X is time [s], at this wavelength [nm]; otherwise X is the wavelength [nm].
  std::optional<double> TimeScanWavelength;
  /// %T is what the document shows.
  bool ShowsTrans = false;
  std::vector<double> X;
  std::vector<double> Abs;
  /// [%T]
  std::vector<double> Trans;
};

/// A table of x, absorbance and %T: titles, then a line for each point, commas between, CR LF. Every number
/// is the shortest decimal that reads back the same; what is no number is "-".
std::string CsvText(const ExchangeCurve& curve);

/// A JCAMP-DX 4.24 file: absorbance, or transmittance from 0 to 1 where that is shown. Points at equal
/// distances make an XYDATA table of whole numbers with nine significant digits, others an XYPOINTS table.
/// What is no number is "?".
std::string JcampText(const ExchangeCurve& curve);

}  // namespace spectrane
