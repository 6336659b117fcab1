#pragma once

#include "spectrum/windows/spectrumwindow.h"

namespace spectrane {

/// The spectrum window: one measured spectrum, its curve, its tables. It measures nothing itself: the
/// procedures of a run are there and empty.
class FrmWLS : public SpectrumWindow {
  Q_OBJECT

 public:
  explicit FrmWLS(MainWindow& frame);

  /// Asks for the options. Yields.
  void ShowConfigWindow() override;
  bool Offers(int command) const override;

 protected:
  void PeakHeightChanged() override;
};

}  // namespace spectrane
