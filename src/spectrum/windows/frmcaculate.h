#pragma once

#include "spectrum/calculation.h"
#include "spectrum/windows/processwindow.h"

namespace spectrane {

/// The operation that a command of the main window stands for.
SpectrumOperation OperationOfCommand(int command);

/// Two files and what adding, subtracting, multiplying or dividing them point by point gives, on the points
/// of the first, where both have some. It carries the icon of its operation.
class FrmCaculate : public ProcessWindow {
  Q_OBJECT

 public:
  FrmCaculate(MainWindow& frame, SpectrumOperation operation);

  SpectrumOperation Operation() const { return operation_; }
  /// Reads a measured spectrum. A fault leaves no source there. Nothing that is shown changes.
  FileFault LoadSource(const QString& path, std::size_t index);

 protected:
  ProcessedSpectrum Calculate(const std::vector<const Spectrum*>& sources) const override;
  void OptionsChanged() override;
  QString EmptyHint() const override;
  std::optional<ExportSheet> MakeSheet() override;

 private:
  SpectrumOperation operation_;
};

}  // namespace spectrane
