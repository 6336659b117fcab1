#pragma once

#include "base/displayformats.h"
#include "link/displays.h"
#include "link/instrumentstate.h"
#include "link/interface.h"
#include "link/livereading.h"

namespace spectrane {

/// The parts of the program that a test run works with. All must outlive it.
struct TestBench {
  Interface& Instrument;
  InstrumentState& State;
  LiveReading& Live;
  MainDisplay& Display;
  Messages& Boxes;
  const DisplayFormats& Formats;
};

}  // namespace spectrane
