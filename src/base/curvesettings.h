#pragma once

#include <array>
#include <cstdint>

#include "base/colournumber.h"
#include "base/settingrows.h"

namespace spectrane {

/// What every window with a curve of points keeps: search, colours, marks, and what a report holds; the
/// values here are those of a first start.
struct CurveSettings {
  /// Peak value [Abs].
  double PeakHeight = 0.001;
  std::int32_t ScaleColor = ColourNumber(0, 0, 255);
  std::int32_t CurveColor = ColourNumber(255, 0, 0);
  std::int32_t MarkColor = ColourNumber(128, 0, 128);
  std::int32_t PeakColor = ColourNumber(255, 0, 128);
  std::int32_t ValleyColor = ColourNumber(0, 128, 0);
  bool PeakEnable = true;
  bool ValleyEnable = true;
  /// Marks carry the place on the axis and the value instead of a number.
  bool PeakDetailEnable = false;
  bool ValleyDetailEnable = false;
  bool GridEnable = true;
  /// What a report holds.
  bool PrintCurve = true;
  bool PrintPeakValley = true;
  bool PrintDataList = false;
  /// The tables stand beside the window.
  bool DataTableEnable = true;

  bool operator==(const CurveSettings&) const = default;
};

inline constexpr const char* kPeakHeightKey = "Peak Height";

/// Where a window's settings have them. An owner that is not derived from them has an overload of its own.
constexpr CurveSettings& CurveSettingsOf(CurveSettings& settings) {
  return settings;
}

/// A colour in config.ini.
template <typename Owner>
constexpr SettingRow<Owner> ColourSetting(const char* section, const char* key,
                                          std::int32_t& (*field)(Owner&)) {
  return {section, key, field, 0, kHighestColour};
}

/// The keys of scale and curve.
template <typename Owner>
constexpr std::array<SettingRow<Owner>, 2> CurveColourRows(const char* section) {
  return {{
      ColourSetting<Owner>(section, "Scale Color",
                           [](Owner& o) -> std::int32_t& { return CurveSettingsOf(o).ScaleColor; }),
      ColourSetting<Owner>(section, "Curve Color",
                           [](Owner& o) -> std::int32_t& { return CurveSettingsOf(o).CurveColor; }),
  }};
}

/// The keys of marks and grid.
template <typename Owner>
constexpr std::array<SettingRow<Owner>, 8> CurveMarkRows(const char* section) {
  return {{
      ColourSetting<Owner>(section, "Mark Color",
                           [](Owner& o) -> std::int32_t& { return CurveSettingsOf(o).MarkColor; }),
      ColourSetting<Owner>(section, "Peak Color",
                           [](Owner& o) -> std::int32_t& { return CurveSettingsOf(o).PeakColor; }),
      ColourSetting<Owner>(section, "Valley Color",
                           [](Owner& o) -> std::int32_t& { return CurveSettingsOf(o).ValleyColor; }),
      {section, "Peak Enable", [](Owner& o) -> bool& { return CurveSettingsOf(o).PeakEnable; }},
      {section, "Valley Enable", [](Owner& o) -> bool& { return CurveSettingsOf(o).ValleyEnable; }},
      {section, "Peak Detail Enable", [](Owner& o) -> bool& { return CurveSettingsOf(o).PeakDetailEnable; }},
      {section, "Valley Detail Enable",
       [](Owner& o) -> bool& { return CurveSettingsOf(o).ValleyDetailEnable; }},
      {section, "Grid Enable", [](Owner& o) -> bool& { return CurveSettingsOf(o).GridEnable; }},
  }};
}

/// The keys of a report.
template <typename Owner>
constexpr std::array<SettingRow<Owner>, 3> CurvePrintRows(const char* section) {
  return {{
      {section, "Print Curve", [](Owner& o) -> bool& { return CurveSettingsOf(o).PrintCurve; }},
      {section, "Print Peak Valley", [](Owner& o) -> bool& { return CurveSettingsOf(o).PrintPeakValley; }},
      {section, "Print Data List", [](Owner& o) -> bool& { return CurveSettingsOf(o).PrintDataList; }},
  }};
}

}  // namespace spectrane
