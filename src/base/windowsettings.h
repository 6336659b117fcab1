#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "base/settingrows.h"

namespace spectrane {

/// What config.ini holds for the program as a whole; the values here are the defaults of a first start.
struct WindowSettings {
  /// 0 standard, 1 high.
  std::int32_t PrecisionMode = 0;
  /// 0: search all ports; 1: use the stored port.
  std::int32_t PortSearchMode = 0;
  /// Fixed port, 1 to 8; 0: none is stored.
  std::int32_t PortID = 0;
  /// Name of the operator; reports print it.
  std::string Operator;
  std::string Department;

  /// 0 normal, 2 maximised.
  std::int32_t WindowState = 2;
  /// Used in the normal state only; 0: the window's own size.
  std::int32_t WindowHeight = 0;
  std::int32_t WindowWidth = 0;
  /// Index into the list of command bar styles.
  std::int32_t MenuStyle = 2;
  bool MainToolbar = true;
  bool OperateToolbar = true;
  bool SpectrumToolbar = true;
  bool DataDisplayToolbar = true;
  bool ExpandButton = true;
  bool TabWorkspace = true;
  bool StatusToolbar = true;
  bool BigIcon = false;

  std::string FilePath;
  std::string OpenFilePath;
  /// File type number that the New File guide chose last, 1 to 6; 0: none yet.
  std::int32_t NewFileType = 0;
  std::string BaselinePath;

  /// Cell of the blank on the automatic sampler, 1 to 8.
  std::int32_t SamplerZeroPosition = 1;
  /// Which cells are in use; entry i belongs to cell i, entry 0 is not used.
  std::array<bool, 9> SamplerPositions = {true, true, true, true, true, true, true, true, true};
};

/// The keys of WindowSettings, in the order they are read.
std::span<const SettingRow<WindowSettings>> WindowSettingRows();
/// The row of a field's key; names as in the file. Throws std::out_of_range for a key that is not in the
/// table.
const SettingRow<WindowSettings>& WindowSettingRow(std::string_view section, std::string_view key);

/// Reads all keys into `window`, whose present values are the defaults (the size and state the window comes
/// up with); an empty BaselinePath becomes Baseline.bsl in `applicationFolder` first. Defaults of missing
/// keys are written back with one replacement of the file. False: they could not be written; the fields are
/// right all the same.
bool LoadWindowSettings(Setting& settings, const std::string& applicationFolder, WindowSettings& window);
/// Writes the field of one key back. False: as Setting::PutSetting.
bool StoreWindowSetting(Setting& settings, std::string_view section, std::string_view key,
                        WindowSettings& window);

}  // namespace spectrane
