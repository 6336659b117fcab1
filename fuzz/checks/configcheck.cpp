#include "fuzz/checks/configcheck.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string_view>
#include <vector>

#include "base/fixedtext.h"
#include "base/initext.h"
#include "base/setting.h"
#include "base/utf8path.h"
#include "base/utf8text.h"

namespace spectrane::fuzz {
namespace {

constexpr std::size_t kMostChanges = 4;
constexpr std::size_t kMostCharacters = 255;

struct Line {
  std::string_view Text;
  std::string_view Break;
};

std::vector<Line> LinesOf(std::string_view text) {
  std::vector<Line> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::size_t width = text.substr(end, 2) == "\r\n" ? 2 : end < text.size() ? 1 : 0;
    lines.push_back({text.substr(0, end), text.substr(end, width)});
    text.remove_prefix(end + width);
  }
  return lines;
}

constexpr std::string_view kMark = "\xEF\xBB\xBF";

/// The mark of the encoding is no part of the first line; a second one is.
std::string_view WithoutMark(std::string_view text) {
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  return text;
}

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

std::string Small(std::string_view text) {
  std::string small(text);
  for (char& c : small) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  return small;
}

using Name = std::pair<std::string, std::string>;

/// A key as it stands in the file.
struct Stored {
  std::string_view Value;
  /// Of its line.
  std::size_t Number;
};
/// Every key that counts, its names in small letters.
using Keys = std::map<Name, Stored>;

Keys KeysOf(const std::vector<Line>& lines) {
  Keys keys;
  std::vector<std::string> opened;
  bool counts = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string_view text = WithoutBlanks(lines[i].Text);
    if (text.empty() || text.front() == ';' || text.front() == '#') continue;
    if (text.front() == '[') {
      const std::size_t close = text.find(']');
      if (close == std::string_view::npos) continue;
      const std::string section = Small(WithoutBlanks(text.substr(1, close - 1)));
      counts = std::find(opened.begin(), opened.end(), section) == opened.end();
      opened.push_back(section);
      continue;
    }
    const std::size_t equals = text.find('=');
    if (!counts || equals == 0 || equals == std::string_view::npos) continue;
    const Name name{opened.back(), Small(WithoutBlanks(text.substr(0, equals)))};
    keys.try_emplace(name, Stored{WithoutBlanks(text.substr(equals + 1)), i});
  }
  return keys;
}

bool FitName(std::string_view name, std::string_view barred) {
  return !name.empty() && name == WithoutBlanks(name) &&
         name.find_first_of("\r\n") == std::string_view::npos &&
         name.find_first_of(barred) == std::string_view::npos;
}

bool Fit(const SettingValue& change) {
  return FitName(change.Section, "]") && FitName(change.Key, "=") &&
         std::string_view("[;#").find(change.Key.front()) == std::string_view::npos;
}

/// The value as it stands in a line.
std::string OneLine(std::string value) {
  std::replace(value.begin(), value.end(), '\n', ' ');
  std::replace(value.begin(), value.end(), '\r', ' ');
  return std::string(WithoutBlanks(value));
}

/// The value as it is read.
std::string Reading(std::string_view stored) {
  bool utf8 = true;
  for (std::size_t at = 0; at < stored.size();) {
    const DecodedCharacter decoded = DecodeAt(stored, at);
    utf8 = utf8 && decoded.Character != kNoCharacter;
    at += decoded.Length;
  }
  const std::string text = utf8 ? std::string(stored) : FromSingleByte(stored);
  std::size_t at = 0;
  for (std::size_t i = 0; i < kMostCharacters && at < text.size(); ++i) at += DecodeAt(text, at).Length;
  std::string_view reading = std::string_view(text).substr(0, at);
  while (!reading.empty() && (reading.back() == ' ' || reading.back() == '\t')) reading.remove_suffix(1);
  return std::string(reading);
}

