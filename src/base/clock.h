#pragma once

#include <cstdint>

namespace spectrane {

/// Source of the millisecond clock that waits and time stamps look at.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Milliseconds since the program's start (monotonic, 64 bits; never set back).
  virtual std::int64_t NowMs() const = 0;
};

/// The machine's monotonic clock, counted from the first use in this process.
class SteadyClock : public Clock {
 public:
  std::int64_t NowMs() const override;
};

/// A clock that stands still until it is told to move; simulated time of tests.
class ManualClock : public Clock {
 public:
  explicit ManualClock(std::int64_t startMs = 0) : nowMs_(startMs) {}
  std::int64_t NowMs() const override { return nowMs_; }
  void Advance(std::int64_t ms) { nowMs_ += ms; }
  void Set(std::int64_t ms) { nowMs_ = ms; }

 private:
  std::int64_t nowMs_;
};

}  // namespace spectrane
