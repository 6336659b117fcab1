#include "app/ground/languagefont.h"

#include <QWidget>

#include "base/language.h"

namespace spectrane {
namespace {

QFont& Chosen() {
  static QFont font;
  return font;
}

}  // namespace

const QFont& LanguageFont() {
  return Chosen();
}

void SelectLanguage() {
  const UIFont wanted = FontFor(GetLanguageIndex());
  // A face that is missing gives way to the platform's own, at the same point size.
  Chosen() = QFont(QString::fromStdString(wanted.Name), wanted.Size);
}

void ApplyLanguageFont(QWidget& window) {
  window.setFont(Chosen());
}

}  // namespace spectrane
