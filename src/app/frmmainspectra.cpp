// Windows of processed spectra.

#include "app/frmmain.h"
#include "spectrum/windows/frmcaculate.h"
#include "spectrum/windows/frmwlscompare.h"

namespace spectrane {

void FrmMain::CompareSpectra() {
  auto* const window = new FrmWLSCompare(*this);
  ShowChild(window);
  window->ShowConfigWindow();
}

void FrmMain::SmoothSpectrum() {
  DocumentWindow* const source = ActiveForm();
  if (!source) return;
  source->mmuSpectrumSmooth();
  DocumentWindow* const smoothed = ActiveForm();
  if (smoothed && smoothed != source) smoothed->ShowConfigWindow();
}

void FrmMain::CombineSpectra(int command) {
  auto* const window = new FrmCaculate(*this, OperationOfCommand(command));
  ShowChild(window);
  window->ShowConfigWindow();
}

}  // namespace spectrane
