#include "simulator/noise.h"

#include <cmath>
#include <numbers>

namespace spectrane {

double SeededNoise::Normal() {
  if (haveSpare_) {
    haveSpare_ = false;
    return spare_;
  }
  // Box and Muller's transform; the library's normal distribution differs between platforms.
  const double radius = std::sqrt(-2.0 * std::log(1.0 - Uniform()));
  const double angle = 2.0 * std::numbers::pi * Uniform();
  spare_ = radius * std::sin(angle);
  haveSpare_ = true;
  return radius * std::cos(angle);
}

}  // namespace spectrane
