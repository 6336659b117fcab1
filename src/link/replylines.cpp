#include "link/replylines.h"

#include <algorithm>

namespace spectrane {
namespace {

constexpr std::size_t kLineEnd = 2;

std::string_view From(std::string_view text, std::size_t start) {
  return text.substr(std::min(start, text.size()));
}

}  // namespace

ReplyLines::ReplyLines(std::string_view reply, std::string_view command)
    : rest_(From(reply, command.size() + kLineEnd)) {}

std::optional<std::string_view> ReplyLines::Next() {
  const std::size_t end = rest_.find('\r');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view line = rest_.substr(0, end);
  rest_ = From(rest_, end + kLineEnd);
  return line;
}

}  // namespace spectrane
