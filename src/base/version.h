#pragma once

#include <string>
#include <string_view>

namespace spectrane {

struct Version {
  int Major = 0;
  int Minor = 0;
  int Revision = 0;
};

/// "major.minor.revision" in decimal; a part that is missing is 0.
constexpr Version VersionOf(std::string_view text) {
  Version version;
  int* const parts[] = {&version.Major, &version.Minor, &version.Revision};
  std::size_t part = 0;
  for (const char c : text) {
    if (c == '.') {
      if (++part == 3) break;
    } else if (c >= '0' && c <= '9') {
      *parts[part] = *parts[part] * 10 + (c - '0');
    }
  }
  return version;
}

/// The program's own version.
inline constexpr Version kVersion = VersionOf(SPECTRANE_VERSION);

/// The three numbers joined by ".".
inline std::string VersionText() {
  return std::to_string(kVersion.Major) + "." + std::to_string(kVersion.Minor) + "." +
         std::to_string(kVersion.Revision);
}

}  // namespace spectrane
