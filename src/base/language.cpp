#include "base/language.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <utility>
#include <vector>

#ifdef _WIN32
#include "base/windowsheader.h"
#endif

namespace spectrane {
namespace {

#include "texts.inc"

constexpr unsigned kEnglish = 1033;
constexpr int kChineseIndex = 0;
constexpr int kOtherIndex = 2;

using TextRow = std::pair<int, std::string>;

std::string WithTabs(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && text.substr(i, 2) == "\\t") {
      result += '\t';
      ++i;
    } else {
      result += text[i];
    }
  }
  return result;
}

/// All rows, by number.
std::vector<TextRow> ReadRows(std::string_view table) {
  std::vector<TextRow> rows;
  while (!table.empty()) {
    const std::string_view line = table.substr(0, table.find('\n'));
    table.remove_prefix(std::min(line.size() + 1, table.size()));
    const std::size_t tab = line.find('\t');
    int id = 0;
    if (tab == std::string_view::npos ||
        std::from_chars(line.data(), line.data() + tab, id).ec != std::errc())
      continue;
    rows.emplace_back(id, WithTabs(line.substr(tab + 1)));
  }
  std::stable_sort(rows.begin(), rows.end(),
                   [](const TextRow& a, const TextRow& b) { return a.first < b.first; });
  return rows;
}

}  // namespace

std::string Text(int id) {
  static const std::vector<TextRow> rows = ReadRows(kTextRows);
  const auto row =
      std::lower_bound(rows.begin(), rows.end(), id, [](const TextRow& a, int b) { return a.first < b; });
  return row != rows.end() && row->first == id ? row->second : std::string();
}

int LanguageIndexFor(unsigned localeId) {
  return localeId == 2052 || localeId == 4 || localeId == 4100 ? kChineseIndex : kOtherIndex;
}

unsigned LocaleIdOf(std::string_view localeName) {
  struct ChineseLocale {
    std::string_view Name;
    unsigned Id;
  };
  static constexpr ChineseLocale locales[] = {{"zh", 4},       {"zh_CN", 2052}, {"zh_SG", 4100},
                                              {"zh_TW", 1028}, {"zh_HK", 3076}, {"zh_MO", 5124}};
  const std::string_view name = localeName.substr(0, localeName.find_first_of(".@"));
  for (const ChineseLocale& locale : locales) {
    if (locale.Name == name) return locale.Id;
  }
  return kEnglish;
}

int GetLanguageIndex() {
#ifdef _WIN32
  return LanguageIndexFor(GetSystemDefaultLCID());
#else
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* name = std::getenv(variable);
    if (name != nullptr && *name != '\0') return LanguageIndexFor(LocaleIdOf(name));
  }
  return LanguageIndexFor(kEnglish);
#endif
}

UIFont FontFor(int languageIndex) {
  if (languageIndex == kOtherIndex) return {"MS UI Gothic", 10, 1};
  return {"Verdana", 9, 1};
}

}  // namespace spectrane
