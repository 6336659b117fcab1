#pragma once

#include "faults/bench/operator.h"

namespace spectrane::campaign {

/// A day at the instrument, again and again for so long. Prints a line each minute: memory, handles,
/// exchanges. True: nothing was lost or invented, and after the first tenth of the time memory and handles
/// stood still.
bool Soak(const Place& place, double minutes, std::uint64_t seed);

}  // namespace spectrane::campaign
