#pragma once

#include <cstdint>

#include "files/wlsoption.h"

namespace spectrane {

/// What the values of a spectrum are shown as; the numbers of the files and of config.ini.
enum class ScanMode : std::int32_t { Abs = 1, Trans = 2, Energy = 3 };

/// A number without a mode shows absorbance.
inline ScanMode ScanModeOf(std::int32_t displayMode) {
  return displayMode == 2 ? ScanMode::Trans : displayMode == 3 ? ScanMode::Energy : ScanMode::Abs;
}

/// Ends of the value scale of one mode.
struct ScanRange {
  double Top = 0;
  double Bottom = 0;
  bool operator==(const ScanRange&) const = default;
};

/// Scales of a spectrum: the home view, or what is seen now.
struct ScanScale {
  /// [nm]
  double StartWavelength = 350;
  double EndWavelength = 1100;
  ScanRange Abs{3, 0};
  /// [%T]
  ScanRange Trans{100, 0};
  /// [counts]
  ScanRange Energy{65535, 0};

  ScanRange& Of(ScanMode mode) {
    return mode == ScanMode::Trans ? Trans : mode == ScanMode::Energy ? Energy : Abs;
  }
  const ScanRange& Of(ScanMode mode) const { return const_cast<ScanScale*>(this)->Of(mode); }
  bool operator==(const ScanScale&) const = default;
};

/// The home view that an option block has.
inline ScanScale ScaleOf(const WLSOption& option) {
  return {option.StartWavelength,
          option.EndWavelength,
          {option.AbsTop, option.AbsBottom},
          {option.TransTop, option.TransBottom},
          {static_cast<double>(option.EnergyTop), static_cast<double>(option.EnergyBottom)}};
}

}  // namespace spectrane
