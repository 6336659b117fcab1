#pragma once

#include <optional>
#include <utility>

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
  /// Maximum, minimum and mean of a range. Yields.
  void ShowMaxMinAverageWindow() override;
  bool Offers(int command) const override;

  /// The range last asked for in the statistics [nm]; that of the points as long as none was.
  std::pair<double, double> MaxRange() const { return maxRange_.value_or(Document().WavelengthRange()); }
  void SetMaxRange(double start, double end) { maxRange_ = {start, end}; }

 protected:
  void PeakHeightChanged() override;
  std::pair<double, double> ReportRange() const override { return MaxRange(); }

 private:
  std::optional<std::pair<double, double>> maxRange_;
};

}  // namespace spectrane
