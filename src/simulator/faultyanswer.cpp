#include "simulator/faultyanswer.h"

#include <algorithm>
#include <iterator>

#include "simulator/escapedtext.h"

namespace spectrane {
namespace {

constexpr std::string_view LineEnd = "\r\n";
// A hang-up throws away what the program has not read yet; the bytes before it are given the time to arrive.
constexpr int HangUpAfterMs = 20;
constexpr int WireBytesPerSecond = 11520;  // 115200 baud, ten bits a byte

/// Bytes that are neither text nor prompt.
std::string NoiseBytes(int count, SeededNoise& random) {
  std::string bytes;
  for (int i = 0; i < count; ++i) {
    const int draw = random.Below(129);
    bytes += static_cast<char>(draw == 0 ? 0 : 0x7F + draw);
  }
  return bytes;
}

/// Parts the pieces at byte `at`: the first half stays, the rest is returned.
Deliveries TakeFrom(Deliveries& pieces, std::size_t at) {
  Deliveries rest;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const std::size_t size = pieces[i].Bytes.size();
    if (begin + size <= at) {
      begin += size;
      continue;
    }
    const std::size_t keep = at - begin;
    rest.push_back({keep > 0 ? 0 : pieces[i].DelayMs, pieces[i].Bytes.substr(keep), pieces[i].HangUp});
    rest.insert(rest.end(), std::next(pieces.begin(), static_cast<std::ptrdiff_t>(i) + 1), pieces.end());
    pieces[i].Bytes.resize(keep);
    pieces.resize(keep > 0 ? i + 1 : i);
    break;
  }
  return rest;
}

void Append(Deliveries& pieces, const Deliveries& more) {
  pieces.insert(pieces.end(), more.begin(), more.end());
}

Deliveries ByteByByte(const Deliveries& pieces, int gapMs) {
  Deliveries bytes;
  for (const Delivery& piece : pieces) {
    for (std::size_t i = 0; i < piece.Bytes.size(); ++i) {
      bytes.push_back({(i == 0 ? piece.DelayMs : 0) + gapMs, piece.Bytes.substr(i, 1)});
    }
  }
  return bytes;
}

/// Text without prompt at the pace of the wire, a tenth of a second a piece.
Deliveries FloodOf(int count) {
  constexpr std::string_view Chatter = "0123456789 ABCDEFGHIJKLMNOPQRSTUVWXYZ\r\n";
  std::string all;
  for (int i = 0; i < count; ++i) all += Chatter[static_cast<std::size_t>(i) % Chatter.size()];
  Deliveries pieces;
  constexpr std::size_t Chunk = WireBytesPerSecond / 10;
  for (std::size_t at = 0; at < all.size(); at += Chunk) pieces.push_back({100, all.substr(at, Chunk)});
  return pieces;
}

/// Faults in what the answer says; the others are faults in how it travels.
bool ChangeWords(InstrumentAnswer& answer, const Fault& fault, std::string& description) {
  const auto lines = static_cast<int>(answer.Lines.size());
  switch (fault.Kind) {
    case FaultKind::WrongEcho: {
      std::string other = answer.Echo;
      if (!other.empty()) other[0] = other[0] == '?' ? '!' : '?';
      answer.Echo = fault.Text.value_or(other);
      description += " " + Escape(answer.Echo, true);
      return true;
    }
    case FaultKind::FewerLines: {
      const int fewer = std::min(fault.Number(0, 1), lines);
      answer.Lines.resize(static_cast<std::size_t>(lines - fewer));
      description += " " + std::to_string(fewer);
      return true;
    }
    case FaultKind::MoreLines: {
      const int more = std::min(fault.Number(0, 1), 10'000);
      const std::string line = answer.Lines.empty() ? "0" : answer.Lines.back();
      answer.Lines.insert(answer.Lines.end(), static_cast<std::size_t>(more), line);
      description += " " + std::to_string(more);
      return true;
    }
    case FaultKind::BadNumber: {
      if (lines == 0) return true;
      const int drawn = 1 + static_cast<int>(fault.Share * lines);
      const int line = std::clamp(fault.Number(0, fault.Text ? std::min(drawn, lines) : 1), 1, lines);
      answer.Lines[static_cast<std::size_t>(line - 1)] = fault.Text.value_or("abc");
      description += " " + Escape(fault.Text.value_or("abc"), true) + " " + std::to_string(line);
      return true;
    }
    default:
      return false;
  }
}

/// A byte position inside the answer: the one given, else the share of the length.
std::size_t Place(const Fault& fault, std::size_t index, std::size_t length, std::string& description) {
  const auto share = static_cast<int>(fault.Share * static_cast<double>(length));
  const int place = std::min(fault.Number(index, share), static_cast<int>(length));
  description += " " + std::to_string(place);
  return static_cast<std::size_t>(place);
}

int Milliseconds(const Fault& fault, std::size_t index, int fallback, std::string& description) {
  const int value = fault.Number(index, fallback);
  description += " " + std::to_string(value);
  return value;
}

/// Leaves bytes or the whole answer out.
Deliveries Shortened(Deliveries pieces, const Fault& fault, const FaultSurroundings& around,
                     std::string& description) {
  const std::size_t length = BytesOf(pieces).size();
  switch (fault.Kind) {
    case FaultKind::Cut:
      TakeFrom(pieces, Place(fault, 0, length, description));
      return pieces;
    case FaultKind::HangUp:
      TakeFrom(pieces, Place(fault, 0, length, description));
      pieces.push_back({HangUpAfterMs, {}, true});
      return pieces;
    case FaultKind::NoPrompt:
      TakeFrom(pieces, length - 1);
      return pieces;
    case FaultKind::Previous:
      if (around.PreviousAnswer.empty()) return {};
      return {{DurationOf(pieces), around.PreviousAnswer}};
    case FaultKind::Restart: {
      const int silence = Milliseconds(fault, 0, static_cast<int>(around.RestartMs), description);
      if (fault.Numbers.size() > 1) {
        TakeFrom(pieces, Place(fault, 1, length, description));
      } else {
        pieces.clear();
      }
      pieces.push_back({silence, around.Banner});
      return pieces;
    }
    default:
      return {};
  }
}

/// Delays bytes or adds some.
Deliveries Disturbed(Deliveries pieces, const Fault& fault, const FaultSurroundings& around,
                     SeededNoise& random, std::size_t echoLength, std::string& description) {
  const std::size_t length = BytesOf(pieces).size();
  switch (fault.Kind) {
    case FaultKind::LateReply:
      pieces.front().DelayMs += Milliseconds(fault, 0, around.ProgramTimeoutMs + 500, description);
      return pieces;
    case FaultKind::Split: {
      Deliveries rest = TakeFrom(pieces, Place(fault, 0, length, description));
      const int pause = Milliseconds(fault, 1, 50, description);
      if (!rest.empty()) rest.front().DelayMs += pause;
      Append(pieces, rest);
      return pieces;
    }
    case FaultKind::Slow:
      return ByteByByte(pieces, Milliseconds(fault, 0, 20, description));
    case FaultKind::NoiseBefore:
      pieces.insert(pieces.begin(), {0, NoiseBytes(Milliseconds(fault, 0, 8, description), random)});
      return pieces;
    case FaultKind::NoiseInside: {
      const Deliveries rest = TakeFrom(pieces, Place(fault, 0, length, description));
      pieces.push_back({0, NoiseBytes(Milliseconds(fault, 1, 4, description), random)});
      Append(pieces, rest);
      return pieces;
    }
    case FaultKind::Twice: {
      const int pause = Milliseconds(fault, 0, 5, description);
      pieces.push_back({pause, BytesOf(pieces)});
      return pieces;
    }
    case FaultKind::PromptInside: {
      const std::size_t place = std::min(echoLength + LineEnd.size() + 1, length - 1);
      Deliveries rest = TakeFrom(
          pieces, static_cast<std::size_t>(Milliseconds(fault, 0, static_cast<int>(place), description)));
      const int pause = Milliseconds(fault, 1, 30, description);
      pieces.push_back({0, ">"});
      if (!rest.empty()) rest.front().DelayMs += pause;
      Append(pieces, rest);
      return pieces;
    }
    default:
      return pieces;
  }
}

}  // namespace

std::string BytesOf(const Deliveries& pieces) {
  std::string bytes;
  for (const Delivery& piece : pieces) bytes += piece.Bytes;
  return bytes;
}

std::int64_t DurationOf(const Deliveries& pieces) {
  std::int64_t sum = 0;
  for (const Delivery& piece : pieces) sum += piece.DelayMs;
  return sum;
}

Deliveries PlainDelivery(const InstrumentAnswer& answer) {
  std::string head = answer.Echo + std::string(LineEnd);
  std::string data;
  for (const std::string& line : answer.Lines) data += line + std::string(LineEnd);
  data += '>';
  if (answer.WorkMs <= 0) return {{0, head + data}};
  return {{0, std::move(head)}, {answer.WorkMs, std::move(data)}};
}

Deliveries FaultyDelivery(const InstrumentAnswer& answer, const Fault& fault, const FaultSurroundings& around,
                          SeededNoise& random, std::string& description) {
  const auto kinds = FaultKinds();
  const auto kind = std::find_if(kinds.begin(), kinds.end(),
                                 [&](const FaultKindEntry& entry) { return entry.Kind == fault.Kind; });
  description = std::string(kind->Name);
  if (InstrumentAnswer changed = answer; ChangeWords(changed, fault, description))
    return PlainDelivery(changed);
  const Deliveries plain = PlainDelivery(answer);
  switch (fault.Kind) {
    case FaultKind::NoReply:
      return {};
    case FaultKind::Flood:
      return FloodOf(Milliseconds(fault, 0, 100'000, description));
    case FaultKind::Cut:
    case FaultKind::HangUp:
    case FaultKind::NoPrompt:
    case FaultKind::Previous:
    case FaultKind::Restart:
      return Shortened(plain, fault, around, description);
    default:
      return Disturbed(plain, fault, around, random, answer.Echo.size(), description);
  }
}

}  // namespace spectrane
