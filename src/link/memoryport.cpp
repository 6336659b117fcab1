#include "link/memoryport.h"

#include <algorithm>
#include <utility>

namespace spectrane {

bool MemoryPort::Open(const std::string&) {
  if (refuse_ != PortFault::None) {
    SetFault(refuse_, refuseReason_);
    return false;
  }
  SetFault(PortFault::None, {});
  arrived_.clear();
  coming_.clear();
  open_ = true;
  return true;
}

bool MemoryPort::Close() {
  return std::exchange(open_, false);
}

void MemoryPort::DiscardInput() {
  Settle();
  arrived_.clear();
}

bool MemoryPort::Write(std::string_view bytes, int) {
  Settle();
  if (!open_) return false;
  std::int64_t at = clock_.NowMs();
  for (Delivery& delivery : peer_.Receive(bytes, at)) {
    at += delivery.DelayMs;
    Enqueue({at, std::move(delivery.Bytes), delivery.HangUp});
  }
  return true;
}

std::string MemoryPort::Read(int timeoutMs) {
  Settle();
  const std::int64_t deadline = clock_.NowMs() + std::max(timeoutMs, 0);
  while (arrived_.empty() && open_ && !coming_.empty() && coming_.front().AtMs <= deadline) {
    clock_.Set(std::max(coming_.front().AtMs, clock_.NowMs()));
    Settle();
  }
  if (arrived_.empty() && open_) clock_.Set(deadline);
  return std::exchange(arrived_, {});
}

void MemoryPort::Inject(std::string bytes, std::int64_t delayMs) {
  Enqueue({clock_.NowMs() + delayMs, std::move(bytes), false});
}

void MemoryPort::HangUp() {
  SetFault(PortFault::Other, "the far end hung up");
  coming_.clear();
  open_ = false;
}

void MemoryPort::RefuseOpen(PortFault fault, std::string reason) {
  refuse_ = fault;
  refuseReason_ = std::move(reason);
}

void MemoryPort::Enqueue(Arrival arrival) {
  auto place = std::upper_bound(coming_.begin(), coming_.end(), arrival,
                                [](const Arrival& a, const Arrival& b) { return a.AtMs < b.AtMs; });
  coming_.insert(place, std::move(arrival));
}

void MemoryPort::Settle() {
  while (open_ && !coming_.empty() && coming_.front().AtMs <= clock_.NowMs()) {
    Arrival next = std::move(coming_.front());
    coming_.pop_front();
    arrived_ += next.Bytes;
    if (next.HangUp) HangUp();
  }
}

}  // namespace spectrane
