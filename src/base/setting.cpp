#include "base/setting.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "base/filereplacement.h"
#include "base/fixedtext.h"
#include "base/folderlock.h"
#include "base/utf8path.h"

#ifdef _WIN32
#include "base/windowsheader.h"
#else
#include <sys/stat.h>
#endif

namespace spectrane {
namespace {

constexpr const char* kFileName = "config.ini";
constexpr std::size_t kMostCharacters = 255;
constexpr std::size_t kMostBytes = std::size_t{16} << 20;
constexpr int kLockTimeoutMs = 1000;

bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// Bytes of the well-formed UTF-8 character at the start of `text`; 0 when there is none.
std::size_t CharacterLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                             : lead >= 0xE0 && lead <= 0xEF ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
  if (length == 0 || text.size() < length) return 0;
  if (!std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length), IsContinuation))
    return 0;
  const auto second = static_cast<unsigned char>(text[1]);
  const bool wrong = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                     (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
  return wrong ? 0 : length;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

/// The first 255 characters.
void CutText(std::string& text) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!IsContinuation(text[i]) && ++characters > kMostCharacters) {
      text.resize(i);
      return;
    }
  }
}

void TrimRight(std::string& text) {
  text.erase(text.find_last_not_of(" \t") + 1);
}

/// What a reader gets of a stored value.
std::string ReadingOf(std::string_view stored) {
  std::string value = IsUtf8(stored) ? std::string(stored) : FromSingleByte(stored);
  CutText(value);
  TrimRight(value);
  return value;
}

/// The value as one line takes it.
std::string LineValue(std::string_view value) {
  std::string line(value);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r' || c == '\0'; }, ' ');
  TrimRight(line);
  return line.erase(0, std::min(line.find_first_not_of(" \t"), line.size()));
}

/// Whether a name can stand in a settings file and be found there again. `special` cannot stand in it.
bool IsFitName(std::string_view name, std::string_view special) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  return !name.empty() && !isBlank(name.front()) && !isBlank(name.back()) &&
         name.find_first_of(std::string_view("\n\r\0", 3)) == std::string_view::npos &&
         name.find_first_of(special) == std::string_view::npos;
}

bool IsFit(const SettingValue& value) {
  return IsFitName(value.Section, "]") && IsFitName(value.Key, "=") &&
         std::string_view("[;#").find(value.Key.front()) == std::string_view::npos;
}

const SettingValue* FindIn(const std::vector<SettingValue>& values, std::string_view section,
                           std::string_view key) {
  const auto found = std::find_if(values.begin(), values.end(), [&](const SettingValue& value) {
    return SameName(value.Section, section) && SameName(value.Key, key);
  });
  return found == values.end() ? nullptr : &*found;
}

bool IsText(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, 2);
  return head != "\xFF\xFE" && head != "\xFE\xFF" && bytes.find('\0') == std::string_view::npos;
}

}  // namespace

Setting::Setting(std::string folder)
    : folder_(std::move(folder)), path_(Utf8FromPath(PathFromUtf8(folder_) / kFileName)) {}

std::string Setting::GetSetting(std::string_view section, std::string_view key) {
  if (const SettingValue* const value = FindIn(pending_, section, key)) return ReadingOf(value->Value);
  Refresh();
  std::string stored = ReadingOf(text_.Find(section, key).value_or(std::string_view()));
  if (!stored.empty()) return stored;
  const SettingValue* const usual = FindIn(pendingDefaults_, section, key);
  return usual == nullptr ? stored : ReadingOf(usual->Value);
}

bool Setting::PutSetting(std::string_view section, std::string_view key, std::string_view value) {
  return PutSettings({{std::string(section), std::string(key), std::string(value)}});
}

bool Setting::PutSettings(const std::vector<SettingValue>& values) {
  return Keep(values, pending_);
}

bool Setting::PutDefaults(const std::vector<SettingValue>& values) {
  return Keep(values, pendingDefaults_);
}

/// Takes the values into a list of what waits, and writes.
bool Setting::Keep(const std::vector<SettingValue>& values, std::vector<SettingValue>& kept) {
  bool fit = true;
  for (const SettingValue& value : values) {
    if (!IsFit(value)) {
      fit = false;
      continue;
    }
    std::erase_if(kept, [&value](const SettingValue& other) {
      return SameName(other.Section, value.Section) && SameName(other.Key, value.Key);
    });
    kept.push_back({value.Section, value.Key, LineValue(value.Value)});
  }
  return ((pending_.empty() && pendingDefaults_.empty()) || WritePending()) && fit;
}

