#include "simulator/escapedtext.h"

#include <charconv>
#include <cstdint>

namespace spectrane {

std::string Escape(std::string_view bytes, bool blanksToo) {
  constexpr std::string_view Digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '\r') {
      text += "\\r";
    } else if (c == '\n') {
      text += "\\n";
    } else if (c == '\t') {
      text += "\\t";
    } else if (c == '\\') {
      text += "\\\\";
    } else if (code < 0x20 || code > 0x7E || (blanksToo && c == ' ')) {
      text += "\\x";
      text += Digits[code >> 4];
      text += Digits[code & 0xF];
    } else {
      text += c;
    }
  }
  return text;
}

std::optional<std::string> Unescape(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      bytes += text[i];
      continue;
    }
    if (++i == text.size()) return std::nullopt;
    switch (text[i]) {
      case 'r':
        bytes += '\r';
        break;
      case 'n':
        bytes += '\n';
        break;
      case 't':
        bytes += '\t';
        break;
      case '\\':
        bytes += '\\';
        break;
      case 'x': {
        std::uint8_t code = 0;
        const std::string_view digits = text.substr(i + 1, 2);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
        if (error != std::errc{} || end != digits.data() + 2) return std::nullopt;
        bytes += static_cast<char>(code);
        i += 2;
        break;
      }
      default:
        return std::nullopt;
    }
  }
  return bytes;
}

}  // namespace spectrane
