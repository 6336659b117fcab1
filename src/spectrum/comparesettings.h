#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <utility>

#include "spectrum/processsettings.h"

namespace spectrane {

/// Files that are compared at most.
inline constexpr std::size_t kMostCompared = 10;

/// What config.ini holds for the window that compares spectra; the values here are those of a first start.
/// Names and colours belong to their rows, filled or not.
struct CompareSettings {
  WLSOption Option = kProcessedHome;
  std::int32_t ScaleColor = ColourNumber(0, 0, 255);
  bool GridEnable = true;
  std::array<std::string, kMostCompared> FileName;
  std::array<std::int32_t, kMostCompared> CurveColor = {
      ColourNumber(255, 128, 128), ColourNumber(255, 255, 128), ColourNumber(128, 255, 128),
      ColourNumber(255, 255, 128), ColourNumber(255, 128, 0),   ColourNumber(255, 128, 255),
      ColourNumber(128, 0, 128),   ColourNumber(0, 128, 0),     ColourNumber(255, 0, 128),
      ColourNumber(0, 128, 255)};
  /// Without a key: each new window begins with it.
  bool DataTableEnable = true;

  bool operator==(const CompareSettings&) const = default;
};

inline constexpr const char* kCompareSection = "Spectrum Compare";

using CompareRow = SettingRow<CompareSettings>;

inline constexpr std::array kCompareViewRows = {
    CompareRow{kCompareSection, "Display Mode",
               [](CompareSettings& s) -> std::int32_t& { return s.Option.DisplayMode; }, 1, 2},
    CompareRow{kCompareSection, "Abs Top", [](CompareSettings& s) -> double& { return s.Option.AbsTop; }},
    CompareRow{kCompareSection, "Abs Bottom",
               [](CompareSettings& s) -> double& { return s.Option.AbsBottom; }},
    CompareRow{kCompareSection, "Trans Top", [](CompareSettings& s) -> double& { return s.Option.TransTop; }},
    CompareRow{kCompareSection, "Trans Bottom",
               [](CompareSettings& s) -> double& { return s.Option.TransBottom; }},
    CompareRow{kCompareSection, "Start Wavelength",
               [](CompareSettings& s) -> double& { return s.Option.StartWavelength; }},
    CompareRow{kCompareSection, "End Wavelength",
               [](CompareSettings& s) -> double& { return s.Option.EndWavelength; }},
    CompareRow{kCompareSection, "Scale Color",
               [](CompareSettings& s) -> std::int32_t& { return s.ScaleColor; }, 0, kHighestColour},
    CompareRow{kCompareSection, "Grid Enable", [](CompareSettings& s) -> bool& { return s.GridEnable; }},
};

/// Name and colour of each row, a name and then its colour.
template <std::size_t... I>
constexpr auto ComparedFileRows(std::index_sequence<I...>) {
  constexpr const char* kNameKeys[] = {"File name 0", "File name 1", "File name 2", "File name 3",
                                       "File name 4", "File name 5", "File name 6", "File name 7",
                                       "File name 8", "File name 9"};
  constexpr const char* kColourKeys[] = {"Curve Color 0", "Curve Color 1", "Curve Color 2", "Curve Color 3",
                                         "Curve Color 4", "Curve Color 5", "Curve Color 6", "Curve Color 7",
                                         "Curve Color 8", "Curve Color 9"};
  return std::array<CompareRow, sizeof...(I)>{
      (I % 2 == 0 ? CompareRow{kCompareSection, kNameKeys[I / 2],
                               [](CompareSettings& s) -> std::string& { return s.FileName[I / 2]; }}
                  : CompareRow{kCompareSection, kColourKeys[I / 2],
                               [](CompareSettings& s) -> std::int32_t& { return s.CurveColor[I / 2]; }, 0,
                               kHighestColour})...};
}

inline constexpr auto kComparedFileRows = ComparedFileRows(std::make_index_sequence<2 * kMostCompared>());

inline constexpr auto kCompareSettingRows = JoinedRows(kCompareViewRows, kComparedFileRows);

}  // namespace spectrane
