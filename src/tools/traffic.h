#pragma once

#include "link/instrumentstate.h"

namespace spectrane {

/// Marks instrument traffic while it lives, so that the live reading gives way; the mark goes however the
/// traffic ends.
class InstrumentTraffic {
 public:
  explicit InstrumentTraffic(InstrumentState& state) : state_(state) { state_.InstrumentBusy = true; }
  ~InstrumentTraffic() { state_.InstrumentBusy = false; }
  InstrumentTraffic(const InstrumentTraffic&) = delete;
  InstrumentTraffic& operator=(const InstrumentTraffic&) = delete;

 private:
  InstrumentState& state_;
};

}  // namespace spectrane
