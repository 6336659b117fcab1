#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace spectrane {

/// Collects the bytes of one reply. A reply is whole when the last byte after a piece is the prompt ">"; a
/// prompt with more text behind it in the same piece does not end it. Holds at most kLimit bytes: what goes
/// beyond makes the reply one that never becomes whole.
class ReplyBuffer {
 public:
  static constexpr std::size_t kLimit = 65536;
  static constexpr char kPrompt = '>';

  /// Adds a piece; an empty piece changes nothing.
  void Add(std::string_view piece);
  /// The reply ends in the prompt and kept within the limit.
  bool Whole() const { return !overflown_ && !text_.empty() && text_.back() == kPrompt; }
  const std::string& Text() const { return text_; }
  void Clear();

 private:
  std::string text_;
  bool overflown_ = false;
};

}  // namespace spectrane
