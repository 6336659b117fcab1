#include "spectrum/windows/frmsmooth.h"

#include "spectrum/smoothing.h"

namespace spectrane {
namespace {

constexpr int kSmoothTab = 1311;

}  // namespace

FrmSmooth::FrmSmooth(MainWindow& frame)
    : ProcessWindow(frame,
                    {"FrmSmooth", "FrmSmoothTabel", kCommand, kSmoothTab, 1, kSmoothSection,
                     kSmoothSettingRows, "FrmSmoothConfig", kCommand},
                    {}) {}

ProcessedSpectrum FrmSmooth::Calculate(const std::vector<const Spectrum*>& sources) const {
  return SmoothSpectrum(*sources[0]);
}

}  // namespace spectrane
