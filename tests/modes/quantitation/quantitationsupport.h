#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "modes/quantitation/curvefit.h"

namespace spectrane {

/// Absorbance and concentration.
using Standards = std::vector<std::pair<double, double>>;

/// A quantitation whose standards are all given, with one wavelength, as it stands before a fit.
inline QuaOption WithStandards(const Standards& standards, std::int32_t method,
                               std::int32_t wavelengths = 1) {
  QuaOption qua;
  qua.FittingMethod = method;
  qua.SampleNumber = static_cast<std::int32_t>(standards.size());
  qua.WaveLengthNumber = wavelengths;
  qua.CurveItem = 1;
  qua.CurveR = 1;
  for (std::size_t i = 0; i < standards.size(); ++i) {
    qua.StandardAbs[i][wavelengths == 1 ? 0 : 2] = standards[i].first;
    qua.StandardConc[i] = standards[i].second;
    qua.StandardAbsSet[i] = true;
    qua.StandardConcSet[i] = true;
  }
  return qua;
}

/// `digits` significant digits agree.
inline void ExpectDigits(double value, double expected, int digits, const char* what) {
  EXPECT_NEAR(value, expected, std::fabs(expected) * std::pow(10.0, -digits)) << what;
}

}  // namespace spectrane
