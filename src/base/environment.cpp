#include "base/environment.h"

#include <cstdlib>

#ifdef _WIN32
#include "base/utf8path.h"
#endif

namespace spectrane {

std::optional<std::string> EnvironmentText(const char* name) {
#ifdef _WIN32
  const std::string narrow = name;
  const wchar_t* const value = ::_wgetenv(std::wstring(narrow.begin(), narrow.end()).c_str());
  if (value == nullptr || *value == L'\0') return std::nullopt;
  return Utf8FromPath(std::filesystem::path(value));
#else
  const char* const value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return std::string(value);
#endif
}

}  // namespace spectrane
