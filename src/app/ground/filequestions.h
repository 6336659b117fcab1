#pragma once

#include <QString>

namespace spectrane {

class DocumentWindow;
class MainWindow;

/// `path` with `ending` (point included), unless it has it in whatever case.
QString WithEnding(const QString& path, const char* ending);

/// Asks what has to be asked before a file is written over: the program's settings and a file that another
/// window than `besides` shows are refused, any other that exists goes only on a Yes. Yields.
bool MayWriteTo(MainWindow& frame, const QString& path, const DocumentWindow* besides);

}  // namespace spectrane
