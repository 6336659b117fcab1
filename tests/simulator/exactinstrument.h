#pragma once

#include "simulator/instrumentmodel.h"

namespace spectrane {

/// An instrument without noise that takes no time.
inline InstrumentOptions Exact() {
  InstrumentOptions options;
  options.Instant = true;
  options.Noise = 0.0;
  return options;
}

}  // namespace spectrane
