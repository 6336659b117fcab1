#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/noise.h"

namespace spectrane {

/// Ways in which an answer can go wrong.
enum class FaultKind {
  NoReply,
  LateReply,
  Cut,
  Split,
  Slow,
  NoiseBefore,
  NoiseInside,
  Twice,
  Previous,
  HangUp,
  NoPrompt,
  PromptInside,
  WrongEcho,
  FewerLines,
  MoreLines,
  BadNumber,
  Restart,
  Flood
};

/// One row of the table of kinds.
struct FaultKindEntry {
  FaultKind Kind;
  std::string_view Name;
  bool TakesText;               ///< the first parameter is a text, not a number
  int Numbers;                  ///< how many whole numbers may follow
  std::string_view Parameters;  ///< for the help
};

std::span<const FaultKindEntry> FaultKinds();

/// A fault to be applied to one answer. Numbers not given take the kind's default.
struct Fault {
  FaultKind Kind = FaultKind::NoReply;
  std::vector<int> Numbers;
  std::optional<std::string> Text;
  /// Place in the answer when no byte position is given, as a share of its length (0 … 1).
  double Share = 0.5;

  int Number(std::size_t index, int fallback) const {
    return index < Numbers.size() ? Numbers[index] : fallback;
  }
};

/// What goes wrong when: entries (command, n-th occurrence, kind, parameters) and random draws.
class FaultScript {
 public:
  /// Adds the entries of a script, one a line: VERB|* N|every KIND [parameters]; `#` begins a comment.
  /// Nothing is added when a line is wrong; the result then says which and why. Occurrences count from now.
  std::optional<std::string> Load(std::string_view script);
  /// Adds one entry from its words; the result says what is wrong with them.
  std::optional<std::string> Add(std::string_view verb, std::string_view occurrence, std::string_view kind,
                                 std::span<const std::string> parameters);
  /// From now on each request draws a fault with the probability `rate`; 0 ends it.
  void DrawAtRandom(std::uint64_t seed, double rate);
  void Clear();

  /// To be called once for each request: the fault for its answer. When several entries fall on one request,
  /// the first applies and the others are spent.
  std::optional<Fault> Due(std::string_view command);

  std::size_t Pending() const { return entries_.size(); }

 private:
  struct Entry {
    std::string Verb;
    int Left;  ///< matching requests up to the one concerned; 0: every one
    Fault What;
  };

  std::optional<std::string> Parse(std::span<const std::string> words, std::vector<Entry>& into) const;
  std::optional<Fault> Draw();

  std::vector<Entry> entries_;
  SeededNoise random_{0};
  double rate_ = 0.0;
};

}  // namespace spectrane
