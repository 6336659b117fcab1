#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "link/memoryport.h"
#include "simulator/commandset.h"
#include "simulator/faultscript.h"

namespace spectrane {

/// The answer to one request before it goes onto the wire.
struct InstrumentAnswer {
  std::string Echo;
  std::vector<std::string> Lines;
  std::int64_t WorkMs = 0;  ///< between echo and data
};

/// What faults need to know of the line beside the answer itself.
struct FaultSurroundings {
  std::string PreviousAnswer;  ///< bytes of the last answer; empty when there was none
  std::string Banner;          ///< what the instrument says after power-up
  int ProgramTimeoutMs = 3000;
  std::int64_t RestartMs = 0;  ///< from power-up to the banner
};

using Deliveries = std::vector<Delivery>;

/// All bytes of the pieces.
std::string BytesOf(const Deliveries& pieces);
/// Milliseconds from the request to the last piece.
std::int64_t DurationOf(const Deliveries& pieces);

/// The answer as the instrument sends it: echo and line end at once, the data and the prompt when the work is
/// done.
Deliveries PlainDelivery(const InstrumentAnswer& answer);

/// The answer with the fault in it. `description` tells kind and the parameters that took effect.
Deliveries FaultyDelivery(const InstrumentAnswer& answer, const Fault& fault, const FaultSurroundings& around,
                          SeededNoise& random, std::string& description);

}  // namespace spectrane
