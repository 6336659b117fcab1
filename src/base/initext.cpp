#include "base/initext.h"

#include <algorithm>
#include <utility>

#include "base/characters.h"

namespace spectrane {
namespace {

#ifdef _WIN32
constexpr const char* kPlatformLineBreak = "\r\n";
#else
constexpr const char* kPlatformLineBreak = "\n";
#endif
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

char Small(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
bool IsLineBreak(char c) {
  return c == '\n' || c == '\r';
}

/// Moves both ends of a range of `text` inward over blanks.
void TrimBlanks(std::string_view text, std::size_t& begin, std::size_t& end) {
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
}

std::uint32_t Offset(std::size_t at) {
  return static_cast<std::uint32_t>(at);
}

/// Text that takes the place of `Length` bytes; a length of 0 inserts.
struct Change {
  std::size_t At = 0;
  std::size_t Length = 0;
  bool Inserts = false;
  std::string Text;
};

std::string Apply(const std::string& raw, std::vector<Change> changes, const std::string& lineBreak) {
  std::stable_sort(changes.begin(), changes.end(), [](const Change& a, const Change& b) {
    return std::pair(a.At, a.Inserts) < std::pair(b.At, b.Inserts);
  });
  std::string result;
  std::size_t done = 0;
  for (const Change& change : changes) {
    result.append(raw, done, change.At - done);
    const bool lineOpen = !result.empty() && result != kByteOrderMark && !IsLineBreak(result.back());
    if (change.Inserts && lineOpen) result += lineBreak;
    result += change.Text;
    done = change.At + change.Length;
    // In a text of several kinds of line break, the next one must not become a half of this one.
    if (result.ends_with('\r') && done < raw.size() && raw[done] == '\n') result += '\n';
  }
  return result.append(raw, done);
}

/// The values, each key once with the last value that was put.
std::vector<SettingValue> LastOfEach(const std::vector<SettingValue>& values) {
  std::vector<SettingValue> result;
  for (const SettingValue& value : values) {
    const auto same = std::find_if(result.begin(), result.end(), [&value](const SettingValue& other) {
      return SameName(other.Section, value.Section) && SameName(other.Key, value.Key);
    });
    if (same == result.end()) {
      result.push_back(value);
    } else {
      same->Value = value.Value;
    }
  }
  return result;
}

}  // namespace

bool SameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Small(x) == Small(y); });
}

IniText::IniText(std::string raw) : raw_(std::move(raw)), lineBreak_(kPlatformLineBreak) {
  const std::string_view text = raw_;
  std::size_t begin = text.substr(0, kByteOrderMark.size()) == kByteOrderMark ? kByteOrderMark.size() : 0;
  std::size_t feed = text.find('\n', begin);
  std::size_t carriage = text.find('\r', begin);
  const std::size_t firstBreak = std::min(feed, carriage);
  if (firstBreak != std::string_view::npos) {
    lineBreak_ = text.substr(firstBreak, text.substr(firstBreak, 2) == "\r\n" ? 2 : 1);
  }
  while (begin < text.size()) {
    if (feed < begin) feed = text.find('\n', begin);
    if (carriage < begin) carriage = text.find('\r', begin);
    const std::size_t end = std::min({feed, carriage, text.size()});
    const std::size_t next = std::min(end + (end == carriage && carriage + 1 == feed ? 2 : 1), text.size());
    ReadLine(begin, end, next);
    begin = next;
  }
}

void IniText::ReadLine(std::size_t begin, std::size_t end, std::size_t next) {
  const std::string_view text = raw_;
  const std::size_t lineEnd = end;
  TrimBlanks(text, begin, end);
  if (begin == end || text[begin] == ';' || text[begin] == '#') return;
  if (text[begin] == '[') {
    const std::size_t close = text.substr(begin, end - begin).find(']');
    if (close == std::string_view::npos) return;
    std::size_t nameEnd = begin + close;
    ++begin;
    TrimBlanks(text, begin, nameEnd);
    sections_.push_back({Offset(begin), Offset(nameEnd), Offset(next), keys_.size()});
    return;
  }
  const std::size_t equals = text.substr(begin, end - begin).find('=');
  if (equals == std::string_view::npos || equals == 0 || sections_.empty()) return;
  std::size_t keyEnd = begin + equals;
  std::size_t valueBegin = keyEnd + 1;
  TrimBlanks(text, begin, keyEnd);
  TrimBlanks(text, valueBegin, end);
  keys_.push_back({Offset(begin), Offset(keyEnd), Offset(valueBegin), Offset(end), Offset(lineEnd)});
  sections_.back().NewKeysAt = Offset(next);
}

const IniText::Section* IniText::FindSection(std::string_view name) const {
  const auto found = std::find_if(sections_.begin(), sections_.end(), [this, name](const Section& section) {
    return SameName(Slice(section.Begin, section.End), name);
  });
  return found == sections_.end() ? nullptr : &*found;
}

const IniText::Key* IniText::FindKey(const Section& section, std::string_view name) const {
  const bool last = &section == &sections_.back();
  const std::size_t end = last ? keys_.size() : (&section + 1)->FirstKey;
  for (std::size_t i = section.FirstKey; i < end; ++i) {
    if (SameName(Slice(keys_[i].Begin, keys_[i].End), name)) return &keys_[i];
  }
  return nullptr;
}

std::optional<std::string_view> IniText::Find(std::string_view section, std::string_view key) const {
  const Section* const place = FindSection(section);
  const Key* const found = place == nullptr ? nullptr : FindKey(*place, key);
  if (found == nullptr) return std::nullopt;
  return Slice(found->ValueBegin, found->ValueEnd);
}

std::string IniText::With(const std::vector<SettingValue>& values) const {
  std::vector<Change> changes;
  std::vector<std::pair<std::string, std::string>> newSections;  // name, lines
  for (const SettingValue& value : LastOfEach(values)) {
    const Section* const section = FindSection(value.Section);
    const Key* const key = section == nullptr ? nullptr : FindKey(*section, value.Key);
    const std::string line = value.Key + "=" + value.Value + lineBreak_;
    if (key != nullptr) {
      if (Slice(key->ValueBegin, key->ValueEnd) == value.Value) continue;
      changes.push_back({key->ValueBegin, key->LineEnd - key->ValueBegin, false, value.Value});
    } else if (section != nullptr) {
      changes.push_back({section->NewKeysAt, 0, true, line});
    } else {
      auto place = std::find_if(newSections.begin(), newSections.end(),
                                [&value](const auto& other) { return SameName(other.first, value.Section); });
      if (place == newSections.end()) place = newSections.insert(place, {value.Section, {}});
      place->second += line;
    }
  }
  for (const auto& [name, lines] : newSections) {
    changes.push_back({raw_.size(), 0, true, "[" + name + "]" + lineBreak_ + lines});
  }
  return Apply(raw_, std::move(changes), lineBreak_);
}

}  // namespace spectrane
