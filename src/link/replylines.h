#pragma once

#include <optional>
#include <string_view>

namespace spectrane {

/// Cuts the data lines out of a reply: the data start two characters behind the echoed command, a line ends
/// at its first CR, and the next one starts two characters behind that CR. The reply must outlive this
/// object.
class ReplyLines {
 public:
  ReplyLines(std::string_view reply, std::string_view command);

  /// The next line without its end; nothing when no further CR follows.
  std::optional<std::string_view> Next();
  /// What stands behind the lines that were cut.
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

}  // namespace spectrane
