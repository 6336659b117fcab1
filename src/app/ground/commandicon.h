#pragma once

#include <QByteArray>
#include <QIcon>
#include <QPixmap>
#include <QSize>
#include <QString>

namespace spectrane {

/// The picture of a command, by its number; a null icon for a command that has none. It is drawn when first
/// painted, in the text colour of the application's palette of that moment.
QIcon CommandIcon(int command);

/// Name of the picture file of a command, without folder and ending; empty for a command that has none.
QString CommandIconName(int command);

/// The program's own icon, in its own colours on every palette.
QIcon ApplicationIcon();

/// One of the larger pictures ("about1" to "about3", "logo", "background"), as large as fits into `size`
/// [logical pixels] at its own proportions; a null picture for another name or an empty size.
QPixmap Picture(const QString& name, QSize size, double devicePixelRatio);

/// The SVG file of the icon of a kind of data file ("bas" and so on), or of the program itself ("").
QByteArray FileTypeIcon(const QString& ending);

}  // namespace spectrane
