#pragma once

#include <QDialog>

#include <vector>

#include "spectrum/windows/processwindow.h"

class QCheckBox;
class QGroupBox;
class QVBoxLayout;

namespace spectrane {

class ColourButton;
class DialogParts;
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
  struct Check {
    QCheckBox* Box;
    bool ScanSettings::*Field;
  };
  struct Colour {
    ColourButton* Button;
    std::int32_t ScanSettings::*Field;
  };

  QGroupBox* BuildColours(DialogParts& parts);
  QGroupBox* BuildPeaks(DialogParts& parts);
  void AddCheck(DialogParts& parts, QVBoxLayout& column, const char* name, int textId,
                bool ScanSettings::*field);

  MainWindow& frame_;
  ProcessPlan plan_;
  ProcessSettings settings_;
  SpectrumRows* rows_;
  ScaleFields* scale_;
  std::vector<Check> checks_;
  std::vector<Colour> colours_;
};

}  // namespace spectrane
