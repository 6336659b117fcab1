#pragma once

#include <QString>
#include <string>
#include <vector>

#include "app/desktop/associations.h"

class QSettings;

namespace spectrane {

/// A desktop entry that starts `programPath`; `windowClass` is the class name its windows carry. Empty for a
/// path that cannot stand in such a file.
std::string DesktopEntry(const std::string& programPath, const std::string& windowClass);

/// The description of all types for the shared MIME database: ending, and content by the fixed words of the
/// header.
std::string MimePackage();

/// Where an icon belongs below the folder of a theme; empty for one of no known kind.
std::string ThemePath(const DesktopIcon& icon);

/// One value of the registry: the default value of `Key` below the classes root, folders parted by "/".
struct RegistryValue {
  QString Key;
  QString Value;
};

std::vector<RegistryValue> RegistryValues(const QString& programPath);
/// Writes those that differ. True when there were any.
bool WriteRegistryValues(QSettings& classes, const std::vector<RegistryValue>& values);

}  // namespace spectrane
