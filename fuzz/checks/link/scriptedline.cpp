#include "fuzz/checks/link/scriptedline.h"

#include <algorithm>
#include <utility>

namespace spectrane::fuzz {
namespace {

constexpr std::int64_t kWorkMs = 6;
/// Longest silence between two answers that piled up.
constexpr std::int64_t kLongestGapMs = 900;
constexpr std::size_t kFloodPiece = 32768;
constexpr std::int64_t kFloodPieceMs = 40;
constexpr std::size_t kMostKept = 262144;

std::string WholeAnswer(const std::string& command, std::int32_t number) {
  std::string text = command + "\r\n";
  for (const std::string& line : AnswerLines(command, number)) text += line + "\r\n";
  return text + ">";
}

/// Deliveries by the time at which they come.
class Composed {
 public:
  explicit Composed(std::int64_t nowMs) : nowMs_(nowMs) {}
  void At(std::int64_t ms, std::string bytes, bool hangUp = false) {
    all_.push_back({ms - nowMs_, std::move(bytes), hangUp});
    nowMs_ = ms;
  }
  std::int64_t LastMs() const { return nowMs_; }
  std::vector<Delivery> All() { return std::move(all_); }

 private:
  std::int64_t nowMs_;
  std::vector<Delivery> all_;
};

/// Sends the answer as the turn wants it. It must not come to less than its first `least` bytes.
void Compose(Composed& line, const Turn& turn, std::string text, std::int64_t start, std::size_t least) {
  const std::size_t place = turn.Place % (text.size() + 1);
  const std::int64_t done = start + kWorkMs;
  switch (turn.What) {
    case Fate::StandsStill:
    case Fate::Parted: {
      // Something follows: a silence behind the whole of it would make that before the next answer longer.
      const std::size_t head =
          turn.What == Fate::Parted ? turn.Place % text.size() : std::min(text.find('\n') + 1, text.size());
      line.At(start, text.substr(0, head));
      return line.At(done + turn.DelayMs, text.substr(head));
    }
    case Fate::ByteByByte:
      for (std::size_t i = 0; i < text.size(); ++i)
        line.At(start + turn.DelayMs * static_cast<std::int64_t>(i) / 64, text.substr(i, 1));
      return;
    case Fate::Lost:
      return line.At(start, {});
    case Fate::Cut:
      return line.At(done, text.substr(0, std::max(place, least)));
    case Fate::NoiseInside:
      return line.At(done, text.insert(place, turn.Noise.substr(0, 3)));
    case Fate::NoiseBefore:
      line.At(start, turn.Noise);
      return line.At(done + turn.DelayMs, std::move(text));
    case Fate::Restart:
      return line.At(done + turn.DelayMs, "\r\nQvr\r\nready.\r\n>");
    case Fate::HangUp:
      return line.At(done, text.substr(0, place), true);
    case Fate::Doubled:
      line.At(done, text);
      return line.At(done + turn.DelayMs, std::move(text));
    case Fate::Replaced:
      return line.At(done, turn.Noise);
    default:
      line.At(start, text.substr(0, text.size() / 2));
      return line.At(done, text.substr(text.size() / 2));
  }
}

}  // namespace

std::vector<std::string> AnswerLines(std::string_view command, std::int32_t number) {
  const std::string digits = std::to_string(number);
  if (command.starts_with("ge ")) {
    const std::size_t count = static_cast<std::size_t>(std::stoul(std::string(command.substr(3))));
    return std::vector<std::string>(count, digits);
  }
  if (command == "rezero") return {digits, digits};
  if (command == "getdark") return std::vector<std::string>(8, digits);
  if (command == "getwl") return {digits + ".5"};
  if (command == "getslip" || command == "getsampler") return {digits};
  if (command == "company") return {"Qvr " + digits};
  if (command == "connect") return {"ok."};
  if (command == "check") return {"Invalid Command."};
  return {};
}

std::vector<Delivery> NumberedPeer::Receive(std::string_view bytes, std::int64_t nowMs) {
  pending_ += bytes;
  Composed line(nowMs);
  for (std::size_t end; (end = pending_.find('\r')) != std::string::npos; pending_.erase(0, end + 1)) {
    const std::string command = pending_.substr(0, end);
    ++Requests;
    Turn turn = std::exchange(Next, {});
    const bool behind = FreeMs > SentMs && !Forges;
    if (behind && turn.What == Fate::Lost) turn.What = Fate::Whole;
    std::int64_t start = std::max(nowMs, FreeMs);
    const bool begins = turn.What != Fate::StandsStill && turn.What != Fate::Parted &&
                        turn.What != Fate::ByteByByte && turn.What != Fate::Doubled;
    // A part of the delay may lie before the first byte: of an answer that is parted there, of a banner.
    if (behind && turn.What != Fate::StandsStill) turn.DelayMs = std::min(turn.DelayMs, kLongestGapMs);
    if (begins && turn.What != Fate::NoiseBefore && turn.What != Fate::Restart) start += turn.DelayMs;
    Compose(line, turn, WholeAnswer(command, kFirstNumber + Requests), std::max(start, line.LastMs()),
            behind ? command.size() + 1 : 0);
    FreeMs = line.LastMs();
  }
  return line.All();
}

bool KeepingPort::Write(std::string_view bytes, int timeoutMs) {
  Heard.clear();
  peer_.SentMs = clock_.NowMs();
  const std::int64_t takes = std::exchange(WriteMs, 0);
  const bool fails = std::exchange(WriteFails, false) || takes >= timeoutMs;
  clock_.Advance(std::min<std::int64_t>(takes, timeoutMs));
  return !fails && MemoryPort::Write(bytes, timeoutMs);
}

std::string KeepingPort::Read(int timeoutMs) {
  std::string piece;
  if (FloodLeft > 0 && IsOpen()) {
    clock_.Advance(std::min<std::int64_t>(kFloodPieceMs, std::max(timeoutMs, 0)));
    piece.assign(std::min(FloodLeft, kFloodPiece), 'Z');
    FloodLeft -= piece.size();
  } else {
    piece = MemoryPort::Read(timeoutMs);
  }
  Heard.append(piece, 0, kMostKept - std::min(kMostKept, Heard.size()));
  return piece;
}

}  // namespace spectrane::fuzz
