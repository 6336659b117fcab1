#pragma once

#include <QDialog>

#include "app/ground/optionrows.h"
#include "modes/timescan/timescansettings.h"

class QButtonGroup;
class QComboBox;
class QGroupBox;
class QLabel;

namespace spectrane {

class NumberField;

/// The options of the time scan window: wavelength, times, what it shows and between which ends, and what a
/// report holds. OK stores them in config.ini, except for the peak value.
class FrmTSConfig : public QDialog {
  Q_OBJECT

 public:
  FrmTSConfig(MainWindow& frame, const TimeScanSettings& settings);

  /// What was confirmed, or what it began with.
  const TimeScanSettings& Settings() const { return settings_; }

  void accept() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QGroupBox* BuildWavelength(DialogParts& parts);
  QGroupBox* BuildTimes(DialogParts& parts);
  QGroupBox* BuildMode(DialogParts& parts);
  QGroupBox* BuildScale(DialogParts& parts);
  QGroupBox* BuildDisplay(DialogParts& parts);
  QGroupBox* BuildTable(DialogParts& parts);
  QGroupBox* BuildPrint(DialogParts& parts);
  bool Trans() const;
  void ShowMode();
  void ShowPoints();
  void CheckLater(NumberField& field);
  bool CheckWavelength();
  /// False: it was remarked on just now.
  bool CheckStart();
  void EndChanged();
  bool TakeFields();

  MainWindow& frame_;
  TimeScanSettings settings_;
  OptionRows<TimeScanSettings> rows_;
  QButtonGroup* modes_;
  NumberField* wavelength_;
  NumberField* start_;
  NumberField* end_;
  NumberField* top_;
  NumberField* bottom_;
  QComboBox* interval_;
  QLabel* topUnit_;
  QLabel* bottomUnit_;
  QLabel* points_;
  // Typed since it was looked at last.
  bool wavelengthTyped_ = false;
  bool startTyped_ = false;
};

}  // namespace spectrane
