#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/settingrows.h"
#include "modes/multi/multiresult.h"

namespace spectrane {

/// A number for each wavelength of a multi wavelength test.
using MultiNumbers = std::array<double, kMostMultiWavelengths>;

constexpr MultiNumbers EachWavelength(double number) {
  MultiNumbers numbers{};
  numbers.fill(number);
  return numbers;
}

/// What an entry without a value of its own has: a wavelength [nm] and its coefficient.
inline constexpr double kUsualMultiWavelength = 546.0;
inline constexpr double kUsualMultiParameter = 1.0;

/// What config.ini holds for the multi wavelength test, and what its option dialog sets; the values here are
/// those of a first start.
struct MultiSettings {
  /// Wavelengths in use, 1 to 15.
  std::int32_t WorkWLNo = 1;
  /// [nm]
  MultiNumbers WorkWaveLength = EachWavelength(kUsualMultiWavelength);
  /// Coefficients of the wavelengths.
  MultiNumbers Parameter = EachWavelength(kUsualMultiParameter);

  bool operator==(const MultiSettings&) const = default;
};

inline constexpr const char* kMultiSection = "Multi WaveLength";
/// The last folder has a section of its own, of nearly the same name.
inline constexpr const char* kMultiFileSection = "Multi Wavelength";

namespace multirows {

using Row = SettingRow<MultiSettings>;

inline constexpr const char* kWaveLengthKeys[kMostMultiWavelengths] = {
    "WaveLength 1",  "WaveLength 2",  "WaveLength 3",  "WaveLength 4",  "WaveLength 5",
    "WaveLength 6",  "WaveLength 7",  "WaveLength 8",  "WaveLength 9",  "WaveLength 10",
    "WaveLength 11", "WaveLength 12", "WaveLength 13", "WaveLength 14", "WaveLength 15"};
inline constexpr const char* kParameterKeys[kMostMultiWavelengths] = {
    "Parameter 1",  "Parameter 2",  "Parameter 3",  "Parameter 4",  "Parameter 5",
    "Parameter 6",  "Parameter 7",  "Parameter 8",  "Parameter 9",  "Parameter 10",
    "Parameter 11", "Parameter 12", "Parameter 13", "Parameter 14", "Parameter 15"};

template <std::size_t... kIndex>
constexpr auto AllRows(std::index_sequence<kIndex...>) {
  return std::array{
      Row{kMultiSection, "WaveLength No", [](MultiSettings& s) -> std::int32_t& { return s.WorkWLNo; }, 1,
          kMostMultiWavelengths},
      Row{kMultiSection, kWaveLengthKeys[kIndex],
          [](MultiSettings& s) -> double& { return s.WorkWaveLength[kIndex]; }, 100.0, 3000.0}...,
      Row{kMultiSection, kParameterKeys[kIndex],
          [](MultiSettings& s) -> double& { return s.Parameter[kIndex]; }}...};
}

}  // namespace multirows

inline constexpr auto kMultiSettingRows =
    multirows::AllRows(std::make_index_sequence<kMostMultiWavelengths>());

}  // namespace spectrane
