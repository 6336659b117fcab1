#include "modes/windows/fittext.h"

#include <QList>

#include <algorithm>
#include <string>

namespace spectrane {

QString FitText(const QString& text, qsizetype width) {
  QList<uint> characters = text.toUcs4();
  characters.resize(std::min(characters.size(), width));
  for (uint& c : characters) {
    if (c == '\n' || c == '\r' || c == '\t' || c == 0x2028 || c == 0x2029) c = ' ';
  }
  static_assert(sizeof(uint) == sizeof(char32_t));
  std::u32string fit(characters.begin(), characters.end());
  return QString::fromStdU32String(fit);
}

}  // namespace spectrane
