#pragma once

#include "spectrum/windows/spectrumwindow.h"

namespace spectrane {

/// The window of a processed spectrum. Colours and choices are those of the spectrum window.
class FrmWLSVer2 : public SpectrumWindow {
  Q_OBJECT

 public:
  explicit FrmWLSVer2(MainWindow& frame);

  /// A spectrum from another window, point by point: wavelength [nm], transmittance [%T], absorbance. False,
  /// with nothing done, beyond what a spectrum can have.
  bool SetWLSRecord(std::int32_t index, double wavelength, double trans, double abs);
  bool SetWLSRecordNo(std::int32_t count);
  /// 1 Abs, 2 %T; anything else shows absorbance.
  void SetDisplayMode(std::int32_t mode);
};

}  // namespace spectrane
