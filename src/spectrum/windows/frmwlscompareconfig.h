#pragma once

#include <QDialog>

#include "spectrum/comparesettings.h"

class QCheckBox;
class QGroupBox;

namespace spectrane {

class ColourButton;
class DialogParts;
class MainWindow;
class ScaleFields;
class SpectrumRows;

/// The options of the comparison: ten files with their colours, and how they are shown. It stores nothing.
class FrmWLSCompareConfig : public QDialog {
  Q_OBJECT

 public:
  FrmWLSCompareConfig(MainWindow& frame, const CompareSettings& settings);

  /// What was confirmed, or what it began with.
  const CompareSettings& Settings() const { return settings_; }

  void accept() override;

 private:
  QGroupBox* BuildDisplay(DialogParts& parts);

  MainWindow& frame_;
  CompareSettings settings_;
  SpectrumRows* rows_;
  ScaleFields* scale_;
  QCheckBox* grid_ = nullptr;
  QCheckBox* dataTable_ = nullptr;
  ColourButton* scaleColour_ = nullptr;
};

}  // namespace spectrane
