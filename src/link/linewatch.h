#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace spectrane {

/// Follows what goes over one line: which requests still lack their answer, and whether the instrument said
/// that it restarted. An instrument answers one request after the other, in the order in which they were
/// sent: an echo tells that whatever was sent before it has been answered, or never will be.
class LineWatch {
 public:
  /// The line was opened anew.
  void Reset();
  void Sent(std::string_view request);
  /// Bytes that arrived, in their order, whoever asked for them.
  void Heard(std::string_view bytes);
  /// What was sent so far is over: nothing of it is awaited any more.
  void TakeAsAnswered() { awaited_.clear(); }

  /// Requests whose answer has not been heard to its end.
  std::size_t Awaited() const { return awaited_.size(); }
  /// An answer was heard to its end, no line has come since, and it may be that to the last request: to one
  /// of that text.
  bool LastMayBeAnswered() const {
    return between_ && ended_ == LastSent() && text_.find('\r') == std::string::npos;
  }
  /// The reply has nothing behind its echo but what the request is answered with, one line of words or
  /// numbers: no damaged echo of an answer that goes on where this one lost its end.
  static bool IsPlain(std::string_view request, std::string_view reply);
  /// How often the instrument was heard to restart.
  std::int64_t Restarts() const { return restarts_; }

 private:
  struct Request {
    std::string Text;
    bool Begun = false;
  };

  std::string_view LastSent() const {
    return sent_.empty() ? std::string_view() : std::string_view(sent_.back());
  }
  void EndOfText();
  void MatchEchoes();
  bool IsBanner() const;
  bool IsAnswerInWords() const;
  bool AwaitsWords() const;
  bool IsWords(std::string_view line) const;
  bool IsRequest(std::string_view line) const;

  std::deque<Request> awaited_;
  /// Texts of the last requests, answered or not.
  std::deque<std::string> sent_;
  /// What came since the last prompt, its beginning cut off when it grows too long.
  std::string text_;
  /// Up to here `text_` has been searched for echoes.
  std::size_t searched_ = 0;
  std::string ended_;
  bool between_ = false;
  std::int64_t restarts_ = 0;
};

}  // namespace spectrane
