#include "simulator/faultscript.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <utility>

#include "simulator/commandset.h"
#include "simulator/escapedtext.h"
#include "simulator/words.h"

namespace spectrane {
namespace {

constexpr std::array<FaultKindEntry, 18> Kinds{{
    {FaultKind::NoReply, "no-reply", false, 0, ""},
    {FaultKind::LateReply, "late-reply", false, 1, "[MS]"},
    {FaultKind::Cut, "cut", false, 1, "[BYTE]"},
    {FaultKind::Split, "split", false, 2, "[BYTE [MS]]"},
    {FaultKind::Slow, "slow", false, 1, "[MS-PER-BYTE]"},
    {FaultKind::NoiseBefore, "noise-before", false, 1, "[BYTES]"},
    {FaultKind::NoiseInside, "noise-inside", false, 2, "[BYTE [BYTES]]"},
    {FaultKind::Twice, "twice", false, 1, "[MS]"},
    {FaultKind::Previous, "previous", false, 0, ""},
    {FaultKind::HangUp, "hang-up", false, 1, "[BYTE]"},
    {FaultKind::NoPrompt, "no-prompt", false, 0, ""},
    {FaultKind::PromptInside, "prompt-inside", false, 2, "[BYTE [MS]]"},
    {FaultKind::WrongEcho, "wrong-echo", true, 0, "[TEXT]"},
    {FaultKind::FewerLines, "fewer-lines", false, 1, "[LINES]"},
    {FaultKind::MoreLines, "more-lines", false, 1, "[LINES]"},
    {FaultKind::BadNumber, "bad-number", true, 1, "[TEXT [LINE]]"},
    {FaultKind::Restart, "restart", false, 2, "[MS [BYTE]]"},
    {FaultKind::Flood, "flood", false, 1, "[BYTES]"},
}};

std::optional<int> WholeNumber(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || value < 0) return std::nullopt;
  return value;
}

/// Fills the parameters of a fault; the result says what is wrong with them.
std::optional<std::string> ReadParameters(const FaultKindEntry& kind, std::span<const std::string> words,
                                          Fault& fault) {
  if (kind.TakesText && !words.empty()) {
    fault.Text = words.front() == "\"\"" ? std::string() : Unescape(words.front());
    if (!fault.Text) return "unknown escape in " + words.front();
    words = words.subspan(1);
  }
  if (words.size() > static_cast<std::size_t>(kind.Numbers))
    return "too many parameters for " + std::string(kind.Name);
  for (const std::string& word : words) {
    const auto number = WholeNumber(word);
    if (!number) return "not a whole number: " + word;
    fault.Numbers.push_back(*number);
  }
  return std::nullopt;
}

}  // namespace

std::span<const FaultKindEntry> FaultKinds() {
  return Kinds;
}

std::optional<std::string> FaultScript::Parse(std::span<const std::string> words,
                                              std::vector<Entry>& into) const {
  if (words.size() < 3) return "expected: VERB OCCURRENCE KIND [PARAMETERS]";
  Entry entry{words[0], 0, {}};
  if (words[1] != "every") {
    entry.Left = WholeNumber(words[1]).value_or(0);
    if (entry.Left < 1) return "the occurrence must be 1 or more, or \"every\": " + words[1];
  }
  const auto kind = std::find_if(Kinds.begin(), Kinds.end(),
                                 [&](const FaultKindEntry& candidate) { return candidate.Name == words[2]; });
  if (kind == Kinds.end()) return "unknown fault: " + words[2];
  entry.What.Kind = kind->Kind;
  if (auto fault = ReadParameters(*kind, words.subspan(3), entry.What)) return fault;
  into.push_back(std::move(entry));
  return std::nullopt;
}

std::optional<std::string> FaultScript::Load(std::string_view script) {
  std::vector<Entry> read;
  int number = 0;
  while (!script.empty()) {
    const std::size_t end = script.find('\n');
    std::string_view line = script.substr(0, end);
    script.remove_prefix(end == std::string_view::npos ? script.size() : end + 1);
    ++number;
    const std::vector<std::string> words = Words(line.substr(0, line.find('#')));
    if (words.empty()) continue;
    if (auto fault = Parse(words, read)) return "line " + std::to_string(number) + ": " + *fault;
  }
  std::move(read.begin(), read.end(), std::back_inserter(entries_));
  return std::nullopt;
}

std::optional<std::string> FaultScript::Add(std::string_view verb, std::string_view occurrence,
                                            std::string_view kind, std::span<const std::string> parameters) {
  std::vector<std::string> words{std::string(verb), std::string(occurrence), std::string(kind)};
  words.insert(words.end(), parameters.begin(), parameters.end());
  return Parse(words, entries_);
}

void FaultScript::DrawAtRandom(std::uint64_t seed, double rate) {
  random_ = SeededNoise(seed);
  rate_ = rate;
}

void FaultScript::Clear() {
  entries_.clear();
  rate_ = 0.0;
}

std::optional<Fault> FaultScript::Due(std::string_view command) {
  std::optional<Fault> due;
  for (Entry& entry : entries_) {
    if (entry.Verb != "*" && entry.Verb != VerbOf(command)) continue;
    const bool every = entry.Left == 0;
    if (!every && --entry.Left > 0) continue;
    if (!every) entry.Left = -1;
    if (!due) due = entry.What;
  }
  std::erase_if(entries_, [](const Entry& entry) { return entry.Left < 0; });
  if (!due && rate_ > 0.0 && random_.Uniform() < rate_) due = Draw();
  return due;
}

std::optional<Fault> FaultScript::Draw() {
  static constexpr std::array<std::string_view, 10> BadNumbers{
      "abc", "", "-1", "1e999", "NaN", "2147483648", "12,5", "0x10", "  7  ", "1000000000"};
  Fault fault;
  fault.Kind = Kinds[static_cast<std::size_t>(random_.Below(static_cast<int>(Kinds.size())))].Kind;
  fault.Share = random_.Uniform();
  const auto bad = static_cast<std::size_t>(random_.Below(static_cast<int>(BadNumbers.size())));
  if (fault.Kind == FaultKind::BadNumber) fault.Text = std::string(BadNumbers[bad]);
  return fault;
}

}  // namespace spectrane