/// A line as heads and lines of changes are compared: names in small letters, the value as it is.
std::string WithSmallNames(std::string_view line) {
  const std::size_t names = line.starts_with('[') ? line.size() : std::min(line.find('='), line.size());
  return Small(line.substr(0, names)) + std::string(line.substr(names));
}

/// Every line of `before` stands in `after`, byte for byte and in order, but for those of `changed`, of which
/// the part behind the "=" may be another; what else there is in `after` is a head or a line of a change.
std::string CheckLinesKept(const std::vector<Line>& before, const std::vector<Line>& after, const Keys& keys,
                           const std::map<Name, std::string>& changes) {
  std::vector<std::string> added;
  std::map<std::size_t, std::string> changed;
  for (const auto& [name, value] : changes) {
    added.push_back("[" + name.first + "]");
    added.push_back(name.second + "=" + value);
    if (const auto key = keys.find(name); key != keys.end()) changed[key->second.Number] = value;
  }
  const auto stays = [&](std::size_t number, const Line& line) {
    const Line& old = before[number];
    // The last line of a file may have no end; it gets one when something follows.
    if (old.Break != line.Break && !old.Break.empty()) return false;
    if (old.Text == line.Text) return true;
    const auto value = changed.find(number);
    const std::string_view head = old.Text.substr(0, old.Text.find('=') + 1);
    return value != changed.end() && line.Text.starts_with(head) &&
           WithoutBlanks(line.Text.substr(head.size())) == value->second;
  };
  std::size_t i = 0;
  for (const Line& line : after) {
    if (i < before.size() && stays(i, line)) {
      ++i;
    } else if (std::find(added.begin(), added.end(), WithSmallNames(line.Text)) == added.end()) {
      return "a line that nobody put there";
    }
  }
  return i == before.size() ? "" : "a line is gone";
}

/// `next` is `text` with the changes, and nothing else is another.
std::string CheckNext(std::string_view text, std::string_view next,
                      const std::map<Name, std::string>& changes) {
  if (text.starts_with(kMark) && !next.starts_with(kMark)) return "the byte order mark is gone";
  const std::vector<Line> before = LinesOf(WithoutMark(text));
  const std::vector<Line> after = LinesOf(WithoutMark(next));
  const Keys oldKeys = KeysOf(before);
  const Keys newKeys = KeysOf(after);
  std::map<Name, std::string_view> expected;
  for (const auto& [name, stored] : oldKeys) expected[name] = stored.Value;
  for (const auto& [name, value] : changes) expected[name] = value;
  if (expected.size() != newKeys.size()) return "keys came or went";
  for (const auto& [name, value] : expected) {
    const auto found = newKeys.find(name);
    if (found == newKeys.end()) return "a key is gone";
    if (found->second.Value != value) return "a key with another value";
  }
  return CheckLinesKept(before, after, oldKeys, changes);
}

/// Every key that the file has, by the reader under test.
std::string CheckFinds(const IniText& ini, std::string_view text) {
  for (const auto& [name, stored] : KeysOf(LinesOf(WithoutMark(text)))) {
    const auto value = ini.Find(name.first, name.second);
    if (!value || *value != stored.Value) return "a key is not found";
  }
  return {};
}

/// The change of the text alone, and what is read of it then.
std::string CheckWith(const IniText& ini, std::string_view text, const std::vector<SettingValue>& fit,
                      const std::map<Name, std::string>& changes) {
  const IniText next(ini.With(fit));
  std::string wrong = CheckNext(text, next.Raw(), changes);
  return wrong.empty() ? CheckFinds(next, next.Raw()) : wrong;
}

/// The disk takes twenty times as long as the text: without sanitizers, for numbers, it is asked for one
/// input of sixteen.
bool GoesByDisk([[maybe_unused]] Bytes input) {
#ifdef SPECTRANE_FUZZ_FAST
  std::uint32_t sum = 2166136261U;
  for (const unsigned char byte : input) sum = (sum ^ byte) * 16777619U;
  return (sum >> 16) % 16 == 0;
#else
  return true;
#endif
}

