#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace spectrane {

/// Single-byte text of the data files: Windows-1252. In the program texts are UTF-8.
///
/// The five unused bytes of the code page and the control characters stand for the character of that number,
/// so every byte survives reading and writing. The Greek small mu (U+03BC) is written as the micro sign.

/// UTF-8 to single bytes. A character without a place becomes "?"; `lost` (when given) is set to true then
/// and left alone otherwise. Malformed UTF-8 counts as one such character a byte.
std::string ToSingleByte(std::string_view utf8, bool* lost = nullptr);
/// Single bytes to UTF-8; never fails.
std::string FromSingleByte(std::string_view bytes);

/// A text field: cut at `width` bytes, padded with blanks at the right.
std::string PadField(std::string_view utf8, std::size_t width, bool* lost = nullptr);
/// The text of a field with the blanks at the right removed.
std::string TrimField(std::string_view bytes);

/// PadField and TrimField in place, for the thousands of fields of a file: `field` has room for `width`
/// bytes, `text` keeps the room it has.
void WriteField(std::string_view utf8, char* field, std::size_t width, bool* lost = nullptr);
void ReadField(std::string_view bytes, std::string& text);

}  // namespace spectrane
