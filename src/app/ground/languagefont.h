#pragma once

#include <QFont>

class QWidget;

namespace spectrane {

/// The font of all window text, as SelectLanguage() chose it.
const QFont& LanguageFont();
/// Chooses the font from the system's locale; once, before the first window.
void SelectLanguage();
/// Gives a window and its controls the language font; the first step of every window.
void ApplyLanguageFont(QWidget& window);

}  // namespace spectrane
