#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace spectrane {

/// One setting with its place.
struct SettingValue {
  std::string Section;
  std::string Key;
  std::string Value;
};

/// Whether two section or key names are the same: letters A to Z count as small ones, whatever the locale.
bool SameName(std::string_view a, std::string_view b);

/// The text of a settings file, line by line as it stands: what is not changed keeps its every byte,
/// comments, order and line ends included.
///
/// "[section]" opens a section, "key=value" sets a key, a line that starts with ";" or "#" is a comment;
/// everything else (an unclosed "[", no "=", nothing in front of it) has no meaning. Lines end in LF, CR LF
/// or CR. Of sections and keys that stand twice the first is the one that counts.
class IniText {
 public:
  IniText() = default;
  explicit IniText(std::string raw);

  const std::string& Raw() const { return raw_; }
  /// The value without the blanks around it; nothing when the key is not there. Valid as long as this object.
  std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;
  /// The text with these values put in, in order: a value is changed in its line, a new key goes behind the
  /// last one of its section, a new section to the end. The names and values must be fit for a line.
  std::string With(const std::vector<SettingValue>& values) const;

 private:
  /// Offsets into the text.
  struct Key {
    std::uint32_t Begin = 0, End = 0;
    std::uint32_t ValueBegin = 0, ValueEnd = 0;
    std::uint32_t LineEnd = 0;  ///< in front of the line break
  };
  struct Section {
    std::uint32_t Begin = 0, End = 0;
    std::uint32_t NewKeysAt = 0;  ///< behind the last line with a key, or behind the head
    std::size_t FirstKey = 0;
  };

  void ReadLine(std::size_t begin, std::size_t end, std::size_t next);
  const Section* FindSection(std::string_view name) const;
  const Key* FindKey(const Section& section, std::string_view name) const;
  std::string_view Slice(std::uint32_t begin, std::uint32_t end) const {
    return std::string_view(raw_).substr(begin, end - begin);
  }

  std::string raw_;
  /// The line break of the file's first line, or the platform's.
  std::string lineBreak_;
  std::vector<Section> sections_;
  std::vector<Key> keys_;
};

}  // namespace spectrane
