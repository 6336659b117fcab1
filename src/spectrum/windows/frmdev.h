#pragma once

#include "app/ground/commands.h"
#include "spectrum/windows/processwindow.h"

namespace spectrane {

/// A spectrum and its first derivative. Higher ones are derivatives of derivatives.
class FrmDev : public ProcessWindow {
  Q_OBJECT

 public:
  static constexpr int kCommand = kSpectrumDerivative;
  explicit FrmDev(MainWindow& frame);

  /// Looks at the home view as well.
  void SetDisplayMode(std::int32_t mode) override;

 protected:
  ProcessedSpectrum Calculate(const std::vector<const Spectrum*>& sources) const override;
};

}  // namespace spectrane
