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

/// Marks a test as running while it lives, however the test ends.
class RunningMark {
 public:
  explicit RunningMark(bool& mark) : mark_(mark) { mark_ = true; }
  ~RunningMark() { mark_ = false; }
  RunningMark(const RunningMark&) = delete;
  RunningMark& operator=(const RunningMark&) = delete;

 private:
  bool& mark_;
};

}  // namespace spectrane
