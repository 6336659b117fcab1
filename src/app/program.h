#pragma once

#include <QString>
#include <QStringList>

namespace spectrane {

/// The program entry: file types, language font, main window, New File guide. The result is the exit status.
int Main(int argc, char** argv);

/// The one data file that a command line may name, absolute; the quotation marks that a file association puts
/// around it are taken off. Empty without one.
QString FileOfCommandLine(const QStringList& arguments);

}  // namespace spectrane
