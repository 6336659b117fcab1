#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace spectrane::testing_workbook {

/// What a shell command prints; a command that fails, fails the test.
inline std::string OutputOf(const std::string& command) {
  std::string text;
  std::FILE* const pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return {};
  std::array<char, 4096> piece;
  while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), pipe))
    text.append(piece.data(), size);
  EXPECT_EQ(::pclose(pipe), 0) << command;
  return text;
}

/// What the reader of another house finds in a workbook. It belongs to the Python of the system.
inline std::string WorkbookListing(const std::string& path) {
  return OutputOf("PYTHONIOENCODING=utf-8 /usr/bin/python3 " SPECTRANE_SOURCE
                  "/tests/output/workbook/readworkbook.py '" +
                  path + "'");
}

/// The number of `size` bytes at `at`, little-endian; reading beyond the end fails the test.
inline std::uint64_t NumberAt(std::string_view bytes, std::size_t at, std::size_t size) {
  if (at + size > bytes.size()) {
    ADD_FAILURE() << "beyond the end: " << at;
    return 0;
  }
  std::uint64_t value = 0;
  for (std::size_t i = size; i-- > 0;) value = (value << 8) | static_cast<unsigned char>(bytes[at + i]);
  return value;
}

}  // namespace spectrane::testing_workbook