bool Setting::WritePending() {
  const FolderLock lock(folder_, kLockTimeoutMs);
  if (!lock.Held()) {
    writeProblem_ = path_ + ": in use by another program";
    return false;
  }
  read_ = false;
  Refresh();
  if (!readProblem_.empty()) return false;
  std::vector<SettingValue> values = pending_;
  for (const SettingValue& usual : pendingDefaults_) {
    const bool stored = !ReadingOf(text_.Find(usual.Section, usual.Key).value_or(std::string_view())).empty();
    if (!stored && FindIn(pending_, usual.Section, usual.Key) == nullptr) values.push_back(usual);
  }
  const std::string next = text_.With(values);
  if (next != text_.Raw()) {
    std::string reason = std::make_error_code(std::errc::file_too_large).message();
    if (next.size() > kMostBytes || !ReplaceFileContent(path_, next, &reason)) {
      writeProblem_ = path_ + ": " + reason;
      return false;
    }
    read_ = false;
  }
  pending_.clear();
  pendingDefaults_.clear();
  writeProblem_.clear();
  return true;
}

void Setting::Refresh() {
  std::string reason;
  const Stamp stamp = StampOf(path_, reason);
  if (read_ && !failedToRead_ && stamp == stamp_) return;
  Read(stamp, std::move(reason));
}

void Setting::Read(const Stamp& stamp, std::string reason) {
  read_ = true;
  stamp_ = stamp;
  std::string bytes;
  failedToRead_ = false;
  if (stamp.Is == Stamp::Kind::Regular) {
    bytes = ReadWhole(path_, reason);
    failedToRead_ = !reason.empty() && bytes.size() <= kMostBytes;
    if (reason.empty() && !IsText(bytes)) reason = "not a text file";
  }
  readProblem_ = reason.empty() ? std::string() : path_ + ": " + reason;
  text_ = IniText(reason.empty() ? std::move(bytes) : std::string());
}

/// The file's bytes; `reason` is set when they cannot be had or are too many.
std::string Setting::ReadWhole(const std::string& path, std::string& reason) {
#ifdef _WIN32
  std::FILE* file = ::_wfopen(PathFromUtf8(path).c_str(), L"rb");
#else
  std::FILE* file = std::fopen(path.c_str(), "rbe");
#endif
  std::string bytes;
  if (file == nullptr) {
    reason = std::generic_category().message(errno);
    return bytes;
  }
  char block[1 << 16];
  std::size_t count = 0;
  do {
    count = std::fread(block, 1, sizeof block, file);
    bytes.append(block, count);
  } while (count == sizeof block && bytes.size() <= kMostBytes);
  if (std::ferror(file) != 0) reason = std::generic_category().message(errno);
  if (bytes.size() > kMostBytes) reason = std::make_error_code(std::errc::file_too_large).message();
  std::fclose(file);
  return bytes;
}

/// `reason` is set for a path that cannot be a settings file.
Setting::Stamp Setting::StampOf(const std::string& path, std::string& reason) {
  Stamp stamp;
#ifdef _WIN32
  WIN32_FILE_ATTRIBUTE_DATA facts{};
  if (GetFileAttributesExW(PathFromUtf8(path).c_str(), GetFileExInfoStandard, &facts) == 0) {
    const DWORD fault = GetLastError();
    if (fault == ERROR_FILE_NOT_FOUND || fault == ERROR_PATH_NOT_FOUND) return stamp;
    stamp.Is = Stamp::Kind::Other;
    reason = std::system_category().message(static_cast<int>(fault));
    return stamp;
  }
  const bool folder = (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const bool regular = (facts.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
  stamp.Size = (std::uint64_t{facts.nFileSizeHigh} << 32) | facts.nFileSizeLow;
  stamp.Modified = static_cast<std::int64_t>((std::uint64_t{facts.ftLastWriteTime.dwHighDateTime} << 32) |
                                             facts.ftLastWriteTime.dwLowDateTime);
#else
  struct stat facts {};
  if (::stat(path.c_str(), &facts) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return stamp;
    stamp.Is = Stamp::Kind::Other;
    reason = std::generic_category().message(errno);
    return stamp;
  }
  const bool folder = S_ISDIR(facts.st_mode);
  const bool regular = S_ISREG(facts.st_mode);
  stamp.Size = static_cast<std::uint64_t>(facts.st_size);
  stamp.Modified = std::int64_t{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec;
  stamp.Device = facts.st_dev;
  stamp.Number = facts.st_ino;
#endif
  stamp.Is = regular ? Stamp::Kind::Regular : Stamp::Kind::Other;
  if (!regular)
    reason = folder ? std::make_error_code(std::errc::is_a_directory).message() : "not a regular file";
  return stamp;
}

}  // namespace spectrane
