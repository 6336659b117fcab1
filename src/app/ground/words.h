#pragma once

#include <QSet>
#include <QString>

namespace spectrane {

/// The text of that number for the screen.
QString Words(int textId);
/// A caption of the table for a menu or a button: without what only laid out older menus (a tab or blanks at
/// the end), its "&" kept as the access key.
QString Caption(int textId);
/// `caption` with an access key that `used` does not hold yet, which is added; a caption that has its own
/// keeps it. Without a free letter the caption stays as it is.
QString WithAccessKey(const QString& caption, QSet<QChar>& used);
/// `caption` as plain words: without the access key, its brackets and dots.
QString PlainCaption(const QString& caption);
/// The caption of that number as plain words.
QString PlainWords(int textId);

}  // namespace spectrane
