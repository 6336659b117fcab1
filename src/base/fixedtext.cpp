#include "base/fixedtext.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "base/utf8text.h"

namespace spectrane {
namespace {

constexpr char32_t kGreekSmallMu = 0x03BC;
constexpr unsigned char kMicroSign = 0xB5;

/// Characters of the bytes 0x80 to 0x9F; every other byte is the character of its own number.
constexpr char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char32_t CharacterOf(unsigned char byte) {
  return byte >= 0x80 && byte <= 0x9F ? kHighControls[byte - 0x80] : byte;
}

/// The byte of a character; -1 when the code page has no place for it.
int ByteOf(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<int>(character);
  if (character == kGreekSmallMu) return kMicroSign;
  for (int i = 0; i < 32; ++i) {
    if (kHighControls[i] == character) return 0x80 + i;
  }
  return -1;
}

bool IsAscii(std::string_view bytes) {
  unsigned char all = 0;
  for (const char c : bytes) all = static_cast<unsigned char>(all | static_cast<unsigned char>(c));
  return all < 0x80;
}

/// Length without the blanks at the right. Fields are mostly blank, so 32 bytes are looked at together.
std::size_t TrimmedLength(std::string_view bytes) {
  constexpr std::uint64_t kBlanks = 0x2020202020202020;
  std::size_t length = bytes.size();
  for (; length >= 32; length -= 32) {
    std::uint64_t words[4];
    std::memcpy(words, bytes.data() + length - sizeof words, sizeof words);
    const std::uint64_t other =
        (words[0] ^ kBlanks) | (words[1] ^ kBlanks) | (words[2] ^ kBlanks) | (words[3] ^ kBlanks);
    if (other != 0) break;
  }
  while (length > 0 && bytes[length - 1] == ' ') --length;
  return length;
}

}  // namespace

std::string ToSingleByte(std::string_view utf8, bool* lost) {
  std::string bytes(utf8.size(), '\0');
  char* to = bytes.data();
  for (std::size_t at = 0; at < utf8.size();) {
    const DecodedCharacter decoded = DecodeAt(utf8, at);
    at += decoded.Length;
    const int byte = ByteOf(decoded.Character);
    if (byte < 0 && lost != nullptr) *lost = true;
    *to++ = byte < 0 ? '?' : static_cast<char>(byte);
  }
  bytes.resize(static_cast<std::size_t>(to - bytes.data()));
  return bytes;
}

std::string FromSingleByte(std::string_view bytes) {
  // No character of the code page lies above U+FFFF, so three bytes are the most.
  std::string text(bytes.size() * 3, '\0');
  char* to = text.data();
  for (const char c : bytes) {
    const auto character = static_cast<std::uint32_t>(CharacterOf(static_cast<unsigned char>(c)));
    if (character < 0x80) {
      *to++ = static_cast<char>(character);
    } else if (character < 0x800) {
      *to++ = static_cast<char>(0xC0 | (character >> 6));
      *to++ = static_cast<char>(0x80 | (character & 0x3F));
    } else {
      *to++ = static_cast<char>(0xE0 | (character >> 12));
      *to++ = static_cast<char>(0x80 | ((character >> 6) & 0x3F));
      *to++ = static_cast<char>(0x80 | (character & 0x3F));
    }
  }
  text.resize(static_cast<std::size_t>(to - text.data()));
  return text;
}

std::string PadField(std::string_view utf8, std::size_t width, bool* lost) {
  std::string field(width, ' ');
  WriteField(utf8, field.data(), width, lost);
  return field;
}

std::string TrimField(std::string_view bytes) {
  std::string text;
  ReadField(bytes, text);
  return text;
}

void WriteField(std::string_view utf8, char* field, std::size_t width, bool* lost) {
  // Most texts are plain and need no single-byte copy on the way.
  std::string converted;
  if (!IsAscii(utf8)) {
    converted = ToSingleByte(utf8, lost);
    utf8 = converted;
  }
  const std::size_t used = std::min(utf8.size(), width);
  std::memcpy(field, utf8.data(), used);
  std::memset(field + used, ' ', width - used);
}

void ReadField(std::string_view bytes, std::string& text) {
  bytes = bytes.substr(0, TrimmedLength(bytes));
  if (IsAscii(bytes)) {
    text.assign(bytes);
  } else {
    text = FromSingleByte(bytes);
  }
}

}  // namespace spectrane
