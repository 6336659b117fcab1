#pragma once

#include <memory>
#include <span>
#include <string>

#include "base/setting.h"
#include "base/settingrows.h"
#include "base/windowsettings.h"

class QCoreApplication;

namespace spectrane {

/// Takes what `file` has of a window's settings. Read only: a batch command leaves the defaults of the
/// windows to the windows.
template <typename Settings>
void ReadStored(Setting& file, std::span<const SettingRow<Settings>> rows, Settings& settings) {
  for (const SettingRow<Settings>& row : rows) {
    const std::string text = file.GetSetting(row.Section, row.Key);
    if (!text.empty()) TakeSetting(row, text, settings);
  }
}

/// config.ini of the windows. A batch command reads it only: the windows write their defaults themselves.
class StoredSettings {
 public:
  StoredSettings();
  ~StoredSettings();
  StoredSettings(const StoredSettings&) = delete;
  StoredSettings& operator=(const StoredSettings&) = delete;

  Setting& File() { return file_; }
  /// What the windows would start with now.
  WindowSettings StartSettings();

 private:
  // The folder of the program, which may be that of the settings, is asked of it; serial ports need it too.
  std::unique_ptr<QCoreApplication> application_;
  Setting file_;
};

}  // namespace spectrane
