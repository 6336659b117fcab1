#pragma once

#include "link/instrumentlink.h"

namespace spectrane {

/// What the simulator's name begins with; it stands in the status bar and above the rows of reports as well.
inline constexpr const char* kSimulatedInstrument = "Simulated instrument";

/// Whether what is measured now comes from the simulator.
inline bool IsSimulated(const InstrumentLink& link) {
  return link.State.InstrumentConnected && link.Instrument.Company().starts_with(kSimulatedInstrument);
}

}  // namespace spectrane
