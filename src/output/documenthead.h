#pragma once

#include <QDateTime>
#include <QString>

#include <string>
#include <vector>

#include "output/report.h"

namespace spectrane {

/// What stands above every export and report.
struct DocumentHead {
  /// Path of the document's file; empty for a new one.
  std::string Path;
  /// The window's caption, which stands for a file that there is not yet.
  std::string Caption;
  /// When the export or report is made, local time.
  QDateTime Moment;
  std::string Operator;
  std::string Company;
  /// A simulated instrument is connected.
  bool Simulated = false;

  /// The file's name without its folder, or the caption.
  std::string Name() const;
  /// "  Time:2024-02-29 13:05:09".
  std::string TimeWords() const;
};

/// The facts that begin every report.
std::vector<ReportFact> HeadFacts(const DocumentHead& head);

/// A report with that title and these facts, in the language's own font.
Report ReportOf(const DocumentHead& head, const std::string& title);
Report ReportOf(const DocumentHead& head, int titleText);

/// "546.0nm, 620.0nm" of the wavelengths, each once, in rising order.
std::string WavelengthList(std::vector<double> wavelengths);

/// "Abs(546.0nm)": the absorbance at that wavelength, in headings and formulas.
std::string AbsAt(double wavelength);

}  // namespace spectrane
