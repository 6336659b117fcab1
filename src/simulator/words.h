#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace spectrane {

/// The words of a line; blanks, tabs and line ends part them.
inline std::vector<std::string> Words(std::string_view line) {
  constexpr std::string_view Blanks = " \t\r\n";
  std::vector<std::string> words;
  std::size_t begin = line.find_first_not_of(Blanks);
  while (begin != std::string_view::npos) {
    const std::size_t end = line.find_first_of(Blanks, begin);
    words.emplace_back(line.substr(begin, end - begin));
    begin = line.find_first_not_of(Blanks, end);
  }
  return words;
}

}  // namespace spectrane
