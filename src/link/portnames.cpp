#include "link/portnames.h"

#include <cstddef>

namespace spectrane {

bool PortNameBefore(const std::string& a, const std::string& b) {
  const auto stem = [](const std::string& name) { return name.find_last_not_of("0123456789") + 1; };
  const std::size_t endA = stem(a);
  const std::size_t endB = stem(b);
  const int names = a.compare(0, endA, b, 0, endB);
  if (names != 0) return names < 0;
  const std::size_t digitsA = a.size() - endA;
  const std::size_t digitsB = b.size() - endB;
  return digitsA != digitsB ? digitsA < digitsB : a < b;
}

}  // namespace spectrane
