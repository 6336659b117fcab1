#pragma once

#include <span>

#include "base/windowsettings.h"

namespace spectrane {

/// Section of config.ini for what the main window shows.
inline constexpr const char* kWindowSection = "Main Window";

/// A command that switches a part of the main window on and off, with the setting behind it.
struct ViewFlag {
  int Command;
  /// Key in that section.
  const char* Key;
  bool WindowSettings::*Field;
};

std::span<const ViewFlag> ViewFlags();
/// Null for a command that switches nothing.
const ViewFlag* ViewFlagOf(int command);

}  // namespace spectrane
