#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "link/exclusion.h"
#include "link/linewatch.h"
#include "link/messageloop.h"
#include "link/port.h"
#include "link/portlist.h"

namespace spectrane {

/// How the last exchange ended.
enum class ExchangeEnd { Passed, PortClosed, WriteFailed, HungUp, TimedOut, WrongEcho, NoExclusion };

/// What the end means to a person who looks for the cause; empty for an exchange that passed.
std::string DescribeEnd(ExchangeEnd end);

/// The serial transport: opens and closes the one port and turns one command text into one reply text. Knows
/// nothing of what commands mean, shows nothing, keeps no connected state: a failed exchange never closes the
/// port.
class SCI {
 public:
  /// All four must outlive this object.
  SCI(PortList& ports, Clock& clock, MessageLoop& loop, Exclusion& exclusion);

  /// Looks again which ports the machine has.
  void RefreshPorts() { ports_.Refresh(); }
  /// Opens port `number` (1-based). False: LastOpenFault() and LastOpenReason() say why.
  bool OpenPort(int& number);
  /// True when an open port was closed.
  bool ClosePort();
  bool IsPortOpen() const { return port_ && port_->IsOpen(); }

  /// Sends `command` and one carriage return, and waits for the prompt. True when it came within
  /// `timeoutSeconds` and the reply begins with the echo of the command. `reply` is the text that arrived, in
  /// every case. Lets the message loop run once before and once after; blocks in between.
  bool Exchange(std::string_view command, std::string& reply, int timeoutSeconds);

  /// The last reply was not all that its request should bring: more of it may be on its way, and the next
  /// exchange waits until the line is quiet.
  void ExpectMore() { lineDirty_ = true; }
  /// How often the instrument was heard to restart: in an exchange, or while the line falls quiet at the
  /// beginning of one, when the one before failed or brought too little.
  std::int64_t Restarts() const { return watch_.Restarts(); }
  /// The last exchange heard it behind its request: what came is no answer, whatever it begins with.
  bool RestartedInReply() const { return restartedInReply_; }

  /// Waits `delayMs` with the message loop running. Yields.
  void PauseMs(int delayMs);

  /// Called several times a second while an exchange waits for its reply, for those who show that time goes
  /// by. It is inside the exchange: it must not exchange and must not run the message loop.
  std::function<void()> OnWaiting;
  /// The clock by which exchanges are timed.
  std::int64_t NowMs() const { return clock_.NowMs(); }

  ExchangeEnd LastEnd() const { return lastEnd_; }
  /// Why the exclusion could not be had (ExchangeEnd::NoExclusion).
  std::string ExclusionReason() const { return exclusion_.Reason(); }
  PortFault LastOpenFault() const { return openFault_; }
  /// The platform's words for the last failed OpenPort; empty when there are none.
  const std::string& LastOpenReason() const { return openReason_; }

 private:
  bool SendAndWait(std::string_view command, std::string& reply, int timeoutMs);
  bool Collect(std::string& reply, std::int64_t startMs, int timeoutMs);
  bool TakeOwn(std::string_view command, std::string& reply, std::int64_t startMs, int timeoutMs);
  std::string Read(std::int64_t restMs);
  void ClearLine();

  PortList& ports_;
  Clock& clock_;
  MessageLoop& loop_;
  Exclusion& exclusion_;
  std::unique_ptr<Port> port_;
  ExchangeEnd lastEnd_ = ExchangeEnd::Passed;
  // A reply may still be on its way after an exchange that failed.
  bool lineDirty_ = false;
  // The last answer was taken after so short a silence that answers to requests before it may still come.
  bool olderMayFollow_ = false;
  std::int64_t restartsAtSend_ = 0;
  bool restartedInReply_ = false;
  LineWatch watch_;
  PortFault openFault_ = PortFault::None;
  std::string openReason_;
};

}  // namespace spectrane
