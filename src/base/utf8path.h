#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

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

/// The same file, under whatever name. False when one of two names leads nowhere.
inline bool SameFile(const std::string& one, const std::string& other) {
  std::error_code fault;
  return one == other || std::filesystem::equivalent(PathFromUtf8(one), PathFromUtf8(other), fault);
}

}  // namespace spectrane
