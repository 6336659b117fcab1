#pragma once

#include <QDialog>

#include <array>
#include <functional>

#include "app/ground/mainwindow.h"
#include "modes/quantitation/quantitationsettings.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLayout;
class QRadioButton;

namespace spectrane {

class DialogParts;
class NumberField;

/// Options of the quantitation: the curve, where its coefficients come from, and the wavelengths.
class FrmQuaConfig : public QDialog {
  Q_OBJECT

 public:
  /// Whether the document has records that it could not keep with these settings.
  using RecordsAtStake = std::function<bool(const QuantitationSettings&)>;

  /// `settings` is what the fields begin with; a number of a list that is none there begins with that of a
  /// first start. The operator's own unit is the one of config.ini where that has one. `discardsRecords` may
  /// be empty and is called as long as the dialog lives.
  FrmQuaConfig(MainWindow& frame, const QuantitationSettings& settings, RecordsAtStake discardsRecords);

  /// What was confirmed, or the beginning. Fields that the choices above them do not use keep their values.
  const QuantitationSettings& Settings() const { return settings_; }

 public slots:
  /// Takes all fields, asks when records would go, and stores the settings for later windows. A text that
  /// does not fit is told and stays in its field; a No leaves everything as typed. Yields.
  void accept() override;

 private:
  /// A line with a number, its label, and its unit (may be null).
  struct Entry {
    NumberField* Edit = nullptr;
    QLabel* Label = nullptr;
    QLabel* Unit = nullptr;
  };

  QLayout* MakeCurveForm(DialogParts& parts);
  QGroupBox* MakeCalibration(DialogParts& parts);
  QGroupBox* MakeWavelengths(DialogParts& parts);
  Entry MakeField(DialogParts& parts, const QString& name, const QString& caption, int characters);
  void OrderTabs();
  void LoadUnit();
  void LoadValues();
  /// Enables what the choices use and shows what is computed with it.
  void ShowUse();

  int FittingMethodShown() const;
  int WaveLengthsShown() const;
  QString UnitShown() const;
  /// False: a field was refused and the person was told.
  bool TakeFields(QuantitationSettings& settings);
  bool TakeUnit(QuantitationSettings& settings);
  bool TakeCoefficients(QuantitationSettings& settings);
  bool TakeWavelengths(QuantitationSettings& settings);

  MainWindow& frame_;
  QuantitationSettings settings_;
  RecordsAtStake discardsRecords_;
  QComboBox* methods_;
  QComboBox* units_;
  QString unitAtStart_;
  QRadioButton* standards_;
  QRadioButton* coefficients_;
  QComboBox* sampleNumbers_;
  QLabel* sampleNumberLabel_ = nullptr;
  std::array<Entry, 4> k_;
  QComboBox* wavelengthNumbers_;
  QLabel* formula_;
  std::array<Entry, 3> wavelengths_;
  std::array<Entry, 3> paras_;
};

}  // namespace spectrane
