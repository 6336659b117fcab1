#pragma once

#include <array>
#include <cstdint>

#include "base/curvesettings.h"
#include "files/wlsoption.h"

namespace spectrane {

/// What config.ini holds for the spectrum window; the values here are those of a first start. Its marks carry
/// wavelengths.
struct ScanSettings : CurveSettings {
  /// Home view and measuring parameters of a new document. PointCount is not used.
  WLSOption Option{350, 1100, 3, 0, 100, 0, 65535, 0, 1, 1, 1, 1, 0, 1};
  /// 0 slow, 1 medium, 2 quick.
  std::int32_t QuickSpeed = 1;
  /// Values are weighted means of five points.
  bool SmoothEnable = true;

  // Without a key, as DataTableEnable: each new window begins with these.
  bool PrintMaxMinAverage = false;
  /// A report lists every so many points.
  std::int32_t PrintInterval = 1;

  bool operator==(const ScanSettings&) const = default;
};

inline constexpr const char* kScanSection = "WaveLength Scanning";

using ScanRow = SettingRow<ScanSettings>;

inline constexpr auto kScanSettingRows = JoinedRows(
    std::array{
        ScanRow{kScanSection, "Start WaveLength",
                [](ScanSettings& s) -> double& { return s.Option.StartWavelength; }},
        ScanRow{kScanSection, "End WaveLength",
                [](ScanSettings& s) -> double& { return s.Option.EndWavelength; }},
        ScanRow{kScanSection, "Interval WaveLength",
                [](ScanSettings& s) -> std::int32_t& { return s.Option.IntervalWavelength; }},
        ScanRow{kScanSection, "Display Mode",
                [](ScanSettings& s) -> std::int32_t& { return s.Option.DisplayMode; }, 1, 3},
        ScanRow{kScanSection, "Abs Bottom", [](ScanSettings& s) -> double& { return s.Option.AbsBottom; }},
        ScanRow{kScanSection, "Abs Top", [](ScanSettings& s) -> double& { return s.Option.AbsTop; }},
        ScanRow{kScanSection, "Trans Bottom",
                [](ScanSettings& s) -> double& { return s.Option.TransBottom; }},
        ScanRow{kScanSection, "Trans Top", [](ScanSettings& s) -> double& { return s.Option.TransTop; }},
        ScanRow{kScanSection, "Energy Bottom",
                [](ScanSettings& s) -> std::int32_t& { return s.Option.EnergyBottom; }},
        ScanRow{kScanSection, "Energy Top",
                [](ScanSettings& s) -> std::int32_t& { return s.Option.EnergyTop; }},
        ScanRow{kScanSection, "Energy Amp",
                [](ScanSettings& s) -> std::int32_t& { return s.Option.EnergyAmp; }},
        ScanRow{kScanSection, "Energy Filter",
                [](ScanSettings& s) -> std::int32_t& { return s.Option.EnergyFilter; }},
        ScanRow{kScanSection, "Energy Lamp",
                [](ScanSettings& s) -> std::int32_t& { return s.Option.EnergyLamp; }},
        ScanRow{kScanSection, "Quick Speed", [](ScanSettings& s) -> std::int32_t& { return s.QuickSpeed; }, 0,
                2},
        ScanRow{kScanSection, kPeakHeightKey, [](ScanSettings& s) -> double& { return s.PeakHeight; }}},
    CurveColourRows<ScanSettings>(kScanSection), CurveMarkRows<ScanSettings>(kScanSection),
    std::array{
        ScanRow{kScanSection, "Smooth Enable", [](ScanSettings& s) -> bool& { return s.SmoothEnable; }}},
    CurvePrintRows<ScanSettings>(kScanSection));

}  // namespace spectrane
