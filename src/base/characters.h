#pragma once

namespace spectrane {

constexpr bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

}  // namespace spectrane
