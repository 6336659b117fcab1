#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace spectrane {

/// A path of the platform from UTF-8 text. Bytes that are no UTF-8 survive where file names are bytes;
/// elsewhere they throw std::filesystem::filesystem_error or std::system_error.
inline std::filesystem::path PathFromUtf8(std::string_view text) {
  return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

/// The way back.
inline std::string Utf8FromPath(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

}  // namespace spectrane
