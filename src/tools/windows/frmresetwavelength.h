#pragma once

#include "tools/upkeep.h"
#include "tools/windows/tooldialog.h"

namespace spectrane {

/// Runs the wavelength self-calibration of the instrument, which takes minutes and cannot be left.
class FrmResetWaveLength : public ToolDialog {
  Q_OBJECT

 public:
  explicit FrmResetWaveLength(MainWindow& frame);

 protected:
  void Load() override;

 private:
  void Start();
  void TellEnd(UpkeepEnd end);
};

}  // namespace spectrane
