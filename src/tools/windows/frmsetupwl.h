#pragma once

#include "tools/windows/wavelengthdialog.h"

namespace spectrane {

/// Sets the working wavelength, and takes a reference there.
class FrmSetupWL : public WavelengthDialog {
  Q_OBJECT

 public:
  explicit FrmSetupWL(MainWindow& frame);

 private:
  void TakeReference();
};

}  // namespace spectrane
