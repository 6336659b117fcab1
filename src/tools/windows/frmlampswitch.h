#pragma once

#include "tools/windows/wavelengthdialog.h"

namespace spectrane {

/// Sets the wavelength at which the instrument changes its lamps.
class FrmLampSwitch : public WavelengthDialog {
  Q_OBJECT

 public:
  explicit FrmLampSwitch(MainWindow& frame);
};

}  // namespace spectrane
