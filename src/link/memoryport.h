#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "link/port.h"

namespace spectrane {

/// A piece of an answer: `Bytes` arrive `DelayMs` after the piece before it (the first: after the request);
/// `HangUp` closes the line after the bytes.
struct Delivery {
  std::int64_t DelayMs = 0;
  std::string Bytes;
  bool HangUp = false;
};

/// The far end of a line in memory.
class LinePeer {
 public:
  virtual ~LinePeer() = default;
  /// Bytes that the program sent at `nowMs`; returns what will come back, in order.
  virtual std::vector<Delivery> Receive(std::string_view bytes, std::int64_t nowMs) = 0;
};

/// A port without a device: the peer's answers arrive in simulated time, so a test of a 180-second wait is
/// over at once. Waiting moves the clock.
class MemoryPort : public Port {
 public:
  MemoryPort(ManualClock& clock, LinePeer& peer) : clock_(clock), peer_(peer) {}

  bool Open(const std::string& path) override;
  bool Close() override;
  bool IsOpen() const override { return open_; }
  void DiscardInput() override;
  bool Write(std::string_view bytes, int timeoutMs) override;
  std::string Read(int timeoutMs) override;

  /// Bytes that arrive unasked, `delayMs` from now.
  void Inject(std::string bytes, std::int64_t delayMs = 0);
  /// The far end goes away now.
  void HangUp();
  /// The next Open fails for this cause.
  void RefuseOpen(PortFault fault, std::string reason);

 private:
  struct Arrival {
    std::int64_t AtMs;
    std::string Bytes;
    bool HangUp;
  };

  void Enqueue(Arrival arrival);
  /// Moves what has arrived by now into `arrived_`.
  void Settle();

  ManualClock& clock_;
  LinePeer& peer_;
  bool open_ = false;
  PortFault refuse_ = PortFault::None;
  std::string refuseReason_;
  std::string arrived_;
  std::deque<Arrival> coming_;
};

}  // namespace spectrane
