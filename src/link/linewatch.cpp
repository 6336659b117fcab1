#include "link/linewatch.h"

#include <algorithm>
#include <iterator>

#include "link/replybuffer.h"

namespace spectrane {
namespace {

constexpr std::size_t kMostAwaited = 1024;
constexpr std::size_t kMostSent = 8;
/// Text without a prompt is kept up to here; then its end alone, which may be the beginning of a banner.
constexpr std::size_t kMostText = 65536;
constexpr std::size_t kKeptText = 1024;
/// Characters by which an echo is longer or shorter when it was damaged on its way.
constexpr std::size_t kMostDamage = 2;
/// Requests whose answers are words: the rest of one that was parted looks like one line of a banner.
constexpr std::string_view kAnsweredInWords[] = {"check", "company", "connect"};
constexpr char kCarriageReturn = '\r';

bool IsPrintable(char c) {
  return c >= 0x20 && c < 0x7F;
}
bool InWords(std::string_view request) {
  return std::ranges::find(kAnsweredInWords, request) != std::end(kAnsweredInWords);
}
bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Takes the last line off the text; a line ends at a CR, and one character more belongs to that end. False,
/// with the text as it was: it does not end with a line.
bool TakeLastLine(std::string_view& text, std::string_view& line) {
  const std::size_t end = text.rfind(kCarriageReturn);
  if (end == std::string_view::npos || end + 2 < text.size()) return false;
  const std::size_t before = end > 0 ? text.rfind(kCarriageReturn, end - 1) : std::string_view::npos;
  const std::size_t begin = before == std::string_view::npos ? 0 : std::min(before + 2, end);
  line = text.substr(begin, end - begin);
  text = text.substr(0, begin);
  return true;
}

std::size_t CommonStart(std::string_view a, std::string_view b) {
  const auto [end, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  return static_cast<std::size_t>(end - a.begin());
}

std::size_t CommonEnd(std::string_view a, std::string_view b) {
  const auto [end, other] = std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend());
  return static_cast<std::size_t>(end - a.rbegin());
}

}  // namespace

bool LineWatch::IsPlain(std::string_view request, std::string_view reply) {
  const std::string_view lines = reply.substr(std::min(request.size() + 1, reply.size()));
  return InWords(request) ? std::ranges::count(lines, kCarriageReturn) <= 1
                          : std::ranges::none_of(lines, IsLetter);
}

void LineWatch::Reset() {
  awaited_.clear();
  sent_.clear();
  text_.clear();
  searched_ = 0;
  ended_.clear();
  between_ = false;
}

void LineWatch::Sent(std::string_view request) {
  if (awaited_.size() == kMostAwaited) awaited_.pop_front();
  awaited_.push_back({std::string(request)});
  if (sent_.size() == kMostSent) sent_.pop_front();
  sent_.emplace_back(request);
  between_ = false;
}

void LineWatch::Heard(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t prompt = bytes.find(ReplyBuffer::kPrompt);
    text_ += bytes.substr(0, prompt);
    MatchEchoes();
    if (prompt == std::string_view::npos) break;
    EndOfText();
    bytes.remove_prefix(prompt + 1);
  }
  if (text_.size() > kMostText) {
    text_.erase(0, text_.size() - kKeptText);
    searched_ = 0;
  }
}

// The first echo in what is new belongs to the first request of that text that was not being answered yet.
void LineWatch::MatchEchoes() {
  for (;;) {
    std::size_t best = std::string::npos;
    auto found = awaited_.end();
    for (auto request = awaited_.begin(); request != awaited_.end(); ++request) {
      if (request->Begun) continue;
      const std::size_t at = text_.find(request->Text + kCarriageReturn, searched_);
      if (at >= best) continue;
      best = at;
      found = request;
    }
    if (found == awaited_.end()) break;
    searched_ = best + found->Text.size() + 1;
    awaited_.erase(awaited_.begin(), found);
    awaited_.front().Begun = true;
  }
  // An echo may come in two pieces.
  std::size_t longest = 0;
  for (const Request& request : awaited_) longest = std::max(longest, request.Text.size());
  if (text_.size() > longest) searched_ = std::max(searched_, text_.size() - longest);
}

void LineWatch::EndOfText() {
  if (IsBanner()) {
    ++restarts_;
    // It has forgotten what it was asked before, most likely. Damage may look like a banner, though; then the
    // answers still come, and to wait for them in vain costs a moment.
    if (!awaited_.empty() && awaited_.front().Begun) awaited_.pop_front();
    between_ = false;
  } else if (!awaited_.empty() && awaited_.front().Begun) {
    ended_ = awaited_.front().Text;
    awaited_.pop_front();
    between_ = true;
  } else {
    // An answer whose echo was damaged: to the last request, perhaps.
    between_ = false;
  }
  text_.clear();
  searched_ = 0;
}

// Answers are an echo and numbers, or one line of words. A text whose last line is words and that holds no
// request, whole or damaged, is nobody's answer: so an instrument speaks that was switched on. Behind a part
// of an answer its banner is known by two lines of words.
bool LineWatch::IsBanner() const {
  if (IsAnswerInWords()) return false;
  std::string_view text = text_;
  std::string_view last;
  if (!TakeLastLine(text, last) || !IsWords(last)) return false;
  std::string_view before;
  std::string_view line;
  bool request = AwaitsWords();
  for (bool first = true; (first || !request) && TakeLastLine(text, line); first = false) {
    if (first) before = line;
    request = request || IsRequest(line);
  }
  return !request || (IsWords(before) && before != last);
}

bool LineWatch::IsWords(std::string_view line) const {
  return std::all_of(line.begin(), line.end(), IsPrintable) &&
         std::any_of(line.begin(), line.end(), IsLetter) && !IsRequest(line);
}

// Nobody else is waited for, and it begins with its echo: it may say as many lines as it likes.
bool LineWatch::IsAnswerInWords() const {
  return awaited_.size() == 1 && InWords(awaited_.front().Text) &&
         text_.starts_with(awaited_.front().Text + kCarriageReturn);
}

bool LineWatch::AwaitsWords() const {
  return InWords(LastSent()) ||
         std::any_of(awaited_.begin(), awaited_.end(), [](const Request& one) { return InWords(one.Text); });
}

bool LineWatch::IsRequest(std::string_view line) const {
  if (line.empty()) return false;
  const auto is = [line](const std::string& request) {
    if (line.find(request) != std::string_view::npos) return !request.empty();
    // A prompt in the wrong place parts an echo.
    if (request.starts_with(line) || request.ends_with(line)) return true;
    if (line.size() > request.size() + kMostDamage || request.size() > line.size() + kMostDamage)
      return false;
    return 2 * (CommonStart(line, request) + CommonEnd(line, request)) >= request.size();
  };
  return std::any_of(sent_.begin(), sent_.end(), is) ||
         std::any_of(awaited_.begin(), awaited_.end(), [&](const Request& one) { return is(one.Text); });
}

}  // namespace spectrane
