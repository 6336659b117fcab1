#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace spectrane {

/// No character: malformed UTF-8.
inline constexpr char32_t kNoCharacter = 0xFFFFFFFF;

struct DecodedCharacter {
  char32_t Character = kNoCharacter;
  /// [bytes]
  std::size_t Length = 1;
};

/// The character at `text[at]`; a byte that begins no well-formed sequence stands for itself alone, without a
/// character.
DecodedCharacter DecodeAt(std::string_view text, std::size_t at);

/// UTF-8 to UTF-16; each malformed byte becomes U+FFFD.
std::u16string Utf16FromUtf8(std::string_view text);

}  // namespace spectrane
