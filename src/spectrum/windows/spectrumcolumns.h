#pragma once

#include <functional>
#include <vector>

#include "app/ground/pointtable.h"
#include "base/displayformats.h"
#include "spectrum/spectrum.h"
#include "spectrum/statistics.h"

namespace spectrane {

/// Columns of a table of points: number, wavelength, absorbance, transmittance. `points` is called when a
/// figure is made; it and `formats` live as long as the table shows any.
std::vector<PointColumn> SpectrumColumns(const DisplayFormats& formats,
                                         const std::function<SpectrumPoints()>& points);

/// A point in a line: its number, wavelength and both values; empty for one that there is not.
QString PointLine(const DisplayFormats& formats, const SpectrumPoints& points, std::size_t point);

inline SpectrumPoints PointsOf(const Spectrum& spectrum) {
  return {spectrum.WL, spectrum.Trans, spectrum.Abs};
}

}  // namespace spectrane
