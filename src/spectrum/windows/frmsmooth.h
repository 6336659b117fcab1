#pragma once

#include "app/ground/commands.h"
#include "spectrum/windows/processwindow.h"

namespace spectrane {

/// A spectrum and what smoothing makes of it.
class FrmSmooth : public ProcessWindow {
  Q_OBJECT

 public:
  static constexpr int kCommand = kSpectrumSmooth;
  explicit FrmSmooth(MainWindow& frame);

 protected:
  ProcessedSpectrum Calculate(const std::vector<const Spectrum*>& sources) const override;
};

}  // namespace spectrane
