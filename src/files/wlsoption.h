#pragma once

#include <cstdint>

#include "files/block.h"

namespace spectrane {

/// Option block of both kinds of spectrum file (.wls).
struct WLSOption {
  /// Range of the home view [nm].
  double StartWavelength = 0;
  double EndWavelength = 0;
  /// Scales of the home view [Abs], [%T], [counts].
  double AbsTop = 0;
  double AbsBottom = 0;
  double TransTop = 0;
  double TransBottom = 0;
  std::int32_t EnergyTop = 0;
  std::int32_t EnergyBottom = 0;
  /// Gain, filter and lamp of the energy display.
  std::int32_t EnergyAmp = 0;
  std::int32_t EnergyFilter = 0;
  std::int32_t EnergyLamp = 0;
  /// Index of the scan interval, not a length.
  std::int32_t IntervalWavelength = 0;
  std::int32_t PointCount = 0;
  /// 1 Abs, 2 %T, 3 energy.
  std::int32_t DisplayMode = 0;

  bool operator==(const WLSOption&) const = default;
};

/// Most points of a spectrum.
inline constexpr std::int32_t kMostSpectrumPoints = 10001;

inline constexpr LayoutField kWLSOptionFields[] = {
    Field<&WLSOption::StartWavelength>("StartWavelength", 0, 8),
    Field<&WLSOption::EndWavelength>("EndWavelength", 8, 8),
    Field<&WLSOption::AbsTop>("AbsTop", 16, 8),
    Field<&WLSOption::AbsBottom>("AbsBottom", 24, 8),
    Field<&WLSOption::TransTop>("TransTop", 32, 8),
    Field<&WLSOption::TransBottom>("TransBottom", 40, 8),
    Field<&WLSOption::EnergyTop>("EnergyTop", 48, 4),
    Field<&WLSOption::EnergyBottom>("EnergyBottom", 52, 4),
    Field<&WLSOption::EnergyAmp>("EnergyAmp", 56, 4),
    Field<&WLSOption::EnergyFilter>("EnergyFilter", 60, 4),
    Field<&WLSOption::EnergyLamp>("EnergyLamp", 64, 4),
    Field<&WLSOption::IntervalWavelength>("IntervalWavelength", 68, 4),
    Field<&WLSOption::PointCount>("PointCount", 72, 4),
    Field<&WLSOption::DisplayMode>("DisplayMode", 76, 4),
};
inline constexpr Block kWLSOptionBlock = BlockOf<WLSOption, kWLSOptionFields, 80>();

inline std::int64_t PointsOf(const WLSOption& option) {
  return option.PointCount;
}
inline void SetPoints(WLSOption& option, std::int32_t count) {
  option.PointCount = count;
}

}  // namespace spectrane
