#pragma once

#include <string>
#include <string_view>

namespace spectrane {

/// Why a port could not be opened; the causes an operator can do something about are told apart.
enum class PortFault { None, Missing, NoRights, InUse, Other };

/// One serial line: bytes out, bytes in. A line whose far end has gone closes itself; from then on every
/// operation fails at once.
class Port {
 public:
  virtual ~Port() = default;

  /// Opens the device at `path` with 115200 baud, no parity, 8 data bits, 1 stop bit, no handshake.
  /// False: LastFault() and LastReason() say why, nothing is open.
  virtual bool Open(const std::string& path) = 0;
  /// True when an open port was closed.
  virtual bool Close() = 0;
  virtual bool IsOpen() const = 0;

  /// Throws away everything that has arrived and was not read.
  virtual void DiscardInput() = 0;
  /// Hands all bytes to the line within `timeoutMs`; false when that failed.
  virtual bool Write(std::string_view bytes, int timeoutMs) = 0;
  /// Waits at most `timeoutMs` for at least one byte and returns all that has arrived; empty when nothing
  /// came. What arrives while the message loop runs may be lost. Blocks without using the processor and
  /// without running the message loop.
  virtual std::string Read(int timeoutMs) = 0;

  PortFault LastFault() const { return fault_; }
  /// The platform's own words for the last failure; empty when there was none.
  const std::string& LastReason() const { return reason_; }

 protected:
  void SetFault(PortFault fault, std::string reason) {
    fault_ = fault;
    reason_ = std::move(reason);
  }

 private:
  PortFault fault_ = PortFault::None;
  std::string reason_;
};

}  // namespace spectrane
