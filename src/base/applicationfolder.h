#pragma once

#include <string>

namespace spectrane {

/// The program's id on the desktop: name of its desktop entry, of its icon and of its package data, and what
/// QGuiApplication::setDesktopFileName() takes.
inline constexpr const char* kDesktopId = "org.spectrane.Spectrane";

/// The folder of config.ini and the other files the program keeps for itself, absolute, in UTF-8: what
/// SPECTRANE_HOME names; else `executableFolder` when it holds a config.ini, or can be written and no
/// installer put the program there; else the user's configuration folder (`executableFolder` once more for a
/// user who has none). The folder is created when it is missing; when that fails the path is given all the
/// same, and nothing can be stored there.
std::string ApplicationFolder(const std::string& executableFolder);

/// Creates a folder with those above it. True when it is there afterwards.
bool EnsureFolder(const std::string& folder);

}  // namespace spectrane
