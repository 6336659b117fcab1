#pragma once

#include "spectrum/windows/processwindow.h"

namespace spectrane {

/// A spectrum and what smoothing makes of it.
class FrmSmooth : public ProcessWindow {
  Q_OBJECT

 public:
  static constexpr int kCaption = 405;
  explicit FrmSmooth(MainWindow& frame);

 protected:
  ProcessedSpectrum Calculate(const std::vector<const Spectrum*>& sources) const override;
};

}  // namespace spectrane
