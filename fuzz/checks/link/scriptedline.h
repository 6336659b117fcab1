#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "link/memoryport.h"
#include "link/portlist.h"

namespace spectrane::fuzz {

/// What becomes of one request and its answer.
enum class Fate : unsigned char {
  Whole,
  Late,         // work on it begins later
  StandsStill,  // after the echo
  Parted,       // stands still at a place of the answer
  ByteByByte,
  Lost,
  Cut,          // at a place; the rest never comes
  NoiseInside,  // at a place
  NoiseBefore,
  Unasked,  // noise that comes at a time of its own, whatever comes then
  Restart,  // a banner in the place of the answer
  HangUp,   // at a place
  Flood,
  SlowWrite,
  Doubled,   // forged: a second copy of the answer
  Replaced,  // forged: any bytes in the place of the answer
};
inline constexpr unsigned kFates = 16;

struct Turn {
  Fate What = Fate::Whole;
  std::int64_t DelayMs = 0;
  std::size_t Place = 0;
  std::string Noise;
};

/// An instrument that works on one request after the other. Every number in an answer is that of its request:
/// kFirstNumber and so many more. Where `Forges` is off it does nothing that makes it impossible to tell
/// whose an answer is: no request gets lost that waits behind others, and between two answers that piled up
/// it is not silent for a second.
class NumberedPeer : public LinePeer {
 public:
  static constexpr std::int32_t kFirstNumber = 100000;

  std::vector<Delivery> Receive(std::string_view bytes, std::int64_t nowMs) override;

  bool Forges = false;
  /// For the next request; then whole answers follow.
  Turn Next;
  /// When the next request began to go out.
  std::int64_t SentMs = 0;
  /// So many requests came.
  int Requests = 0;
  /// All that was asked is answered by then.
  std::int64_t FreeMs = 0;

 private:
  std::string pending_;
};

/// The data lines that an answer to the command has, all of them with this number.
std::vector<std::string> AnswerLines(std::string_view command, std::int32_t number);

/// A line in memory that keeps what the program was handed since its last request, is slow to take one, and
/// brings a flood.
class KeepingPort : public MemoryPort {
 public:
  KeepingPort(ManualClock& clock, NumberedPeer& peer) : MemoryPort(clock, peer), clock_(clock), peer_(peer) {}

  bool Write(std::string_view bytes, int timeoutMs) override;
  std::string Read(int timeoutMs) override;

  std::string Heard;
  std::size_t FloodLeft = 0;
  /// A request takes so long to go out, or is not taken at all.
  std::int64_t WriteMs = 0;
  bool WriteFails = false;

 private:
  ManualClock& clock_;
  NumberedPeer& peer_;
};

/// One port, with the instrument behind it.
class OnePort : public PortList {
 public:
  OnePort(ManualClock& clock, NumberedPeer& peer) : clock_(clock), peer_(peer) {}
  std::string Path(int) const override { return "memory"; }
  std::unique_ptr<Port> MakePort(int) override {
    auto port = std::make_unique<KeepingPort>(clock_, peer_);
    Current = port.get();
    return port;
  }

  /// The port made last.
  KeepingPort* Current = nullptr;

 private:
  ManualClock& clock_;
  NumberedPeer& peer_;
};

}  // namespace spectrane::fuzz
