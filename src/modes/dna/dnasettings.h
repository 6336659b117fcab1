#pragma once

#include <array>
#include <cstdint>

#include "base/settingrows.h"

namespace spectrane {

/// The analysis modes, by the numbers that files and config.ini have.
enum class DNAMode : std::int32_t { Mode1 = 1, Mode2 = 2, Custom = 3 };

/// What the formulas of a DNA/protein test work with.
struct DNAValues {
  /// The two wavelengths and the reference [nm].
  std::array<double, 3> WaveLength;
  /// F1 to F4.
  std::array<double, 4> Factor;

  bool operator==(const DNAValues&) const = default;
};

inline constexpr DNAValues kDNAMode1 = {{260.0, 280.0, 320.0}, {62.9, 36.0, 1552.0, 757.3}};
inline constexpr DNAValues kDNAMode2 = {{260.0, 230.0, 320.0}, {49.1, 3.48, 183.0, 75.8}};

/// What config.ini holds for the DNA/protein test, and what its option dialog sets; the values here are those
/// of a first start.
struct DNASettings {
  std::int32_t Option = static_cast<std::int32_t>(DNAMode::Mode1);
  DNAValues Values = kDNAMode1;

  bool operator==(const DNASettings&) const = default;
};

/// The mode that these settings are: one of the two fixed ones only with its own values, Custom otherwise.
inline DNAMode ModeOf(const DNASettings& settings) {
  if (settings.Option == static_cast<std::int32_t>(DNAMode::Mode1) && settings.Values == kDNAMode1)
    return DNAMode::Mode1;
  if (settings.Option == static_cast<std::int32_t>(DNAMode::Mode2) && settings.Values == kDNAMode2)
    return DNAMode::Mode2;
  return DNAMode::Custom;
}

inline constexpr const char* kDNASection = "DNA/Protein Test";

namespace dnarows {

using Row = SettingRow<DNASettings>;

template <std::size_t kIndex>
constexpr Row WaveLength(const char* key) {
  return {kDNASection, key, [](DNASettings& s) -> double& { return s.Values.WaveLength[kIndex]; }, 100.0,
          3000.0};
}
template <std::size_t kIndex>
constexpr Row Factor(const char* key) {
  return {kDNASection, key, [](DNASettings& s) -> double& { return s.Values.Factor[kIndex]; }};
}

}  // namespace dnarows

inline constexpr SettingRow<DNASettings> kDNASettingRows[] = {
    {kDNASection, "Item Option", [](DNASettings& s) -> std::int32_t& { return s.Option; }, 1, 3},
    dnarows::WaveLength<0>("WaveLength 1"),
    dnarows::WaveLength<1>("WaveLength 2"),
    dnarows::WaveLength<2>("WaveLength Reference"),
    dnarows::Factor<0>("F1"),
    dnarows::Factor<1>("F2"),
    dnarows::Factor<2>("F3"),
    dnarows::Factor<3>("F4"),
};

}  // namespace spectrane
