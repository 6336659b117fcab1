#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "spectrum/scansettings.h"

namespace spectrane {

/// Home view of the windows of processed spectra at a first start.
inline constexpr WLSOption kProcessedHome{190, 1100, 1, 0, 100, 0, 0, 0, 0, 0, 0, 0, 0, 1};
inline constexpr std::size_t kMostSources = 2;

/// What config.ini holds for a window that processes spectra; the values here are those of a first start.
struct ProcessSettings {
  /// Scales, colours, marks and search; `CurveColor` is that of the result. What concerns energies, runs and
  /// reports is not used.
  ScanSettings Shown;
  /// Of the curves of the sources, and where these come from.
  std::array<std::int32_t, kMostSources> SourceColor = {ColourNumber(255, 0, 0), ColourNumber(255, 0, 0)};
  std::array<std::string, kMostSources> FileName;

  ProcessSettings() {
    Shown.Option = kProcessedHome;
    Shown.PeakHeight = 0.01;
    Shown.CurveColor = ColourNumber(255, 128, 0);
    Shown.PeakDetailEnable = true;
  }
  bool operator==(const ProcessSettings&) const = default;
};

/// Two files that are combined have other colours.
inline ProcessSettings FirstCaculateSettings() {
  ProcessSettings settings;
  settings.SourceColor = {ColourNumber(255, 128, 128), ColourNumber(255, 255, 128)};
  return settings;
}

inline constexpr const char* kSmoothSection = "Spectrum Smooth";
inline constexpr const char* kDevSection = "Spectrum Dev";
inline constexpr const char* kCaculateSection = "Spectrum Caculate";

using ProcessRow = SettingRow<ProcessSettings>;

constexpr CurveSettings& CurveSettingsOf(ProcessSettings& settings) {
  return settings.Shown;
}

/// The keys that all of them have, in `section`. `sourceColour` is that of the first source's curve.
constexpr auto ProcessRows(const char* section, const char* sourceColour) {
  using S = ProcessSettings;
  return JoinedRows(
      std::array{
          ProcessRow{section, "Display Mode",
                     [](S& s) -> std::int32_t& { return s.Shown.Option.DisplayMode; }, 1, 2},
          ProcessRow{section, "Abs Top", [](S& s) -> double& { return s.Shown.Option.AbsTop; }},
          ProcessRow{section, "Abs Bottom", [](S& s) -> double& { return s.Shown.Option.AbsBottom; }},
          ProcessRow{section, "Trans Top", [](S& s) -> double& { return s.Shown.Option.TransTop; }},
          ProcessRow{section, "Trans Bottom", [](S& s) -> double& { return s.Shown.Option.TransBottom; }},
          ProcessRow{section, "Start Wavelength",
                     [](S& s) -> double& { return s.Shown.Option.StartWavelength; }},
          ProcessRow{section, "End Wavelength", [](S& s) -> double& { return s.Shown.Option.EndWavelength; }},
          ColourSetting<S>(section, "Result Color", [](S& s) -> std::int32_t& { return s.Shown.CurveColor; }),
          ColourSetting<S>(section, "Scale Color", [](S& s) -> std::int32_t& { return s.Shown.ScaleColor; }),
          ColourSetting<S>(section, sourceColour, [](S& s) -> std::int32_t& { return s.SourceColor[0]; })},
      CurveMarkRows<S>(section),
      std::array{
          ProcessRow{section, "Data Table Enable", [](S& s) -> bool& { return s.Shown.DataTableEnable; }},
          ProcessRow{section, kPeakHeightKey, [](S& s) -> double& { return s.Shown.PeakHeight; }}});
}

inline constexpr auto kSmoothSettingRows = ProcessRows(kSmoothSection, "Curve Color");
/// With the place that the last source came from.
inline constexpr auto kDevSettingRows =
    JoinedRows(ProcessRows(kDevSection, "Curve Color"),
               std::array{ProcessRow{kDevSection, "File name",
                                     [](ProcessSettings& s) -> std::string& { return s.FileName[0]; }}});
inline constexpr auto kCaculateSettingRows =
    JoinedRows(ProcessRows(kCaculateSection, "Curve Color 0"),
               std::array{ProcessRow{kCaculateSection, "Curve Color 1",
                                     [](ProcessSettings& s) -> std::int32_t& { return s.SourceColor[1]; }, 0,
                                     kHighestColour},
                          ProcessRow{kCaculateSection, "File name 0",
                                     [](ProcessSettings& s) -> std::string& { return s.FileName[0]; }},
                          ProcessRow{kCaculateSection, "File name 1",
                                     [](ProcessSettings& s) -> std::string& { return s.FileName[1]; }}});

}  // namespace spectrane
