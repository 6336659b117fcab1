#include "app/desktop/handovermessage.h"

#include <algorithm>
#include <QUtf8StringView>

namespace spectrane {
namespace {

constexpr const char* kTopicLine = "FormMain\n";
constexpr char kEndMark = '\0';

bool IsAbsolute(const QString& path) {
#ifdef _WIN32
  const auto slash = [](QChar c) { return c == u'/' || c == u'\\'; };
  const bool share = path.size() > 2 && slash(path[0]) && slash(path[1]);
  const bool drive = path.size() > 2 && path[0].isLetter() && path[1] == u':' && slash(path[2]);
  return share || drive;
#else
  return path.startsWith(u'/');
#endif
}

bool CanBeHandedOver(const QString& path) {
  const auto barred = [](QChar c) { return c == u'\n' || c == u'\r' || c == u'\0'; };
  return IsAbsolute(path) && std::none_of(path.begin(), path.end(), barred);
}

}  // namespace

QByteArray HandoverMessage(const QString& path) {
  if (!CanBeHandedOver(path)) return {};
  const QByteArray utf8 = path.toUtf8();
  // Halves of characters turn into something else on the way.
  if (QString::fromUtf8(utf8) != path) return {};
  const QByteArray message = kTopicLine + utf8 + kEndMark;
  return message.size() <= kMostMessageBytes ? message : QByteArray();
}

MessageState ReadHandoverMessage(const QByteArray& bytes, QString& path) {
  const QByteArray topic(kTopicLine);
  const qsizetype common = std::min(topic.size(), bytes.size());
  if (bytes.size() > kMostMessageBytes || bytes.first(common) != topic.first(common))
    return MessageState::Wrong;
  const qsizetype end = bytes.indexOf(kEndMark);
  if (end < 0) return bytes.size() < kMostMessageBytes ? MessageState::Unfinished : MessageState::Wrong;
  if (end + 1 != bytes.size()) return MessageState::Wrong;
  const QByteArray utf8 = bytes.sliced(topic.size(), end - topic.size());
  if (!QUtf8StringView(utf8).isValidUtf8()) return MessageState::Wrong;
  const QString received = QString::fromUtf8(utf8);
  if (!CanBeHandedOver(received)) return MessageState::Wrong;
  path = received;
  return MessageState::Whole;
}

}  // namespace spectrane
