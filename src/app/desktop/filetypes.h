#pragma once

#include <QString>
#include <vector>

#include "app/desktop/associations.h"

namespace spectrane {

/// Tells the desktop, for this user alone, which files the program opens and with which icons. Only what
/// differs from what is there already is written, each file whole or not at all; the desktop's own tools are
/// then started to take it in, and not waited for. Every failure is ignored: the program runs without.
/// `programPath`: the running program's own file, absolute. Set the application's name before, and leave it:
/// the desktop entry tells by it which windows are the program's.
void RegisterFileTypes(const QString& programPath, const std::vector<DesktopIcon>& icons);

}  // namespace spectrane
