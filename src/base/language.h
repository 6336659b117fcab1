#pragma once

#include <string>
#include <string_view>

namespace spectrane {

/// The user-visible text of that number; a number without a row gives the empty text.
std::string Text(int id);

/// 0 for a Chinese system locale (2052, 4 or 4100), 2 for every other. The values come from an older scheme
/// and are kept.
int LanguageIndexFor(unsigned localeId);
/// The locale id that stands for a locale name such as "zh_CN.UTF-8"; a name outside the Chinese ones gives
/// English.
unsigned LocaleIdOf(std::string_view localeName);
/// The language index of this machine's locale.
int GetLanguageIndex();

/// The font of all window text.
struct UIFont {
  std::string Name;
  /// Point size.
  int Size = 0;
  /// Character set number; 1 leaves the choice to the platform.
  int Charset = 1;
};

UIFont FontFor(int languageIndex);

}  // namespace spectrane
