#pragma once

#include <cstdint>

#include "base/colournumber.h"
#include "base/settingrows.h"
#include "files/wlsoption.h"

namespace spectrane {

/// What config.ini holds for the spectrum window; the values here are those of a first start.
struct ScanSettings {
  /// Home view and measuring parameters of a new document. PointCount is not used.
  WLSOption Option{350, 1100, 3, 0, 100, 0, 65535, 0, 1, 1, 1, 1, 0, 1};
  /// 0 slow, 1 medium, 2 quick.
  std::int32_t QuickSpeed = 1;
  /// Peak value [Abs].
  double PeakHeight = 0.001;
  std::int32_t ScaleColor = ColourNumber(0, 0, 255);
  std::int32_t CurveColor = ColourNumber(255, 0, 0);
  std::int32_t MarkColor = ColourNumber(128, 0, 128);
  std::int32_t PeakColor = ColourNumber(255, 0, 128);
  std::int32_t ValleyColor = ColourNumber(0, 128, 0);
  bool PeakEnable = true;
  bool ValleyEnable = true;
  /// Marks carry wavelength and value instead of a number.
  bool PeakDetailEnable = false;
  bool ValleyDetailEnable = false;
  bool GridEnable = true;
  /// Values are weighted means of five points.
  bool SmoothEnable = true;
  /// What a report holds.
  bool PrintCurve = true;
  bool PrintPeakValley = true;
  bool PrintDataList = false;

  // Without a key: each new window begins with these.
  /// The tables stand beside the window.
  bool DataTableEnable = true;
  bool PrintMaxMinAverage = false;
  /// A report lists every so many points.
  std::int32_t PrintInterval = 1;

  bool operator==(const ScanSettings&) const = default;
};

inline constexpr const char* kScanSection = "WaveLength Scanning";
inline constexpr const char* kPeakHeightKey = "Peak Height";

using ScanRow = SettingRow<ScanSettings>;

inline constexpr ScanRow kScanSettingRows[] = {
    {kScanSection, "Start WaveLength", [](ScanSettings& s) -> double& { return s.Option.StartWavelength; }},
    {kScanSection, "End WaveLength", [](ScanSettings& s) -> double& { return s.Option.EndWavelength; }},
    {kScanSection, "Interval WaveLength",
     [](ScanSettings& s) -> std::int32_t& { return s.Option.IntervalWavelength; }},
    {kScanSection, "Display Mode", [](ScanSettings& s) -> std::int32_t& { return s.Option.DisplayMode; }, 1,
     3},
    {kScanSection, "Abs Bottom", [](ScanSettings& s) -> double& { return s.Option.AbsBottom; }},
    {kScanSection, "Abs Top", [](ScanSettings& s) -> double& { return s.Option.AbsTop; }},
    {kScanSection, "Trans Bottom", [](ScanSettings& s) -> double& { return s.Option.TransBottom; }},
    {kScanSection, "Trans Top", [](ScanSettings& s) -> double& { return s.Option.TransTop; }},
    {kScanSection, "Energy Bottom", [](ScanSettings& s) -> std::int32_t& { return s.Option.EnergyBottom; }},
    {kScanSection, "Energy Top", [](ScanSettings& s) -> std::int32_t& { return s.Option.EnergyTop; }},
    {kScanSection, "Energy Amp", [](ScanSettings& s) -> std::int32_t& { return s.Option.EnergyAmp; }},
    {kScanSection, "Energy Filter", [](ScanSettings& s) -> std::int32_t& { return s.Option.EnergyFilter; }},
    {kScanSection, "Energy Lamp", [](ScanSettings& s) -> std::int32_t& { return s.Option.EnergyLamp; }},
    {kScanSection, "Quick Speed", [](ScanSettings& s) -> std::int32_t& { return s.QuickSpeed; }, 0, 2},
    {kScanSection, kPeakHeightKey, [](ScanSettings& s) -> double& { return s.PeakHeight; }},
    {kScanSection, "Scale Color", [](ScanSettings& s) -> std::int32_t& { return s.ScaleColor; }, 0,
     kHighestColour},
    {kScanSection, "Curve Color", [](ScanSettings& s) -> std::int32_t& { return s.CurveColor; }, 0,
     kHighestColour},
    {kScanSection, "Mark Color", [](ScanSettings& s) -> std::int32_t& { return s.MarkColor; }, 0,
     kHighestColour},
    {kScanSection, "Peak Color", [](ScanSettings& s) -> std::int32_t& { return s.PeakColor; }, 0,
     kHighestColour},
    {kScanSection, "Valley Color", [](ScanSettings& s) -> std::int32_t& { return s.ValleyColor; }, 0,
     kHighestColour},
    {kScanSection, "Peak Enable", [](ScanSettings& s) -> bool& { return s.PeakEnable; }},
    {kScanSection, "Valley Enable", [](ScanSettings& s) -> bool& { return s.ValleyEnable; }},
    {kScanSection, "Peak Detail Enable", [](ScanSettings& s) -> bool& { return s.PeakDetailEnable; }},
    {kScanSection, "Valley Detail Enable", [](ScanSettings& s) -> bool& { return s.ValleyDetailEnable; }},
    {kScanSection, "Grid Enable", [](ScanSettings& s) -> bool& { return s.GridEnable; }},
    {kScanSection, "Smooth Enable", [](ScanSettings& s) -> bool& { return s.SmoothEnable; }},
    {kScanSection, "Print Curve", [](ScanSettings& s) -> bool& { return s.PrintCurve; }},
    {kScanSection, "Print Peak Valley", [](ScanSettings& s) -> bool& { return s.PrintPeakValley; }},
    {kScanSection, "Print Data List", [](ScanSettings& s) -> bool& { return s.PrintDataList; }},
};

}  // namespace spectrane
