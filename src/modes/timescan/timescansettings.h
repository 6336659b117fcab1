#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "base/curvesettings.h"
#include "files/tsfile.h"

namespace spectrane {

/// What config.ini holds for the time scan window; the values here are those of a first start. Its marks
/// carry times; DataTableEnable has no key, each new window begins with it.
struct TimeScanSettings : CurveSettings {
  /// Wavelength, interval and scales of the home view. Its mode, times, count and blank are not used.
  TSOption Option{546, 0, 0, 1, 1, 0, 3, 0, 100, 0, 0, 0, 0};
  /// 1 Abs, 2 %T.
  std::int32_t DisplayMode = 1;
  /// Ends of the time axis of the home view [s]; the first is the delay before the first reading as well.
  double StartSecond = 0;
  double EndSecond = 1000;

  bool operator==(const TimeScanSettings&) const = default;
};

inline constexpr const char* kTimeScanSection = "Time Scanning";

using TimeScanRow = SettingRow<TimeScanSettings>;

/// The peak value has a dialog of its own and stands last: the option dialog stores all rows before it.
inline constexpr auto kTimeScanSettingRows = JoinedRows(
    std::array{TimeScanRow{kTimeScanSection, "Work WaveLength",
                           [](TimeScanSettings& s) -> double& { return s.Option.WorkWL; }},
               TimeScanRow{kTimeScanSection, "Start Second",
                           [](TimeScanSettings& s) -> double& { return s.StartSecond; }},
               TimeScanRow{kTimeScanSection, "End Second",
                           [](TimeScanSettings& s) -> double& { return s.EndSecond; }},
               TimeScanRow{kTimeScanSection, "Interval Second",
                           [](TimeScanSettings& s) -> std::int32_t& { return s.Option.IntervalSecond; }},
               TimeScanRow{kTimeScanSection, "Display Mode",
                           [](TimeScanSettings& s) -> std::int32_t& { return s.DisplayMode; }, 1, 2},
               TimeScanRow{kTimeScanSection, "Abs Bottom",
                           [](TimeScanSettings& s) -> double& { return s.Option.AbsBottom; }},
               TimeScanRow{kTimeScanSection, "Abs Top",
                           [](TimeScanSettings& s) -> double& { return s.Option.AbsTop; }},
               TimeScanRow{kTimeScanSection, "Trans Bottom",
                           [](TimeScanSettings& s) -> double& { return s.Option.TransBottom; }},
               TimeScanRow{kTimeScanSection, "Trans Top",
                           [](TimeScanSettings& s) -> double& { return s.Option.TransTop; }}},
    CurveColourRows<TimeScanSettings>(kTimeScanSection), CurveMarkRows<TimeScanSettings>(kTimeScanSection),
    CurvePrintRows<TimeScanSettings>(kTimeScanSection),
    std::array{TimeScanRow{kTimeScanSection, kPeakHeightKey,
                           [](TimeScanSettings& s) -> double& { return s.PeakHeight; }}});

inline std::span<const SettingRow<TimeScanSettings>> TimeScanOptionRows() {
  return std::span(kTimeScanSettingRows).first(kTimeScanSettingRows.size() - 1);
}

}  // namespace spectrane
