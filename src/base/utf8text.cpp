#include "base/utf8text.h"

namespace spectrane {

DecodedCharacter DecodeAt(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(at);
  if (lead < 0x80) return {lead, 1};
  std::size_t length = 0;
  char32_t smallest = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    smallest = 0x80;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    smallest = 0x800;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    smallest = 0x10000;
  }
  if (length == 0 || text.size() - at < length) return {};
  char32_t character = lead & (0xFFu >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return {};
    character = (character << 6) | (byte(at + i) & 0x3Fu);
  }
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < smallest || surrogate || character > 0x10FFFF) return {};
  return {character, length};
}

std::u16string Utf16FromUtf8(std::string_view text) {
  constexpr char16_t kReplacement = 0xFFFD;
  std::u16string units;
  units.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const DecodedCharacter decoded = DecodeAt(text, at);
    at += decoded.Length;
    if (decoded.Character == kNoCharacter) {
      units += kReplacement;
    } else if (decoded.Character < 0x10000) {
      units += static_cast<char16_t>(decoded.Character);
    } else {
      const char32_t rest = decoded.Character - 0x10000;
      units += static_cast<char16_t>(0xD800 + (rest >> 10));
      units += static_cast<char16_t>(0xDC00 + (rest & 0x3FF));
    }
  }
  return units;
}

}  // namespace spectrane
