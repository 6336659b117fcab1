#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "link/messageloop.h"
#include "link/portlist.h"

namespace spectrane::campaign {

/// A clock that runs a whole number of times faster than the machine's: with it, a port and a message loop
/// that know of it, a time-out of 15 s is over after 15 s / factor, on real devices.
class HastyClock : public Clock {
 public:
  explicit HastyClock(int factor) : factor_(factor) {}
  std::int64_t NowMs() const override { return real_.NowMs() * factor_; }
  int Factor() const { return factor_; }
  const Clock& Real() const { return real_; }

 private:
  SteadyClock real_;
  int factor_;
};

/// One request as it went over the wire, and what the program had in its hands when it stopped to wait: up to
/// the first prompt that ended a piece, or up to the time-out.
struct WireRecord {
  std::string Request;
  std::string Collected;
  /// The prompt came in time.
  bool Ended = false;
  std::int64_t SentMs = 0;
  std::int64_t TimeoutMs = 0;
};

/// The message loop of the application under that clock.
class HastyLoop : public MessageLoop {
 public:
  explicit HastyLoop(const HastyClock& clock) : clock_(clock) {}
  void RunOnce() override { loop_.RunOnce(); }
  void RunUntil(const Clock& clock, std::int64_t deadlineMs) override;

 private:
  const HastyClock& clock_;
  QtMessageLoop loop_;
};

/// The machine's ports under that clock, with a record of what went over them.
class HastyPorts : public PortList {
 public:
  explicit HastyPorts(const HastyClock& clock) : clock_(clock) {}
  void Refresh() override { ports_.Refresh(); }
  std::string Path(int number) const override { return ports_.Path(number); }
  std::unique_ptr<Port> MakePort(int number) override;

  /// Since it was last emptied.
  std::vector<WireRecord> Wire;

 private:
  SerialPortList ports_;
  const HastyClock& clock_;
};

}  // namespace spectrane::campaign
