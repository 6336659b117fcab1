#include "output/workbook/cellstyles.h"

#include <algorithm>

#include "base/utf8text.h"

namespace spectrane {
namespace {

/// What stands in front of a workbook's own styles: fifteen that styles are derived from, and the plain cell.
constexpr std::uint16_t kParentFormats = 15;
constexpr std::uint16_t kFirstStyle = 16;
constexpr std::uint16_t kFirstOwnFormat = 164;
constexpr std::uint32_t kPlainFonts = 4;

/// Number formats that every reader knows by their number.
struct KnownFormat {
  const char* Pattern;
  std::uint16_t Number;
};
constexpr KnownFormat kKnownFormats[] = {{"General", 0}, {"0", 1}, {"0.00", 2}, {"@", 49}};

struct FontKey {
  std::string Name;
  int Size;
  bool Bold;
  bool operator==(const FontKey&) const = default;
};

FontKey FontOf(const CellStyle& style) {
  return {style.FontName, style.FontSize, style.Bold};
}

/// The distinct values of all styles, in order of appearance.
template <typename T, typename Of>
std::vector<T> Distinct(const std::vector<CellStyle>& styles, Of of) {
  std::vector<T> values;
  for (const CellStyle& style : styles) {
    const T value = of(style);
    if (std::ranges::find(values, value) == values.end()) values.push_back(value);
  }
  return values;
}

template <typename T>
std::uint32_t PlaceOf(const std::vector<T>& values, const T& value) {
  return static_cast<std::uint32_t>(std::ranges::find(values, value) - values.begin());
}

const KnownFormat* KnownFormatOf(const std::string& pattern) {
  const auto* const found =
      std::ranges::find_if(kKnownFormats, [&](const KnownFormat& f) { return pattern == f.Pattern; });
  return found == std::end(kKnownFormats) ? nullptr : found;
}

void WriteFont(RecordWriter& records, const FontKey& font) {
  constexpr std::uint32_t kSystemColour = 0x7FFF;
  constexpr std::uint32_t kSwiss = 2;
  ByteWriter body;
  body.U16(static_cast<std::uint32_t>(font.Size) * 20).U16(0).U16(kSystemColour);
  body.U16(font.Bold ? 700 : 400).U16(0).U8(0).U8(kSwiss).U8(0).U8(0);
  PutText(body, Utf16FromUtf8(font.Name), 1);
  records.Add(RecordKind::Font, body);
}

struct ExtendedFormat {
  std::uint32_t Font = 0;
  std::uint32_t Number = 0;
  CellAlign Align = CellAlign::General;
  /// Parent in the upper bits; locked, and the mark of a parent.
  std::uint32_t Flags = 0x0001;
  /// Which of its attributes count instead of the parent's.
  std::uint32_t Used = 0;
};

void WriteExtendedFormat(RecordWriter& records, const ExtendedFormat& format) {
  constexpr std::uint32_t kAtBottom = 0x20;
  constexpr std::uint32_t kNoPattern = 0x20C0;
  ByteWriter body;
  body.U16(format.Font).U16(format.Number).U16(format.Flags);
  body.U8(static_cast<std::uint32_t>(format.Align) | kAtBottom).U8(0).U8(0).U8(format.Used);
  body.U32(0).U32(0).U16(kNoPattern);
  records.Add(RecordKind::ExtendedFormat, body);
}

}  // namespace

std::uint16_t CellStyles::Add(const CellStyle& style) {
  const auto found = std::ranges::find(styles_, style);
  const auto place = static_cast<std::uint16_t>(found - styles_.begin());
  if (found == styles_.end()) styles_.push_back(style);
  return static_cast<std::uint16_t>(kFirstStyle + place);
}

void CellStyles::Write(RecordWriter& records) const {
  const auto fonts = Distinct<FontKey>(styles_, &FontOf);
  auto patterns = Distinct<std::string>(styles_, [](const CellStyle& s) { return s.NumberFormat; });
  std::erase_if(patterns, [](const std::string& pattern) { return KnownFormatOf(pattern) != nullptr; });

  for (std::uint32_t i = 0; i < kPlainFonts; ++i) WriteFont(records, {"Arial", 10, false});
  for (const FontKey& font : fonts) WriteFont(records, font);
  for (std::size_t i = 0; i < patterns.size(); ++i) {
    ByteWriter body;
    body.U16(kFirstOwnFormat + static_cast<std::uint32_t>(i));
    PutText(body, Utf16FromUtf8(patterns[i]), 2);
    records.Add(RecordKind::Format, body);
  }

  constexpr std::uint32_t kParent = 0xFFF5;
  for (std::uint32_t i = 0; i < kParentFormats; ++i) {
    const std::uint32_t font = i == 0 ? 0 : i <= 2 ? 1 : i <= 4 ? 2 : 0;
    WriteExtendedFormat(records, {font, 0, CellAlign::General, kParent, i == 0 ? 0u : 0xF4u});
  }
  WriteExtendedFormat(records, {});
  for (const CellStyle& style : styles_) {
    const KnownFormat* const known = KnownFormatOf(style.NumberFormat);
    ExtendedFormat format;
    // Number 4 is never given to a font.
    format.Font = kPlainFonts + 1 + PlaceOf(fonts, FontOf(style));
    format.Number = known ? known->Number : kFirstOwnFormat + PlaceOf(patterns, style.NumberFormat);
    format.Align = style.Align;
    format.Used = 0x1C;
    WriteExtendedFormat(records, format);
  }
  // "Normal" is the first parent.
  records.Add(RecordKind::Style, ByteWriter().U16(0x8000).U8(0).U8(0xFF));
}

}  // namespace spectrane
