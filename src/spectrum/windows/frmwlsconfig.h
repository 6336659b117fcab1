#pragma once

#include <QDialog>

#include <array>
#include <vector>

#include "app/ground/optionrows.h"
#include "spectrum/scanscale.h"
#include "spectrum/scansettings.h"

class QButtonGroup;
class QComboBox;
class QGroupBox;

namespace spectrane {

class NumberField;

/// The options of the spectrum window: what it shows and between which ends, how, and what a report holds.
class FrmWLSConfig : public QDialog {
  Q_OBJECT

 public:
  FrmWLSConfig(MainWindow& frame, const ScanSettings& settings);

  /// What was confirmed, or what it began with.
  const ScanSettings& Settings() const { return settings_; }

  void accept() override;

 private:
  struct List {
    QComboBox* Box;
    std::int32_t WLSOption::*Field;
  };

  QGroupBox* BuildMode(DialogParts& parts);
  QGroupBox* BuildScale(DialogParts& parts);
  QGroupBox* BuildWavelength(DialogParts& parts);
  QGroupBox* BuildSpeed(DialogParts& parts);
  QGroupBox* BuildDisplay(DialogParts& parts);
  QGroupBox* BuildData(DialogParts& parts);
  QGroupBox* BuildPrint(DialogParts& parts);
  QComboBox* AddList(const QStringList& rows, std::int32_t WLSOption::*field);
  void SwitchMode(int mode);
  void ShowRange(ScanMode mode);
  bool TakeRange();
  bool TakeWavelengths();
  bool Refuse(NumberField& field, const QString& remark);

  MainWindow& frame_;
  ScanSettings settings_;
  ScanMode mode_;
  QButtonGroup* modes_;
  QButtonGroup* speeds_;
  NumberField* top_ = nullptr;
  NumberField* bottom_ = nullptr;
  QLabel* topUnit_ = nullptr;
  QLabel* bottomUnit_ = nullptr;
  NumberField* start_ = nullptr;
  NumberField* end_ = nullptr;
  QComboBox* printInterval_ = nullptr;
  QLabel* remark_ = nullptr;
  OptionRows<ScanSettings> rows_;
  std::vector<List> lists_;
  // What was typed for the modes that are not in force.
  std::array<std::array<QString, 2>, 4> typed_;
};

}  // namespace spectrane
