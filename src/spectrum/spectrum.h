#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace spectrane {

/// The points of a spectrum in their order: three columns of one length.
struct Spectrum {
  /// Wavelength [nm].
  std::vector<double> WL;
  /// Transmittance [%T].
  std::vector<double> Trans;
  std::vector<double> Abs;

  std::size_t Size() const { return WL.size(); }
  bool Empty() const { return WL.empty(); }
  /// All three columns get that many points; new ones are 0.
  void Resize(std::size_t points) {
    WL.resize(points);
    Trans.resize(points);
    Abs.resize(points);
  }
  /// Up to so many points the columns stay where they are.
  void Reserve(std::size_t points) {
    WL.reserve(points);
    Trans.reserve(points);
    Abs.reserve(points);
  }
  void Add(double wavelength, double trans, double abs) {
    WL.push_back(wavelength);
    Trans.push_back(trans);
    Abs.push_back(abs);
  }
  bool operator==(const Spectrum&) const = default;
};

/// Why a calculation has no result.
enum class NoResult : std::int32_t {
  /// It has one.
  None,
  /// A source is without points.
  NoSource,
  /// Of two files one is not named.
  MissingFile,
  /// Fewer points than the calculation takes.
  TooFewPoints,
  /// Two neighbouring points have the same wavelength.
  EqualWavelengths,
  /// No point of the base lies inside the range of the other spectrum.
  NoOverlap,
  /// Some do, and none of them has a point of the other spectrum beside it.
  NoPartner,
};

/// The reason in words that follow the name of what has no result ("too few points"); empty for None.
const char* WordsOf(NoResult reason);

/// A calculated spectrum, or why there is none; then it has no points.
struct ProcessedSpectrum {
  Spectrum Result;
  NoResult Reason = NoResult::None;
  /// Points of the base that lay inside the range of the other spectrum and found no partner in it.
  std::int32_t Skipped = 0;
};

}  // namespace spectrane
