#pragma once

#include <cstddef>

namespace spectrane::fuzz {

/// The most memory that was taken at one time between the two calls [bytes]. One thread.
void BeginPeakMemory();
std::size_t EndPeakMemory();

}  // namespace spectrane::fuzz
