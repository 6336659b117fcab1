#pragma once

#include <string>

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

/// Words for an instrument that stands at `actual` where it was last sent to `sent` and nobody has moved it
/// since [nm]: a drive that answers a move and does not go. Empty when it stands there.
std::string AstrayWords(double sent, double actual);

/// A test that measures: `running` is set and the live reading stands. However the test ends, an exception
/// included, the live reading goes on and the instrument is free.
class RunningTest {
 public:
  RunningTest(const TestBench& bench, bool& running) : bench_(bench), running_(running) {
    running_ = true;
    bench_.Live.SampleTimerStop();
    bench_.State.InstrumentBusy = true;
  }
  ~RunningTest() {
    running_ = false;
    bench_.State.InstrumentBusy = false;
    bench_.Live.SampleTimerStart();
  }
  RunningTest(const RunningTest&) = delete;
  RunningTest& operator=(const RunningTest&) = delete;

 private:
  const TestBench& bench_;
  bool& running_;
};

}  // namespace spectrane
