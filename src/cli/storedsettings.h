#pragma once

#include <memory>

#include "base/setting.h"
#include "base/windowsettings.h"

class QCoreApplication;

namespace spectrane {

/// config.ini of the windows. A batch command reads it only: the windows write their defaults themselves.
class StoredSettings {
 public:
  StoredSettings();
  ~StoredSettings();
  StoredSettings(const StoredSettings&) = delete;
  StoredSettings& operator=(const StoredSettings&) = delete;

  Setting& File() { return file_; }
  /// What the windows would start with now.
  WindowSettings OfWindows();

 private:
  // The folder of the program, which may be that of the settings, is asked of it; serial ports need it too.
  std::unique_ptr<QCoreApplication> application_;
  Setting file_;
};

}  // namespace spectrane
