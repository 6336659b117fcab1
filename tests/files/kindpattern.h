#pragma once

#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "files/filesupport.h"

namespace spectrane {

/// The make-up of a kind's blocks, told once more for the tests and independent of the program's tables.
/// Letters: L a 32-bit integer, I a 16-bit one, D a double, B a Boolean, Tn a text of n bytes, C the number
/// of records, R the range of wavelengths from which that number follows; *n repeats.
struct KindPattern {
  const char* Name;
  int FileType;
  const char* Option;
  std::size_t Spare;
  const char* Record;
};

inline const std::vector<KindPattern>& KindPatterns() {
  static const std::vector<KindPattern> patterns = {
      {"bas", 11, "T256 T128 C", 0, "L*3 D T256"},
      {"qua", 1, "T256*21 D*126 B*21 D*21 B*21 T256*21 L*2 D*5 B L D*4 T256 L D*4 L*12 B D*4 C", 2,
       "T256 D*5 T256"},
      {"tis", 2, "D L*3 I D*4 C L*3", 0, "L D"},
      {"wls", 3, "D*6 L*6 C L", 0, "L*3 D L"},
      {"wls2", 12, "D*6 L*6 C L", 0, "D*3"},
      {"mul", 4, "D*32 L C", 0, "D*17 T256"},
      {"dna", 5, "D*8 L*2 C", 0, "T256 D*7 T256"},
      {"bsl", 6, "R D L", 0, "D L*2"},
  };
  return patterns;
}

/// Files of any finite numbers and any bytes in the texts, as this program could have written them.
class RandomFiles {
 public:
  explicit RandomFiles(unsigned seed) : random_(seed) {}

  std::string Make(const KindPattern& kind, int records) {
    std::string bytes =
        HeaderBytes(kind.FileType) + Block(kind.Option, records) + std::string(kind.Spare, '\0');
    for (int i = 0; i < records; ++i) bytes += Block(kind.Record, records);
    return bytes;
  }
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

 private:
  std::string Any(std::size_t count) {
    std::string bytes;
    while (bytes.size() < count) bytes += static_cast<char>(random_());
    return bytes;
  }
  std::string Field(char letter, std::size_t width, int records) {
    switch (letter) {
      case 'L':
        return Any(4);
      case 'I':
        return Any(2);
      case 'B':
        return Below(2) == 0 ? Bytes({0, 0}) : Bytes({0xFF, 0xFF});
      case 'C':
        return Long(records);
      case 'R':
        return DoubleBytes(190.0 + records - 1) + DoubleBytes(190);
      case 'T':
        return Padded(Any(static_cast<std::size_t>(Below(static_cast<int>(width) + 1))), width);
      default:
        break;
    }
    std::string bytes = Any(8);
    // All bits of the exponent set would be an infinity or no number.
    if ((bytes[7] & 0x7F) == 0x7F) bytes[7] = 0x40;
    return bytes;
  }
  std::string Block(const char* pattern, int records) {
    std::istringstream words(pattern);
    std::string bytes;
    for (std::string word; words >> word;) {
      const std::size_t star = word.find('*');
      const int times = star == std::string::npos ? 1 : std::stoi(word.substr(star + 1));
      const std::size_t width = word[0] == 'T' ? std::stoul(word.substr(1)) : 0;
      for (int i = 0; i < times; ++i) bytes += Field(word[0], width, records);
    }
    return bytes;
  }

  std::mt19937 random_;
};

}  // namespace spectrane
