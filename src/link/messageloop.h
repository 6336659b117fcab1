#pragma once

#include <cstdint>

#include "base/clock.h"

namespace spectrane {

/// The message loop as the link sees it. Both procedures yield: commands, timers and a close can come in.
class MessageLoop {
 public:
  virtual ~MessageLoop() = default;
  /// Processes the events that are pending now.
  virtual void RunOnce() = 0;
  /// Processes events until `clock` reads `deadlineMs`, asleep in between.
  virtual void RunUntil(const Clock& clock, std::int64_t deadlineMs) = 0;
};

/// The loop of the Qt application; does nothing while there is no application object.
class QtMessageLoop : public MessageLoop {
 public:
  void RunOnce() override;
  void RunUntil(const Clock& clock, std::int64_t deadlineMs) override;
};

/// A loop without events on simulated time.
class ManualMessageLoop : public MessageLoop {
 public:
  explicit ManualMessageLoop(ManualClock& clock) : clock_(clock) {}
  void RunOnce() override { ++Runs; }
  void RunUntil(const Clock&, std::int64_t deadlineMs) override {
    ++Runs;
    if (deadlineMs > clock_.NowMs()) clock_.Set(deadlineMs);
  }

  /// How often the loop was let run.
  int Runs = 0;

 private:
  ManualClock& clock_;
};

}  // namespace spectrane
