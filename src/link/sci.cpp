#include "link/sci.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "link/replybuffer.h"

namespace spectrane {
namespace {

constexpr int kQuietMs = 100;
constexpr int kClearLimitMs = 1000;
/// So long, at most, an instrument is silent between two answers to requests that piled up before it; of the
/// time-out of a short request no more than half.
constexpr int kBetweenAnswersMs = 1000;
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
  watch_.Reset();
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
    restartsAtSend_ = watch_.Restarts();
    if (!held.Acquired()) {
      lastEnd_ = ExchangeEnd::NoExclusion;
      reply.clear();
    } else if (SendAndWait(command, reply, timeoutSeconds * 1000)) {
      passed = std::string_view(reply).substr(0, command.size()) == command;
      lastEnd_ = passed ? ExchangeEnd::Passed : ExchangeEnd::WrongEcho;
    }
    lineDirty_ = !passed;
    if (passed && !olderMayFollow_) watch_.TakeAsAnswered();
    restartedInReply_ = watch_.Restarts() != restartsAtSend_;
  }
  // What runs in the message loop may exchange on its own; the caller's end is told afterwards.
  const ExchangeEnd end = lastEnd_;
  const bool restarted = restartedInReply_;
  loop_.RunOnce();
  lastEnd_ = end;
  restartedInReply_ = restarted;
  return passed;
}

bool SCI::SendAndWait(std::string_view command, std::string& reply, int timeoutMs) {
  reply.clear();
  lastEnd_ = ExchangeEnd::PortClosed;
  if (!IsPortOpen()) return false;
  ClearLine();
  restartsAtSend_ = watch_.Restarts();
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
  const bool alone = watch_.Awaited() == 0;
  olderMayFollow_ = false;
  watch_.Sent(command);
  bool whole = Collect(reply, start, timeoutMs);
  if (whole && !alone && reply.starts_with(command)) whole = TakeOwn(command, reply, start, timeoutMs);
  return whole;
}

// Requests before this one still lack their answers: what came first may be the answer to one of them.
// Answers come in the order of the requests. This one's has come when every request has its own, or when
// nothing has followed for a while: then those before it were lost. Whatever stands behind the last echo is
// the reply. False: it cannot be said in time which it is.
bool SCI::TakeOwn(std::string_view command, std::string& reply, std::int64_t startMs, int timeoutMs) {
  const std::int64_t end = startMs + timeoutMs;
  const int quiet = std::min(kBetweenAnswersMs, timeoutMs / 2);
  std::int64_t quietMs = clock_.NowMs() + quiet;
  while (watch_.Awaited() > 0) {
    const std::int64_t now = clock_.NowMs();
    const bool answered = watch_.LastMayBeAnswered();
    if (answered && now >= quietMs) break;
    if (now >= end) return false;
    const std::size_t awaited = watch_.Awaited();
    const std::string piece = Read((answered ? std::min(quietMs, end) : end) - now);
    if (piece.empty() && !port_->IsOpen()) {
      lastEnd_ = ExchangeEnd::HungUp;
      return false;
    }
    if (watch_.Awaited() < awaited) quietMs = clock_.NowMs() + quiet;
    reply.append(piece, 0, ReplyBuffer::kLimit - reply.size());
  }
  olderMayFollow_ = watch_.Awaited() > 0 && quiet < kBetweenAnswersMs;
  // The answer before it may lack its prompt.
  const std::size_t last = reply.rfind(std::string(command) + '\r');
  if (last != std::string::npos) reply.erase(0, last);
  const std::size_t prompt = reply.find(ReplyBuffer::kPrompt);
  if (prompt == std::string::npos) return false;
  reply.resize(prompt + 1);
  return LineWatch::IsPlain(command, reply);
}

bool SCI::Collect(std::string& reply, std::int64_t startMs, int timeoutMs) {
  ReplyBuffer buffer;
  bool whole = false;
  while (!whole) {
    const std::int64_t rest = startMs + timeoutMs - clock_.NowMs();
    if (rest <= 0) break;
    const std::string piece = Read(rest);
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

// The next piece; empty when nothing came for a while that `restMs` bounds.
std::string SCI::Read(std::int64_t restMs) {
  if (OnWaiting) OnWaiting();
  std::string piece = port_->Read(static_cast<int>(OnWaiting ? std::min(restMs, kWatchedMs) : restMs));
  watch_.Heard(piece);
  return piece;
}

// Throws away, unread, what has arrived since the last exchange. After one that failed or brought too little,
// whose rest may still be coming, the line must have been quiet for kQuietMs first, kClearLimitMs at most.
void SCI::ClearLine() {
  port_->DiscardInput();
  if (!std::exchange(lineDirty_, false)) return;
  const std::int64_t end = clock_.NowMs() + kClearLimitMs;
  for (;;) {
    const std::int64_t rest = std::min<std::int64_t>(kQuietMs, end - clock_.NowMs());
    if (rest <= 0 || !port_->IsOpen()) break;
    const std::int64_t before = clock_.NowMs();
    const std::string piece = port_->Read(static_cast<int>(rest));
    watch_.Heard(piece);
    if (piece.empty() && clock_.NowMs() - before >= rest) break;
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
