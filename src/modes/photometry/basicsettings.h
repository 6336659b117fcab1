#pragma once

#include "base/settingrows.h"

namespace spectrane {

/// What config.ini holds for the photometry test; the value here is that of a first start.
struct BasicSettings {
  /// Test wavelength [nm].
  double WaveLength = 546.0;
};

inline constexpr const char* kBasicSection = "Basic Test";

inline constexpr SettingRow<BasicSettings> kBasicSettingRows[] = {
    {kBasicSection, "Wavelength", [](BasicSettings& s) -> double& { return s.WaveLength; }, 100.0, 3000.0},
};

}  // namespace spectrane
