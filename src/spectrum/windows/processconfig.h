#pragma once

#include <QDialog>

#include "app/ground/optionrows.h"
#include "spectrum/windows/processplan.h"

class QGroupBox;

namespace spectrane {

class ScaleFields;
class SpectrumRows;

/// The options of a window that processes spectra (`FrmSmoothConfig`, `FrmDevConfig`, `FrmCaculateConfig`):
/// where the sources come from, which two of them can be chosen, and how all is shown. It stores nothing.
class ProcessConfig : public QDialog {
  Q_OBJECT

 public:
  ProcessConfig(MainWindow& frame, const ProcessPlan& plan, const ProcessSettings& settings);

  /// What was confirmed, or what it began with.
  const ProcessSettings& Settings() const { return settings_; }

  void accept() override;

 private:
  QGroupBox* BuildColours(DialogParts& parts);

  MainWindow& frame_;
  ProcessPlan plan_;
  ProcessSettings settings_;
  OptionRows<ScanSettings> shown_;
  SpectrumRows* rows_;
  ScaleFields* scale_;
};

}  // namespace spectrane
