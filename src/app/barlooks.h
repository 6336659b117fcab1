#pragma once

#include <QPalette>
#include <QString>
#include <QStringList>

namespace spectrane {

/// Names of the command bar looks, in the order of their numbers (`Menu Style`).
const QStringList& BarLookNames();
/// The style sheet of the main window for a look, mixed from the palette's own colours so that it holds on
/// light and on dark ones. A number outside the list gives the first look.
QString BarLookSheet(int look, const QPalette& palette);

}  // namespace spectrane
