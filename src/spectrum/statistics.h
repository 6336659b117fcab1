#pragma once

#include <cstdint>
#include <span>

namespace spectrane {

/// The points of a spectrum: wavelength [nm], transmittance [%T] and absorbance, of one length.
struct SpectrumPoints {
  std::span<const double> Wavelength;
  std::span<const double> Trans;
  std::span<const double> Abs;
};

/// One point of a spectrum; a result without a point is all 0.
struct SpectrumValues {
  double Wavelength = 0;
  double Abs = 0;
  double Trans = 0;
};

struct MaxMinAverage {
  SpectrumValues Max;
  SpectrumValues Min;
  /// Means; the wavelength is not used.
  SpectrumValues Average;
};

/// The index of the point at that wavelength, else of the lower neighbour, however close the upper one is; 0
/// below the first point and in an empty spectrum, the last index where neither is found.
std::int32_t FindRecordIndexByWavelength(const SpectrumPoints& points, double wavelength);

/// The point of highest, and of lowest, transmittance between the points of two wavelengths, both included;
/// of equal ones the first. False, with `index` 0, for an empty spectrum.
bool FindMaxInRecord(const SpectrumPoints& points, double startWavelength, double endWavelength,
                     std::int32_t& index);
bool FindMinInRecord(const SpectrumPoints& points, double startWavelength, double endWavelength,
                     std::int32_t& index);

/// Means of transmittance and absorbance over the same points; 0 for an empty spectrum.
SpectrumValues CaculateAverageData(const SpectrumPoints& points, double startWavelength,
                                   double endWavelength);

/// All three. The range holds in either order.
MaxMinAverage CaculateMaxMinAverage(const SpectrumPoints& points, double startWavelength,
                                    double endWavelength);

}  // namespace spectrane
