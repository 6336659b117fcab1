#include "simulator/linedriver.h"

#include <algorithm>
#include <cmath>

namespace spectrane {
namespace {

constexpr double MicrosecondsPerByte = 1e7 / 115200.0;  // ten bits
constexpr qsizetype MaximumInput = 1 << 16;

}  // namespace

LineDriver::LineDriver(SimulatedLine& line, const Clock& clock, Transport& transport, bool paced,
                       double reopenSeconds)
    : line_(line), clock_(clock), transport_(transport), paced_(paced), reopenSeconds_(reopenSeconds) {
  elapsed_.start();
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  reopen_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, [this] {
    Step();
    Feed();
  });
  connect(&reopen_, &QTimer::timeout, this, [this] { Plug(); });
  connect(&transport_, &Transport::Received, this, [this](const QByteArray& bytes) { Take(bytes); });
  connect(&transport_, &Transport::Lost, this, [this] { Broken(); });
}

std::optional<std::string> LineDriver::Plug() {
  if (Plugged()) return "already plugged in";
  reopen_.stop();
  QString reason;
  if (!transport_.Open(reason)) return reason.toStdString();
  emit LineJoined(transport_.Name());
  return std::nullopt;
}

void LineDriver::Unplug() {
  reopen_.stop();
  if (!Plugged()) return;
  transport_.HangUp();
  ForgetAll();
}

void LineDriver::ForgetAll() {
  timer_.stop();
  due_.clear();
  input_.clear();
  line_.ForgetInput();
  emit LineBroken();
}

void LineDriver::Broken() {
  ForgetAll();
  if (reopenSeconds_ >= 0.0) reopen_.start(static_cast<int>(std::lround(reopenSeconds_ * 1000.0)));
}

void LineDriver::Play(const Deliveries& pieces) {
  due_.clear();
  input_.clear();
  Enqueue(pieces);
  Step();
}

void LineDriver::Take(const QByteArray& bytes) {
  input_.append(bytes.left(MaximumInput - input_.size()));
  Feed();
}

/// Gives the instrument one command at a time, so that what the operator changes meanwhile holds for the next
/// one.
void LineDriver::Feed() {
  while (due_.empty() && !input_.isEmpty()) {
    const qsizetype end = input_.indexOf('\r');
    const qsizetype size = end < 0 ? input_.size() : end + 1;
    const std::string part = input_.left(size).toStdString();
    input_.remove(0, size);
    Enqueue(line_.Receive(part, clock_.NowMs()));
    Step();
  }
}

void LineDriver::Enqueue(const Deliveries& pieces) {
  double at = static_cast<double>(NowUs());
  for (const Delivery& piece : pieces) {
    at += static_cast<double>(piece.DelayMs) * 1000.0;
    due_.push_back({static_cast<qint64>(at), QByteArray::fromStdString(piece.Bytes), piece.HangUp});
    if (paced_) at += static_cast<double>(piece.Bytes.size()) * MicrosecondsPerByte;
  }
}

void LineDriver::Step() {
  while (!due_.empty()) {
    Due& next = due_.front();
    const qint64 now = NowUs();
    if (next.AtUs > now) {
      // A timer counts whole milliseconds and must not fire early.
      timer_.start(static_cast<int>((next.AtUs - now + 999) / 1000));
      return;
    }
    qsizetype count = next.Bytes.size();
    if (paced_) {
      const double passed = static_cast<double>(now - next.AtUs) / MicrosecondsPerByte;
      count = std::min(count, static_cast<qsizetype>(std::max(passed, 1.0)));
    }
    const QByteArray bytes = next.Bytes.left(count);
    const bool whole = count == next.Bytes.size();
    const bool hangUp = whole && next.HangUp;
    if (whole) {
      due_.pop_front();
    } else {
      next.Bytes.remove(0, count);
      next.AtUs += static_cast<qint64>(std::lround(static_cast<double>(count) * MicrosecondsPerByte));
    }
    // Sending may find the line broken, which empties the queue.
    transport_.Send(bytes);
    if (hangUp) {
      transport_.HangUp();
      Broken();
    }
  }
}

}  // namespace spectrane
