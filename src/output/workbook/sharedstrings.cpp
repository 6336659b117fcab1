#include "output/workbook/sharedstrings.h"

#include <algorithm>

#include "base/utf8text.h"

namespace spectrane {
namespace {

constexpr std::size_t kLongestText = 32767;

/// The most units up to `limit` that end with a whole character.
std::size_t WholeCharacters(std::u16string_view text, std::size_t limit) {
  if (text.size() <= limit) return text.size();
  const bool splits = limit > 0 && (text[limit - 1] & 0xFC00) == 0xD800;
  return splits ? limit - 1 : limit;
}

/// Fills one record after the other. The head of a text is never divided, nor is a character; where a text
/// is, its rest begins with the mark of the width again.
class TableWriter {
 public:
  explicit TableWriter(RecordWriter& records) : records_(records) {}
  ~TableWriter() { Flush(); }
  TableWriter(const TableWriter&) = delete;
  TableWriter& operator=(const TableWriter&) = delete;

  void Counts(std::uint32_t uses, std::size_t texts) { body_.U32(uses).U32(texts); }

  void Text(std::u16string_view text) {
    constexpr std::size_t kHead = 3;
    const bool narrow = IsNarrow(text);
    const std::size_t width = narrow ? 1 : 2;
    if (Room() < kHead + width) Flush();
    body_.U16(static_cast<std::uint32_t>(text.size())).U8(narrow ? 0 : 1);
    while (!text.empty()) {
      const std::size_t fits = WholeCharacters(text, Room() / width);
      PutUnits(body_, text.substr(0, fits), narrow);
      text.remove_prefix(fits);
      if (text.empty()) return;
      Flush();
      body_.U8(narrow ? 0 : 1);
    }
  }

 private:
  std::size_t Room() const { return kRecordLimit - body_.Size(); }
  void Flush() {
    records_.Add(kind_, body_);
    kind_ = RecordKind::Continue;
    body_ = {};
  }

  RecordWriter& records_;
  RecordKind kind_ = RecordKind::SharedStrings;
  ByteWriter body_;
};

}  // namespace

std::uint32_t SharedStrings::Add(std::string_view text) {
  ++uses_;
  const auto [place, isNew] =
      numbers_.try_emplace(std::string(text), static_cast<std::uint32_t>(texts_.size()));
  if (isNew) {
    texts_.push_back(Utf16FromUtf8(text));
    texts_.back().resize(WholeCharacters(texts_.back(), kLongestText));
  }
  return place->second;
}

void SharedStrings::Write(RecordWriter& records) const {
  TableWriter table(records);
  table.Counts(uses_, texts_.size());
  for (const std::u16string& text : texts_) table.Text(text);
}

}  // namespace spectrane
