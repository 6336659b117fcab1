#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>
#include <vector>

namespace spectrane {

/// The icon of that name as storeddrawing.h keeps it: shares of its four colours.
QImage SharesOf(const QString& name, QSize size);

/// Paints every drawing among the program's resources in the sizes that screens want into `folder`, with the
/// list of them, icons.qrc.
bool WriteStoredDrawings(const QString& folder);

/// An icon file of these square pictures. The largest ones are packed, as their readers expect.
QByteArray IconFile(const std::vector<QImage>& pictures);

}  // namespace spectrane
