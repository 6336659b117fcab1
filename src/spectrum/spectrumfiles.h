#pragma once

#include <string>

#include "files/filefault.h"
#include "files/wlsoption.h"
#include "spectrum/spectrum.h"

namespace spectrane {

/// A spectrum with the option block of its file.
struct StoredSpectrum {
  WLSOption Option;
  Spectrum Points;
};

/// Reads a measured spectrum; transmittance and absorbance follow from the energies, with `smooth` as
/// weighted means of five points. On a fault that tells of fewer points than stated, those that were read are
/// there.
FileFault LoadMeasuredSpectrum(const std::string& path, bool smooth, StoredSpectrum& spectrum);

/// Reads a processed spectrum; faults as above.
FileFault LoadProcessedSpectrum(const std::string& path, StoredSpectrum& spectrum);

/// Writes a processed spectrum and puts it in the place of the file at `path`, which stays as it was on any
/// fault. Of `option` ranges, scales and display mode are kept; the count follows from the points, the rest
/// is 0.
FileFault SaveProcessedSpectrum(const std::string& path, const WLSOption& option, const Spectrum& points);

}  // namespace spectrane
