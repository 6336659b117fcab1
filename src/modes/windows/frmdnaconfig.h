#pragma once

#include <QDialog>

#include <array>
#include <optional>

#include "app/ground/mainwindow.h"
#include "modes/dna/dnasettings.h"

class QGroupBox;
class QRadioButton;

namespace spectrane {

class DialogParts;
class NumberField;
class PicFormular;

/// Options of the DNA/protein test: one of two fixed modes, or wavelengths and factors of one's own.
class FrmDNAConfig : public QDialog {
  Q_OBJECT

 public:
  /// `settings` is what the fields begin with. Where its values are not those of its mode it begins as Custom
  /// Mode.
  FrmDNAConfig(MainWindow& frame, const DNASettings& settings);

  /// What was confirmed, or the beginning.
  const DNASettings& Settings() const { return settings_; }

 public slots:
  /// Takes the fields and stores the settings for later windows. A text that does not fit is told and stays
  /// in its field. Yields.
  void accept() override;

 private:
  void MakeFields();
  QGroupBox* MakeModes(DialogParts& parts);
  QGroupBox* MakeWavelengths(DialogParts& parts);
  QGroupBox* MakeFactors(DialogParts& parts);
  DNAMode ModeChosen() const;
  /// Fills the fields with the values of the mode that is chosen now, and lets the person into them or not.
  void ShowMode();
  void ShowValues(const DNAValues& values);
  void ShowFormula();
  /// What the fields say; a text that is no number stands for what was there before.
  DNAValues ValuesTyped() const;
  bool TakeFields(DNAValues& values);

  MainWindow& frame_;
  DNASettings settings_;
  DNAMode shown_;
  // What was typed in Custom Mode before another one was chosen.
  std::optional<DNAValues> custom_;
  std::array<QRadioButton*, 3> modes_ = {};
  std::array<NumberField*, 3> wavelengths_ = {};
  std::array<NumberField*, 4> factors_ = {};
  PicFormular* formula_;
};

}  // namespace spectrane
