#pragma once

#include <QDialog>

#include <array>
#include <functional>

#include "app/ground/mainwindow.h"
#include "modes/multi/multisettings.h"

class QComboBox;
class QGridLayout;
class QLabel;

namespace spectrane {

class DialogParts;
class NumberField;

/// Options of the multi wavelength test: how many wavelengths there are, each of them, and its coefficient.
class FrmMultiConfig : public QDialog {
  Q_OBJECT

 public:
  /// Whether the document has samples that these settings do not match.
  using SamplesAtStake = std::function<bool(const MultiSettings&)>;

  /// `settings` is what the fields begin with; a number of wavelengths that none can be begins with that of a
  /// first start. `mismatches` may be empty and is called as long as the dialog lives.
  FrmMultiConfig(MainWindow& frame, const MultiSettings& settings, SamplesAtStake mismatches);

  /// What was confirmed, or the beginning. Wavelengths that are not in use keep their entries.
  const MultiSettings& Settings() const { return settings_; }

 public slots:
  /// Takes all fields in use, says when the samples do not match them, and stores the settings for later
  /// windows. A text that does not fit is told and stays in its field. Yields.
  void accept() override;

 private:
  struct Line {
    QLabel* Label = nullptr;
    NumberField* WaveLength = nullptr;
    NumberField* Parameter = nullptr;
  };

  QGridLayout* MakeTable(DialogParts& parts);
  Line MakeLine(DialogParts& parts, int index);
  void LoadValues();
  void ShowUse();
  bool TakeFields(MultiSettings& settings);

  MainWindow& frame_;
  MultiSettings settings_;
  SamplesAtStake mismatches_;
  QComboBox* numbers_;
  std::array<Line, kMostMultiWavelengths> lines_;
};

}  // namespace spectrane
