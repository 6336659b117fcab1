#include "app/ground/words.h"

#include "base/language.h"

namespace spectrane {

QString Words(int textId) {
  return QString::fromStdString(Text(textId));
}

QString Caption(int textId) {
  return Words(textId).trimmed();
}

QString WithAccessKey(const QString& caption, QSet<QChar>& used) {
  if (const qsizetype mark = caption.indexOf(u'&'); mark >= 0 && mark + 1 < caption.size()) {
    used.insert(caption[mark + 1].toUpper());
    return caption;
  }
  // The first letter of a word is found sooner than one inside it.
  for (const bool wordStart : {true, false}) {
    for (qsizetype i = 0; i < caption.size(); ++i) {
      const QChar letter = caption[i].toUpper();
      const bool starts = i == 0 || !caption[i - 1].isLetterOrNumber();
      if (!letter.isLetterOrNumber() || used.contains(letter) || starts != wordStart) continue;
      used.insert(letter);
      return QString(caption).insert(i, u'&');
    }
  }
  return caption;
}

QString PlainCaption(const QString& caption) {
  QString plain = caption;
  if (const qsizetype bracket = plain.indexOf(QStringLiteral("(&")); bracket >= 0) plain.remove(bracket, 4);
  plain.remove(u'&');
  plain.remove(QStringLiteral("..."));
  return plain.trimmed();
}

QString PlainWords(int textId) {
  return PlainCaption(Caption(textId));
}

}  // namespace spectrane