/// A folder with one settings file.
class SettingsFolder {
 public:
  SettingsFolder() {
    const std::string name = "spectrane-settings-" + std::to_string(std::random_device{}());
    path_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directories(path_);
  }
  ~SettingsFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  SettingsFolder(const SettingsFolder&) = delete;
  SettingsFolder& operator=(const SettingsFolder&) = delete;

  std::string Path() const { return Utf8FromPath(path_); }
  void Hold(std::string_view text) const {
    std::ofstream(path_ / "config.ini", std::ios::binary | std::ios::trunc)
        .write(text.data(), static_cast<std::streamsize>(text.size()));
  }
  std::string Held() const {
    std::ifstream file(path_ / "config.ini", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  std::filesystem::path path_;
};

bool IsTextFile(std::string_view text) {
  return !text.starts_with("\xFF\xFE") && !text.starts_with("\xFE\xFF") &&
         text.find('\0') == std::string_view::npos;
}

/// The whole way, by the file of the disk.
std::string CheckStore(std::string_view text, const std::vector<SettingValue>& given,
                       const std::map<Name, std::string>& changes, bool allFit) {
  static const SettingsFolder folder;
  folder.Hold(text);
  Setting first(folder.Path());
  const bool put = first.PutSettings(given);
  const bool readable = IsTextFile(text);
  // Nothing fit is nothing to write: that succeeds in its way whatever the file is.
  if (put != (allFit && (readable || changes.empty()))) return put ? "put" : "not put";
  const std::string next = folder.Held();
  if (!readable && next != text) return "wrote to a file that is no text";
  Setting second(folder.Path());
  const Keys stored = readable ? KeysOf(LinesOf(WithoutMark(next))) : Keys();
  for (const auto& [name, value] : changes) {
    if (first.GetSetting(name.first, name.second) != Reading(value)) return "a value does not come back";
    if (readable && second.GetSetting(name.first, name.second) != Reading(value))
      return "a value does not come back from the file";
  }
  for (const auto& [name, value] : stored) {
    if (second.GetSetting(name.first, name.second) != Reading(value.Value)) return "a key reads otherwise";
  }
  return readable ? CheckNext(text, next, changes) : std::string();
}

}  // namespace

std::string CheckConfig(Bytes input) {
  std::string_view rest(reinterpret_cast<const char*>(input.data()), input.size());
  std::size_t end = std::min(rest.find('\0'), rest.size());
  // A NUL that stays in the file.
  if (end > 0 && end < rest.size() && rest[end - 1] == '\xFF')
    end = std::min(rest.find('\0', end + 1), rest.size());
  const std::string text(rest.substr(0, end));
  rest.remove_prefix(std::min(end + 1, rest.size()));

  std::vector<SettingValue> given;
  std::vector<SettingValue> fit;
  std::map<Name, std::string> changes;
  bool allFit = true;
  while (!rest.empty() && given.size() < kMostChanges) {
    std::array<std::string, 3> words;
    for (std::string& word : words) {
      word = rest.substr(0, rest.find('\0'));
      rest.remove_prefix(std::min(word.size() + 1, rest.size()));
    }
    given.push_back({words[0], words[1], words[2]});
    if (Fit(given.back())) {
      fit.push_back({words[0], words[1], OneLine(words[2])});
      changes[{Small(words[0]), Small(words[1])}] = fit.back().Value;
    } else {
      allFit = false;
    }
  }
  const IniText ini(text);
  if (ini.Raw() != text) return "another text";
  if (std::string wrong = CheckFinds(ini, text); !wrong.empty()) return wrong;
  if (std::string wrong = CheckWith(ini, text, fit, changes); !wrong.empty()) return wrong;
  return GoesByDisk(input) ? CheckStore(text, given, changes, allFit) : std::string();
}

}  // namespace spectrane::fuzz
