#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace spectrane {

/// Bytes as one word of printable ASCII: `\r`, `\n`, `\t`, `\\`, and `\xHH` for blanks at choice and
/// everything else that does not print. Reads back without loss.
std::string Escape(std::string_view bytes, bool blanksToo = false);

/// The bytes of an escaped text; nothing when it holds an unfinished or unknown escape.
std::optional<std::string> Unescape(std::string_view text);

}  // namespace spectrane
