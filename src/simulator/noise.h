#pragma once

#include <cstdint>
#include <random>

namespace spectrane {

/// Random numbers that are the same on every platform for the same seed.
class SeededNoise {
 public:
  explicit SeededNoise(std::uint64_t seed) : engine_(seed) {}

  /// Evenly spread in [0, 1).
  double Uniform() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }
  /// A whole number in 0 … count − 1; count above 0.
  int Below(int count) { return static_cast<int>(Uniform() * count); }
  /// Normally spread around 0 with the standard deviation 1.
  double Normal();

 private:
  std::mt19937_64 engine_;
  bool haveSpare_ = false;
  double spare_ = 0.0;
};

}  // namespace spectrane
