#include "fuzz/checks/link/replycheck.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "base/numbers.h"
#include "base/numericfault.h"
#include "link/replybuffer.h"
#include "link/replylines.h"

namespace spectrane::fuzz {
namespace {

constexpr std::size_t kMostHeld = 65536;
/// Without sanitizers, for numbers.
#ifdef SPECTRANE_FUZZ_FAST
constexpr bool kSeldom = true;
#else
constexpr bool kSeldom = false;
#endif
/// Length of a piece that is all there is.
constexpr std::size_t kOnePiece = SIZE_MAX;

/// The lengths of pieces, drawn from a seed; of a fixed length for the first few.
class Cutter {
 public:
  explicit Cutter(unsigned char seed) : seed_(seed), state_(seed * 2654435761U + 1) {}

  std::size_t Next() {
    if (seed_ == 0) return kOnePiece;
    if (seed_ < 8) return seed_;
    state_ = state_ * 1664525U + 1013904223U;
    return 1 + (state_ >> 16) % (seed_ < 128 ? 16U : 600U);
  }

 private:
  unsigned char seed_;
  std::uint32_t state_;
};

struct Collected {
  std::string Text;
  bool Whole = false;
};

/// Hands the text over piece by piece, as a line does, until the reply is whole.
Collected Collect(std::string_view text, unsigned char seed) {
  ReplyBuffer buffer;
  Cutter cutter(seed);
  while (!text.empty() && !buffer.Whole()) {
    const std::string_view piece = text.substr(0, cutter.Next());
    text.remove_prefix(piece.size());
    buffer.Add(piece);
    buffer.Add({});
  }
  return {buffer.Text(), buffer.Whole()};
}

/// The same, reckoned: the first piece that ends in the prompt ends the reply.
Collected Reckon(std::string_view text, unsigned char seed) {
  Cutter cutter(seed);
  std::size_t end = 0;
  while (end < text.size()) {
    end += std::min(cutter.Next(), text.size() - end);
    if (end <= kMostHeld && text[end - 1] == '>') return {std::string(text.substr(0, end)), true};
  }
  return {std::string(text.substr(0, kMostHeld)), false};
}

/// The line that begins at `at`, without a look at what cuts it in the program; moves `at` behind its end.
std::optional<std::string_view> LineAt(std::string_view reply, std::size_t& at) {
  std::size_t end = at;
  while (end < reply.size() && reply[end] != '\r') ++end;
  if (end >= reply.size()) return std::nullopt;
  const std::string_view line = reply.substr(at, end - at);
  at = std::min(end + 2, reply.size());
  return line;
}

/// Of a text that is no number only every eighth is asked for a whole one: the exception that refuses it
/// takes longer than all the rest.
bool AsksForWhole(std::string_view line, bool isNumber) {
  return isNumber || line.empty() || static_cast<unsigned char>(line.back()) % 8 == line.size() % 8;
}

std::string CheckNumbers(std::string_view line) {
  const std::optional<double> number = ParseNumber(line);
  if (!AsksForWhole(line, number.has_value())) return {};
  std::optional<std::int32_t> value;
  try {
    value = ParseLong(line);
  } catch (const NumericFault&) {
  }
  if (value && (!number || !(*number - *value <= 0.5 && *value - *number <= 0.5)))
    return "a whole number far from the number";
  if (!value && number && *number > -2147483648.0 && *number < 2147483647.0)
    return "a number that is refused";
  if (value && ParseLong(std::to_string(*value)) != *value) return "a whole number that does not come back";
  // Digits alone are their value.
  if (!line.empty() && line.size() <= 9 &&
      std::all_of(line.begin(), line.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    std::int32_t sum = 0;
    for (const char c : line) sum = sum * 10 + (c - '0');
    if (value != sum) return "digits with another value";
  }
  return {};
}

std::string CheckLines(std::string_view reply, std::string_view command) {
  ReplyLines lines(reply, command);
  std::size_t at = std::min(command.size() + 2, reply.size());
  for (int i = 0; i < 64; ++i) {
    if (lines.Rest() != reply.substr(at)) return "another rest";
    const auto expected = LineAt(reply, at);
    const auto line = lines.Next();
    if (line != expected) return "another line";
    if (!line) break;
    if (i >= 8) continue;
    if (std::string wrong = CheckNumbers(*line); !wrong.empty()) return wrong;
  }
  return {};
}

}  // namespace

std::string CheckReply(Bytes input) {
  if (input.size() < 2) return {};
  std::string_view text(reinterpret_cast<const char*>(input.data()), input.size());
  const unsigned char first = input[0];
  const unsigned char seed = input[1];
  text.remove_prefix(2);
  const std::string_view command = text.substr(0, first % 16U);
  text.remove_prefix(command.size());
  static std::string flood;
  // Seldom: it takes a hundred times as long as the others.
  if (first == 0xFF && seed == 0xFF && text.size() % 16 == 1 &&
      (!kSeldom || input[input.size() / 2] % 64 == 0)) {
    flood.clear();
    while (flood.size() <= kMostHeld) flood += text;
    text = flood;
  }

  const Collected collected = Collect(text, seed);
  const Collected reckoned = Reckon(text, seed);
  if (collected.Whole != reckoned.Whole) return collected.Whole ? "whole too early" : "not whole";
  if (collected.Text != reckoned.Text) return "another text";
  if (text.find('>') >= text.size() - 1) {
    // The prompt is the last byte or nowhere: pieces make no difference.
    const Collected atOnce = Collect(text, 0);
    if (atOnce.Whole != collected.Whole || atOnce.Text != collected.Text) return "pieces make a difference";
  }
  return CheckLines(collected.Text, command);
}

}  // namespace spectrane::fuzz
