#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "files/wlsoption.h"
#include "spectrum/spectrum.h"

namespace spectrane {

/// A spectrum out of a file of another program.
struct ImportedSpectrum {
  /// Rising in wavelength.
  Spectrum Points;
  /// The file has transmittance and no absorbance.
  bool ShowsTrans = false;
  /// Why there is no spectrum, in plain words; empty when there is one.
  std::string Reason;
  /// What was passed over; empty when nothing was.
  std::string Remark;
};

/// A table in text: wavelength [nm] first, then absorbance or %T or both, as their titles say; one column
/// without a title is absorbance. Commas, semicolons or tabs between the cells; with the latter two a comma
/// may stand for the point. Lines in front of the first row of numbers are titles; the table ends at the
/// first line that is no such row.
ImportedSpectrum ImportCsv(std::string_view text);

/// A JCAMP-DX file of version 4.24 or 5 with one spectrum in XYDATA, in any of its compressed forms, or in
/// XYPOINTS, over nanometres, micrometres or wavenumbers, in absorbance or transmittance.
ImportedSpectrum ImportJcamp(std::string_view text);

/// The home view that shows all points.
WLSOption HomeViewOf(const ImportedSpectrum& spectrum);

/// A spectrum that cannot be had.
ImportedSpectrum NoSpectrum(std::string reason);
/// Adds to what was passed over.
void AddRemark(ImportedSpectrum& spectrum, std::size_t count, const std::string& unit, const char* which);
/// Puts the points in rising order without those that are no numbers. None, or more than a spectrum can have,
/// are a reason.
ImportedSpectrum Arranged(ImportedSpectrum spectrum);
/// The other of the two values follows from the one that is there.
void AddAbs(Spectrum& points, double wavelength, double abs);
void AddTrans(Spectrum& points, double wavelength, double trans);

}  // namespace spectrane
