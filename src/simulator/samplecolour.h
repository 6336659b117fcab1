#pragma once

#include "simulator/samples.h"

namespace spectrane {

/// A colour for screens (sRGB), each part 0 … 255.
struct ScreenColour {
  int Red = 0;
  int Green = 0;
  int Blue = 0;
  bool operator==(const ScreenColour&) const = default;
};

/// What the eye sees when white light shines through 1 cm of the sample; the solvent is white.
ScreenColour ColourOf(const Sample& sample, double seconds = 0.0);

/// The colour of light of one wavelength at full strength. Beyond what the eye sees it is that of the nearest
/// visible end.
ScreenColour ColourOfLight(double nm);

}  // namespace spectrane
