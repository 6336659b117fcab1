#pragma once

#include "faults/bench/script.h"

namespace spectrane::campaign {

struct CampaignResult {
  int Scripts = 0;
  int Held = 0;
  int TooSlow = 0;
  int Troubles = 0;
  std::int64_t Exchanges = 0;
  bool AllHeld() const { return Held == Scripts; }
};

/// Scripts of the seeds from `first` on: `count` of them, or as many as go into `minutes`. A script that a
/// slow machine spoils is run again with more time. A violation prints its seed, the haste that it was run
/// with, and what happened.
CampaignResult RunScripts(const Place& place, std::uint64_t first, int count, double minutes);

/// Pulls the cable `count` times while the live reading is on, and prints how long the program took until it
/// used the processor no more [ms]. True: never 2 s.
bool PullToQuiet(const Place& place, int count);

}  // namespace spectrane::campaign
