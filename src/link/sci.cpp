#include "link/sci.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "link/replybuffer.h"

namespace spectrane {
namespace {

constexpr int kQuietMs = 100;
constexpr int kClearLimitMs = 1000;
/// Longest stretch of a wait that somebody watches [ms].
constexpr std::int64_t kWatchedMs = 250;

// A time-out compares a signed 32-bit sum; one that overflows is an error.
bool DeadlineOverflows(std::int64_t startMs, std::int64_t timeoutMs) {
  const auto start = static_cast<std::int32_t>(static_cast<std::uint32_t>(startMs));
  return std::int64_t{start} + timeoutMs > std::numeric_limits<std::int32_t>::max();
}

class Held {
 public:
  explicit Held(Exclusion& exclusion) : exclusion_(exclusion), acquired_(exclusion.Acquire()) {}
  ~Held() {
    if (acquired_) exclusion_.Release();
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  bool Acquired() const { return acquired_; }

 private:
  Exclusion& exclusion_;
  bool acquired_;
};

}  // namespace

SCI::SCI(PortList& ports, Clock& clock, MessageLoop& loop, Exclusion& exclusion)
    : ports_(ports), clock_(clock), loop_(loop), exclusion_(exclusion) {}

bool SCI::OpenPort(int& number) {
  ClosePort();
  lineDirty_ = false;
  unanswered_.clear();
  openFault_ = PortFault::Missing;
  openReason_.clear();
  const std::string path = ports_.Path(number);
  if (path.empty()) return false;
  port_ = ports_.MakePort(number);
  if (port_->Open(path)) {
    openFault_ = PortFault::None;
    return true;
  }
  openFault_ = port_->LastFault();
  openReason_ = port_->LastReason();
  port_.reset();
  return false;
}

bool SCI::ClosePort() {
  if (!port_) return false;
  const bool wasOpen = port_->Close();
  port_.reset();
  return wasOpen;
}

bool SCI::Exchange(std::string_view command, std::string& reply, int timeoutSeconds) {
  loop_.RunOnce();
  bool passed = false;
  {
    const Held held(exclusion_);
    if (!held.Acquired()) {
      lastEnd_ = ExchangeEnd::NoExclusion;
      reply.clear();
    } else if (SendAndWait(command, reply, timeoutSeconds * 1000)) {
      passed = std::string_view(reply).substr(0, command.size()) == command;
      lastEnd_ = passed ? ExchangeEnd::Passed : ExchangeEnd::WrongEcho;
    }
    lineDirty_ = !passed;
  }
  // What runs in the message loop may exchange on its own; the caller's end is told afterwards.
  const ExchangeEnd end = lastEnd_;
  loop_.RunOnce();
  lastEnd_ = end;
  return passed;
}

bool SCI::SendAndWait(std::string_view command, std::string& reply, int timeoutMs) {
  reply.clear();
  lastEnd_ = ExchangeEnd::PortClosed;
  if (!IsPortOpen()) return false;
  ClearLine();
  // Whatever ends it early may leave a reply on its way.
  lineDirty_ = true;
  const std::int64_t start = clock_.NowMs();
  lastEnd_ = ExchangeEnd::TimedOut;
  if (DeadlineOverflows(start, timeoutMs)) return false;
  std::string line(command);
  line += '\r';
  if (!port_->Write(line, timeoutMs)) {
    lastEnd_ = port_->IsOpen() ? ExchangeEnd::WriteFailed : ExchangeEnd::HungUp;
    return false;
  }
  bool whole = Collect(reply, start, timeoutMs);
  if (whole && unanswered_ == command) whole = TakeLastOf(command, reply, start + timeoutMs);
  if (!reply.empty()) {
    unanswered_.clear();
  } else if (lastEnd_ == ExchangeEnd::TimedOut) {
    unanswered_ = command;
  }
  return whole;
}

// The same request was sent before and not answered: what came first may be the answer to that one. Its own
// answer follows then, before the line has been quiet for kQuietMs; a line that is never quiet is waited for
// kClearLimitMs. False: it began, and did not end in time.
bool SCI::TakeLastOf(std::string_view command, std::string& reply, std::int64_t endMs) {
  const std::size_t whole = reply.size();
  endMs = std::min(endMs, clock_.NowMs() + kClearLimitMs);
  for (;;) {
    const std::int64_t rest = std::min<std::int64_t>(kQuietMs, endMs - clock_.NowMs());
    const std::string piece = rest > 0 ? port_->Read(static_cast<int>(rest)) : std::string();
    if (piece.empty()) break;
    reply.append(piece, 0, ReplyBuffer::kLimit - reply.size());
  }
  const std::size_t next = reply.rfind(ReplyBuffer::kPrompt + std::string(command) + '\r');
  if (next == std::string::npos) {
    reply.resize(whole);
    return true;
  }
  const std::size_t rest = std::max(whole, next + 1) - (next + 1);
  reply.erase(0, next + 1);
  if (rest > 0) reply.resize(rest);
  return reply.ends_with(ReplyBuffer::kPrompt);
}

bool SCI::Collect(std::string& reply, std::int64_t startMs, int timeoutMs) {
  ReplyBuffer buffer;
  bool whole = false;
  while (!whole) {
    const std::int64_t rest = startMs + timeoutMs - clock_.NowMs();
    if (rest <= 0) break;
    if (OnWaiting) OnWaiting();
    const std::string piece = port_->Read(static_cast<int>(OnWaiting ? std::min(rest, kWatchedMs) : rest));
    if (piece.empty() && !port_->IsOpen()) {
      lastEnd_ = ExchangeEnd::HungUp;
      break;
    }
    if (clock_.NowMs() >= startMs + timeoutMs) break;  // what comes at the last moment comes too late
    buffer.Add(piece);
    whole = !piece.empty() && buffer.Whole();
  }
  reply = buffer.Text();
  return whole;
}

// Throws away what has arrived. After a failed exchange, whose reply may still be coming, the line must have
// been quiet for kQuietMs first, kClearLimitMs at most.
void SCI::ClearLine() {
  port_->DiscardInput();
  if (!std::exchange(lineDirty_, false)) return;
  const std::int64_t end = clock_.NowMs() + kClearLimitMs;
  for (;;) {
    const std::int64_t rest = std::min<std::int64_t>(kQuietMs, end - clock_.NowMs());
    if (rest <= 0 || !port_->IsOpen()) break;
    const std::int64_t before = clock_.NowMs();
    if (port_->Read(static_cast<int>(rest)).empty() && clock_.NowMs() - before >= rest) break;
  }
  port_->DiscardInput();
}

void SCI::PauseMs(int delayMs) {
  loop_.RunUntil(clock_, clock_.NowMs() + delayMs);
}

std::string DescribeEnd(ExchangeEnd end) {
  switch (end) {
    case ExchangeEnd::Passed:
      break;
    case ExchangeEnd::PortClosed:
      return "the port is not open";
    case ExchangeEnd::WriteFailed:
      return "the command could not be sent";
    case ExchangeEnd::HungUp:
      return "the line went away";
    case ExchangeEnd::TimedOut:
      return "no whole answer came in time";
    case ExchangeEnd::WrongEcho:
      return "the answer does not begin with the command";
    case ExchangeEnd::NoExclusion:
      return "the lock that keeps programs apart on the line cannot be had";
  }
  return {};
}

}  // namespace spectrane
