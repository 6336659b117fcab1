#pragma once

#include <optional>
#include <QByteArray>
#include <QString>

namespace spectrane {

// How one copy of the program hands a file over to another. Over one connection goes one message and one
// answer:
//
//   message   "FormMain" LF             the topic
//             absolute path in UTF-8    without LF, CR and NUL
//             NUL                       the end mark; nothing may follow
//   answer    "OK" LF                   the path was taken; the sender ends the connection
//
// A connection that ends without the answer has handed nothing over.

/// Most bytes of a message, end mark included.
inline constexpr qsizetype kMostMessageBytes = 4096;
inline constexpr const char* kHandoverAnswer = "OK\n";

/// Empty for a path that cannot be handed over: relative, empty, too long, with a line end in it, or no
/// Unicode.
QByteArray HandoverMessage(const QString& path);

enum class MessageState {
  /// May become a message with more bytes.
  Unfinished,
  Whole,
  /// Will never be one.
  Wrong,
};

/// What the bytes that came in so far are. Whole: `path` has the file's path, in the form that was sent.
MessageState ReadHandoverMessage(const QByteArray& bytes, QString& path);

}  // namespace spectrane
