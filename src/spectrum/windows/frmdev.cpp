#include "spectrum/windows/frmdev.h"

#include "spectrum/derivative.h"

namespace spectrane {
namespace {

constexpr int kDevConfigTitle = 1178;
constexpr int kDerivativeTab = 1312;

}  // namespace

FrmDev::FrmDev(MainWindow& frame)
    : ProcessWindow(frame,
                    {"FrmDev", "FrmDevTabel", kCommand, kDerivativeTab, 1, kDevSection, kDevSettingRows,
                     "FrmDevConfig", kDevConfigTitle, false},
                    {}) {}

void FrmDev::SetDisplayMode(std::int32_t mode) {
  ProcessWindow::SetDisplayMode(mode);
  ChangedDocument().ShowHome();
}

ProcessedSpectrum FrmDev::Calculate(const std::vector<const Spectrum*>& sources) const {
  return DeriveSpectrum(*sources[0]);
}

}  // namespace spectrane
