#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/settingrows.h"
#include "modes/quantitation/curvefit.h"

namespace spectrane {

/// What config.ini holds for the quantitation, and what its option dialog sets; the values here are those of
/// a first start.
struct QuantitationSettings {
  /// 1 to 3; with 3 the first two are measured, as with 2.
  std::int32_t WaveLengthNumber = 1;
  /// [nm]
  std::array<double, 3> WaveLengthList = {546.0, 546.0, 546.0};
  /// Factors of the readings in the absorbance that the curve works on.
  std::array<double, 3> WaveLengthPara = {1.0, 0.0, 0.0};
  /// Standards of the curve, 1 to 20.
  std::int32_t SampleNumber = 2;
  std::int32_t CurveItem = static_cast<std::int32_t>(CurveSource::Standards);
  /// Typed coefficients, lowest power first.
  std::array<double, 4> InputK = {};
  std::int32_t FittingMethod = 0;
  std::string ConcUnit = "mg/ml";
  /// The operator's own unit; the last of the list.
  std::string CustomConcUnit;

  bool operator==(const QuantitationSettings&) const = default;
};

/// Units that the option dialog offers before the operator's own.
inline constexpr std::array<const char*, 10> kConcUnits = {"\u00B5g/ml", "mg/ml", "mg/L", "g/L", "mM/L",
                                                           "M/L",        "ppm",   "ppb",  "%",   "IU"};

inline constexpr const char* kQuantitationSection = "Quantitative Measurement";

namespace quantitationrows {

using Q = QuantitationSettings;
using Row = SettingRow<Q>;

template <std::size_t kIndex>
constexpr Row WaveLength(const char* key) {
  return {kQuantitationSection, key, [](Q& s) -> double& { return s.WaveLengthList[kIndex]; }, 100.0, 3000.0};
}
template <std::size_t kIndex>
constexpr Row Para(const char* key) {
  return {kQuantitationSection, key, [](Q& s) -> double& { return s.WaveLengthPara[kIndex]; }};
}
template <std::size_t kIndex>
constexpr Row K(const char* key) {
  return {kQuantitationSection, key, [](Q& s) -> double& { return s.InputK[kIndex]; }};
}
constexpr Row Whole(const char* key, std::int32_t& (*field)(Q&), double lowest, double highest) {
  return {kQuantitationSection, key, field, lowest, highest};
}
constexpr Row Words(const char* key, std::string& (*field)(Q&)) {
  return {kQuantitationSection, key, field};
}

}  // namespace quantitationrows

inline constexpr SettingRow<QuantitationSettings> kQuantitationSettingRows[] = {
    quantitationrows::Whole(
        "WaveLength Number", [](QuantitationSettings& s) -> std::int32_t& { return s.WaveLengthNumber; }, 1,
        3),
    quantitationrows::WaveLength<0>("WaveLength 1"),
    quantitationrows::WaveLength<1>("WaveLength 2"),
    quantitationrows::WaveLength<2>("WaveLength 3"),
    quantitationrows::Para<0>("WaveLength Para 1"),
    quantitationrows::Para<1>("WaveLength Para 2"),
    quantitationrows::Para<2>("WaveLength Para 3"),
    quantitationrows::Whole(
        "Sample Number", [](QuantitationSettings& s) -> std::int32_t& { return s.SampleNumber; }, 1,
        kMostStandards),
    quantitationrows::Whole(
        "Curve Item", [](QuantitationSettings& s) -> std::int32_t& { return s.CurveItem; }, 1, 2),
    quantitationrows::K<0>("Curve K0"),
    quantitationrows::K<1>("Curve K1"),
    quantitationrows::K<2>("Curve K2"),
    quantitationrows::K<3>("Curve K3"),
    quantitationrows::Whole(
        "Fitting Line", [](QuantitationSettings& s) -> std::int32_t& { return s.FittingMethod; }, 0, 3),
    quantitationrows::Words("Conc Unit", [](QuantitationSettings& s) -> std::string& { return s.ConcUnit; }),
    quantitationrows::Words("Custom Conc Unit",
                            [](QuantitationSettings& s) -> std::string& { return s.CustomConcUnit; }),
};

}  // namespace spectrane
