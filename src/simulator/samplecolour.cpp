#include "simulator/samplecolour.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace spectrane {
namespace {

constexpr double FirstNm = 380.0;
constexpr double LastNm = 720.0;
constexpr double StepNm = 5.0;

using Three = std::array<double, 3>;

/// A bell whose two sides differ in width [nm].
double Bell(double nm, double centre, double below, double above) {
  const double offset = (nm - centre) / (nm < centre ? below : above);
  return std::exp(-0.5 * offset * offset);
}

/// The eye's three responses, as sums of bells near the standard observer's.
Three Eye(double nm) {
  return {1.06 * Bell(nm, 599.0, 38.0, 31.0) + 0.36 * Bell(nm, 442.0, 16.0, 27.0) -
              0.06 * Bell(nm, 501.0, 20.0, 26.0),
          0.82 * Bell(nm, 569.0, 47.0, 40.0) + 0.29 * Bell(nm, 531.0, 16.0, 31.0),
          1.22 * Bell(nm, 437.0, 12.0, 36.0) + 0.68 * Bell(nm, 459.0, 26.0, 14.0)};
}

/// The three responses as shares of a screen's three lights; negative where the screen cannot follow.
Three ScreenShares(const Three& eye) {
  return {3.2406 * eye[0] - 1.5372 * eye[1] - 0.4986 * eye[2],
          -0.9689 * eye[0] + 1.8758 * eye[1] + 0.0415 * eye[2],
          0.0557 * eye[0] - 0.2040 * eye[1] + 1.0570 * eye[2]};
}

int ScreenStep(double share) {
  const double s = std::clamp(share, 0.0, 1.0);
  const double coded = s <= 0.0031308 ? 12.92 * s : 1.055 * std::pow(s, 1.0 / 2.4) - 0.055;
  return static_cast<int>(std::lround(255.0 * coded));
}

/// The screen's shares of even white light behind the sample.
Three Behind(const Sample& sample, double seconds) {
  Three sum{};
  for (double nm = FirstNm; nm <= LastNm; nm += StepNm) {
    const double passed = Transmittance(sample, nm, StepNm, seconds);
    const Three eye = Eye(nm);
    for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += passed * eye[i];
  }
  return ScreenShares(sum);
}

}  // namespace

ScreenColour ColourOf(const Sample& sample, double seconds) {
  static const Three white = Behind(*FindSample("blank"), 0.0);
  const Three shares = Behind(sample, seconds);
  return {ScreenStep(shares[0] / white[0]), ScreenStep(shares[1] / white[1]),
          ScreenStep(shares[2] / white[2])};
}

ScreenColour ColourOfLight(double nm) {
  Three shares = ScreenShares(Eye(std::clamp(nm, 410.0, 680.0)));
  const double strongest = *std::max_element(shares.begin(), shares.end());
  for (double& share : shares) share = std::max(share, 0.0) / strongest;
  return {ScreenStep(shares[0]), ScreenStep(shares[1]), ScreenStep(shares[2])};
}

}  // namespace spectrane
