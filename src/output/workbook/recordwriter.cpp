#include "output/workbook/recordwriter.h"

#include <algorithm>

namespace spectrane {

bool IsNarrow(std::u16string_view text) {
  return std::ranges::all_of(text, [](char16_t unit) { return unit < 0x100; });
}

void PutUnits(ByteWriter& body, std::u16string_view text, bool narrow) {
  for (const char16_t unit : text) {
    if (narrow) {
      body.U8(unit);
    } else {
      body.U16(unit);
    }
  }
}

void PutText(ByteWriter& body, std::u16string_view text, int lengthBytes) {
  const bool narrow = IsNarrow(text);
  const auto length = static_cast<std::uint32_t>(text.size());
  if (lengthBytes == 1) {
    body.U8(length);
  } else {
    body.U16(length);
  }
  body.U8(narrow ? 0 : 1);
  PutUnits(body, text, narrow);
}

}  // namespace spectrane
