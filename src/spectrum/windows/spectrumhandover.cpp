// From one window to the next: the spectrum of a window becomes the source of another one.

#include "app/ground/words.h"
#include "spectrum/windows/frmdev.h"
#include "spectrum/windows/frmsmooth.h"

namespace spectrane {
namespace {

template <typename Window>
void HandOn(const SpectrumWindow& from, MainWindow& frame) {
  auto* const to = new Window(frame);
  const SpectrumDocument& source = from.Document();
  to->SetSourceFileName(from.NameAsSource());
  to->SetCaption(Words(Window::kCommand) + u'-' + from.Caption());
  for (std::int32_t i = 0; i < source.PointCount(); ++i) {
    const auto at = static_cast<std::size_t>(i);
    to->SetWLSRecord(i, source.Wavelength()[at], source.Trans()[at], source.Abs()[at]);
  }
  to->SetWLSRecordNo(source.PointCount());
  to->GetResultData();
  to->TakeLook(from);
  to->SetDisplayMode(static_cast<std::int32_t>(source.Mode()));
  frame.ShowChild(to);
  to->ShowPicture();
  to->DisplayRecordTable();
}

}  // namespace

void SpectrumWindow::mmuSpectrumSmooth() {
  HandOn<FrmSmooth>(*this, Frame());
}

void SpectrumWindow::mmuSpectrumDev() {
  HandOn<FrmDev>(*this, Frame());
}

}  // namespace spectrane
