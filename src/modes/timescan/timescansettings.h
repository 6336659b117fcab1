#pragma once

#include <cstdint>
#include <iterator>
#include <span>

#include "base/colournumber.h"
#include "base/settingrows.h"
#include "files/tsfile.h"

namespace spectrane {

/// What config.ini holds for the time scan window; the values here are those of a first start.
struct TimeScanSettings {
  /// Wavelength, interval and scales of the home view. Its mode, times, count and blank are not used.
  TSOption Option{546, 0, 0, 1, 1, 0, 3, 0, 100, 0, 0, 0, 0};
  /// 1 Abs, 2 %T.
  std::int32_t DisplayMode = 1;
  /// Ends of the time axis of the home view [s]; the first is the delay before the first reading as well.
  double StartSecond = 0;
  double EndSecond = 1000;
  /// Peak value [Abs].
  double PeakHeight = 0.001;
  std::int32_t ScaleColor = ColourNumber(0, 0, 255);
  std::int32_t CurveColor = ColourNumber(255, 0, 0);
  std::int32_t MarkColor = ColourNumber(128, 0, 128);
  std::int32_t PeakColor = ColourNumber(255, 0, 128);
  std::int32_t ValleyColor = ColourNumber(0, 128, 0);
  bool PeakEnable = true;
  bool ValleyEnable = true;
  /// Marks carry time and value instead of a number.
  bool PeakDetailEnable = false;
  bool ValleyDetailEnable = false;
  bool GridEnable = true;
  /// What a report holds.
  bool PrintCurve = true;
  bool PrintPeakValley = true;
  bool PrintDataList = false;

  // Without a key: each new window begins with this.
  /// The tables stand beside the window.
  bool DataTableEnable = true;

  bool operator==(const TimeScanSettings&) const = default;
};

inline constexpr const char* kTimeScanSection = "Time Scanning";
inline constexpr const char* kTimeScanPeakHeightKey = "Peak Height";

namespace timescanrows {

using T = TimeScanSettings;
using Row = SettingRow<T>;

constexpr Row Number(const char* key, double& (*field)(T&)) {
  return {kTimeScanSection, key, field};
}
constexpr Row Colour(const char* key, std::int32_t& (*field)(T&)) {
  return {kTimeScanSection, key, field, 0, kHighestColour};
}
constexpr Row Flag(const char* key, bool& (*field)(T&)) {
  return {kTimeScanSection, key, field};
}

}  // namespace timescanrows

/// The peak value has a dialog of its own and stands last: the option dialog stores all rows before it.
inline constexpr SettingRow<TimeScanSettings> kTimeScanSettingRows[] = {
    timescanrows::Number("Work WaveLength", [](TimeScanSettings& s) -> double& { return s.Option.WorkWL; }),
    timescanrows::Number("Start Second", [](TimeScanSettings& s) -> double& { return s.StartSecond; }),
    timescanrows::Number("End Second", [](TimeScanSettings& s) -> double& { return s.EndSecond; }),
    {kTimeScanSection, "Interval Second",
     [](TimeScanSettings& s) -> std::int32_t& { return s.Option.IntervalSecond; }},
    {kTimeScanSection, "Display Mode", [](TimeScanSettings& s) -> std::int32_t& { return s.DisplayMode; }, 1,
     2},
    timescanrows::Number("Abs Bottom", [](TimeScanSettings& s) -> double& { return s.Option.AbsBottom; }),
    timescanrows::Number("Abs Top", [](TimeScanSettings& s) -> double& { return s.Option.AbsTop; }),
    timescanrows::Number("Trans Bottom", [](TimeScanSettings& s) -> double& { return s.Option.TransBottom; }),
    timescanrows::Number("Trans Top", [](TimeScanSettings& s) -> double& { return s.Option.TransTop; }),
    timescanrows::Colour("Scale Color", [](TimeScanSettings& s) -> std::int32_t& { return s.ScaleColor; }),
    timescanrows::Colour("Curve Color", [](TimeScanSettings& s) -> std::int32_t& { return s.CurveColor; }),
    timescanrows::Colour("Mark Color", [](TimeScanSettings& s) -> std::int32_t& { return s.MarkColor; }),
    timescanrows::Colour("Peak Color", [](TimeScanSettings& s) -> std::int32_t& { return s.PeakColor; }),
    timescanrows::Colour("Valley Color", [](TimeScanSettings& s) -> std::int32_t& { return s.ValleyColor; }),
    timescanrows::Flag("Peak Enable", [](TimeScanSettings& s) -> bool& { return s.PeakEnable; }),
    timescanrows::Flag("Valley Enable", [](TimeScanSettings& s) -> bool& { return s.ValleyEnable; }),
    timescanrows::Flag("Peak Detail Enable", [](TimeScanSettings& s) -> bool& { return s.PeakDetailEnable; }),
    timescanrows::Flag("Valley Detail Enable",
                       [](TimeScanSettings& s) -> bool& { return s.ValleyDetailEnable; }),
    timescanrows::Flag("Grid Enable", [](TimeScanSettings& s) -> bool& { return s.GridEnable; }),
    timescanrows::Flag("Print Curve", [](TimeScanSettings& s) -> bool& { return s.PrintCurve; }),
    timescanrows::Flag("Print Peak Valley", [](TimeScanSettings& s) -> bool& { return s.PrintPeakValley; }),
    timescanrows::Flag("Print Data List", [](TimeScanSettings& s) -> bool& { return s.PrintDataList; }),
    timescanrows::Number(kTimeScanPeakHeightKey, [](TimeScanSettings& s) -> double& { return s.PeakHeight; }),
};

inline std::span<const SettingRow<TimeScanSettings>> TimeScanOptionRows() {
  return std::span(kTimeScanSettingRows).first(std::size(kTimeScanSettingRows) - 1);
}

}  // namespace spectrane
