#include "modes/testbench.h"

#include <cmath>

#include "base/numbers.h"

namespace spectrane {
namespace {

/// Finest step of a monochromator [nm].
constexpr double kDriveStep = 0.1001;
constexpr const char* kAstrayFormat = "0.0nm";

}  // namespace

std::string AstrayWords(double sent, double actual) {
  // What is no number is no place.
  if (!(std::abs(actual - sent) > kDriveStep)) return {};
  return "The instrument stood at " + Format(actual, kAstrayFormat) +
         ", not where it was sent: what was read last may be of that wavelength.";
}

}  // namespace spectrane
