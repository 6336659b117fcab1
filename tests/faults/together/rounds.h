#pragma once

#include <cstdlib>
#include <string>

namespace spectrane {

/// How often something is tried: `usual` times, or so many times as often as SPECTRANE_TOGETHER_TIMES says.
inline int Rounds(int usual) {
  const char* const times = std::getenv("SPECTRANE_TOGETHER_TIMES");
  return times == nullptr ? usual : usual * std::stoi(times);
}

/// Of what is drawn; SPECTRANE_TOGETHER_SEED, or always the same.
inline unsigned SeedOfRounds() {
  const char* const seed = std::getenv("SPECTRANE_TOGETHER_SEED");
  return seed == nullptr ? 1 : static_cast<unsigned>(std::stoul(seed));
}

}  // namespace spectrane
