#include "spectrum/windows/frmsmooth.h"

#include "spectrum/smoothing.h"

namespace spectrane {

FrmSmooth::FrmSmooth(MainWindow& frame)
    : ProcessWindow(frame,
                    {"FrmSmooth", "FrmSmoothTabel", kCaption, 1311, 1, kSmoothSection, kSmoothSettingRows,
                     "FrmSmoothConfig", kCaption},
                    {}) {}

ProcessedSpectrum FrmSmooth::Calculate(const std::vector<const Spectrum*>& sources) const {
  return SmoothSpectrum(*sources[0]);
}

}  // namespace spectrane
