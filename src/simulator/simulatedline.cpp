#include "simulator/simulatedline.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "simulator/commandset.h"

namespace spectrane {
namespace {

constexpr int RestartMs = 2000;

}  // namespace

SimulatedLine::SimulatedLine(const InstrumentOptions& options)
    : model_(options), random_(options.Seed + 1), timeScale_(options.Instant ? 0.0 : 1.0 / options.Speed) {}

std::vector<Delivery> SimulatedLine::Receive(std::string_view bytes, std::int64_t nowMs) {
  Deliveries all;
  std::int64_t at = nowMs;
  for (const char c : bytes) {
    if (c == '\n' && command_.empty()) continue;
    if (c != '\r') {
      overlong_ = overlong_ || command_.size() >= MaximumCommand;
      if (!overlong_) command_ += c;
      continue;
    }
    const std::string command = std::exchange(command_, {});
    if (std::exchange(overlong_, false)) continue;
    const std::int64_t start = std::max(nowMs, busyUntilMs_);
    Deliveries pieces = Respond(command, start);
    busyUntilMs_ = start + DurationOf(pieces);
    if (pieces.empty()) continue;
    pieces.front().DelayMs += start - at;
    at = busyUntilMs_;
    const bool gone = pieces.back().HangUp;
    std::move(pieces.begin(), pieces.end(), std::back_inserter(all));
    if (gone) {
      ForgetInput();
      break;
    }
  }
  return all;
}

void SimulatedLine::ForgetInput() {
  command_.clear();
  overlong_ = false;
  busyUntilMs_ = 0;
}

std::vector<Delivery> SimulatedLine::Restart(std::int64_t nowMs) {
  model_.Restart(nowMs);
  ForgetInput();
  const auto silence = static_cast<std::int64_t>(RestartMs * timeScale_);
  busyUntilMs_ = nowMs + silence;
  return {{silence, Banner()}};
}

std::string SimulatedLine::Banner() const {
  return "\r\n" + model_.Company + "\r\nready.\r\n>";
}

Deliveries SimulatedLine::Respond(const std::string& command, std::int64_t startMs) {
  CommandResult result = RunCommand(model_, command, startMs, timeScale_);
  const InstrumentAnswer answer{command, std::move(result.Lines),
                                static_cast<std::int64_t>(result.DurationMs * timeScale_)};
  ExchangeRecord record{++requests_, startMs, {}, command, {}};
  Deliveries pieces;
  if (const auto fault = faults_.Due(command)) {
    const FaultSurroundings around{previousAnswer_, Banner(), ProgramTimeoutMs(command),
                                   static_cast<std::int64_t>(RestartMs * timeScale_)};
    pieces = FaultyDelivery(answer, *fault, around, random_, record.Fault);
    if (fault->Kind == FaultKind::Restart) model_.Restart(startMs);
  } else {
    pieces = PlainDelivery(answer);
  }
  record.Answer = BytesOf(pieces);
  previousAnswer_ = record.Answer;
  if (OnExchange) OnExchange(record);
  return pieces;
}

}  // namespace spectrane
