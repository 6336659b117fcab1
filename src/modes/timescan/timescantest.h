#pragma once

#include <cstdint>
#include <functional>

#include "base/clock.h"
#include "link/messageloop.h"
#include "modes/testbench.h"
#include "modes/timescan/timescandocument.h"

namespace spectrane {

/// How a test ended.
enum class TimeScanEnd : std::int32_t {
  /// It did not begin: no instrument, no blank, a move that failed, or another run owns the instrument.
  NotBegun,
  /// It was stopped while it waited for its first reading; no points.
  StoppedBefore,
  /// It was stopped, or the instrument gave no reading; the points up to there stay.
  Stopped,
  Finished,
};

/// Blank and run of the time scan window: readings at one wavelength on a fixed schedule.
class TimeScanTest : public RezeroTarget {
 public:
  /// All must outlive this object. `clock` and `loop` are what the waits look at and run.
  TimeScanTest(const TestBench& bench, TimeScanDocument& document, const Clock& clock, MessageLoop& loop);

  /// Takes the blank at the wavelength of the test. Points that there are keep the blank that they were
  /// measured with. Yields.
  void mmuOperationRezero() override;
  /// Runs the whole test. The interval goes from the end of one point, shown and drawn, to the reading of the
  /// next; the times of the points are those of the schedule. Yields, all the time.
  TimeScanEnd mmuStartTest();

  /// A test is running. It also stays set when a start found no blank, until it is cleared or the next start;
  /// clearing it stops a running test at its next look, within 10 ms while it waits.
  bool TestRunning = false;
  /// A rezero was made in this window.
  bool BlankDone = false;
  bool IsConnected() const { return bench_.State.InstrumentConnected; }
  /// A start would not ask for a blank first: nothing has happened since that could make readings
  /// incomparable with it.
  bool BlankHolds() const;

  /// The points of before are gone; the empty frame is to be shown.
  std::function<void()> OnBegin;
  /// The wait for the first point begins.
  std::function<void()> OnDelay;
  /// A wait goes on for so long [ms]; told every 10 ms.
  std::function<void(std::int64_t restMs)> OnWait;
  /// The point with that index from 0 was read.
  std::function<void(std::int32_t point)> OnPoint;
  /// The test came to its end, the live reading is still off.
  std::function<void()> OnFinished;

 private:
  TimeScanEnd Run();
  bool MoveToStart();
  bool TakeBlank();
  bool Move();
  TimeScanEnd Delay();
  TimeScanEnd Measure();
  bool Read(std::int32_t& energy);
  bool WaitUntil(std::int64_t deadlineMs);

  TestBench bench_;
  TimeScanDocument& document_;
  const Clock& clock_;
  MessageLoop& loop_;
  // Energies of different gains or wavelengths cannot be compared.
  std::int64_t blankRezero_ = -1;
  std::int64_t blankRestarts_ = 0;
  std::int64_t blankMoves_ = 0;
  std::int32_t blankGain_ = 0;
  double blankWavelength_ = 0;
};

}  // namespace spectrane
