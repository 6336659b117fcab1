#include "fuzz/checks/desktop/handovercheck.h"

#include <algorithm>
#include <string_view>

#include "app/desktop/handovermessage.h"
#include "base/utf8text.h"

namespace spectrane::fuzz {
namespace {

constexpr std::size_t kMostBytes = 4096;
constexpr std::string_view kTopic = "FormMain\n";

bool IsUnicode(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const DecodedCharacter decoded = DecodeAt(text, at);
    if (decoded.Character == kNoCharacter) return false;
    at += decoded.Length;
  }
  return true;
}

bool IsAbsolutePath(std::string_view path) {
#ifdef _WIN32
  // Only told here as far as drives and shares go.
  const auto slash = [](char c) { return c == '/' || c == '\\'; };
  return path.size() > 2 && ((slash(path[0]) && slash(path[1])) || (path[1] == ':' && slash(path[2])));
#else
  return path.starts_with('/');
#endif
}

MessageState Reckoned(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, kTopic.size());
  if (bytes.size() > kMostBytes || head != kTopic.substr(0, head.size())) return MessageState::Wrong;
  const std::size_t end = bytes.find('\0');
  if (end == std::string_view::npos)
    return bytes.size() < kMostBytes ? MessageState::Unfinished : MessageState::Wrong;
  const std::string_view path = bytes.substr(kTopic.size(), end - kTopic.size());
  const bool right = end + 1 == bytes.size() && IsAbsolutePath(path) && IsUnicode(path) &&
                     path.find_first_of("\r\n") == std::string_view::npos;
  return right ? MessageState::Whole : MessageState::Wrong;
}

}  // namespace

std::string CheckHandover(Bytes input) {
  const QByteArray bytes(reinterpret_cast<const char*>(input.data()), static_cast<qsizetype>(input.size()));
  const std::string_view text(bytes.data(), input.size());
  const QString before = QStringLiteral("before");
  QString path = before;
  const MessageState state = ReadHandoverMessage(bytes, path);
  if (state != Reckoned(text)) return "another state";
  if (state != MessageState::Whole) return path == before ? "" : "a path without a message";
  if (path.toUtf8() != bytes.sliced(kTopic.size(), bytes.size() - static_cast<qsizetype>(kTopic.size()) - 1))
    return "another path";
  if (HandoverMessage(path) != bytes) return "the path makes another message";
  // One piece after the other: the message is whole with its last byte and not before.
  for (const qsizetype length : {qsizetype{0}, bytes.size() / 3, bytes.size() - 1}) {
    if (ReadHandoverMessage(bytes.first(length), path) != MessageState::Unfinished) return "whole too early";
  }
  if (ReadHandoverMessage(bytes + 'x', path) != MessageState::Wrong) return "took more than a message";
  return {};
}

}  // namespace spectrane::fuzz
