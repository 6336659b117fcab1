#pragma once

#include <QDialog>

#include "app/ground/mainwindow.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QTabWidget;

namespace spectrane {

class DialogParts;

/// The general options of the program. Nothing changes before OK.
class FrmOption : public QDialog {
  Q_OBJECT

 public:
  explicit FrmOption(MainWindow& frame);

 public slots:
  /// Takes everything over at once and stores it. What config.ini cannot take holds until the program ends;
  /// the status bar says so.
  void accept() override;

 private:
  void AddInformationPage(DialogParts& parts);
  void AddPrecisionPage(DialogParts& parts);
  void AddPortPage(DialogParts& parts);
  void AddStylePage(DialogParts& parts);
  void LoadValues();

  void TakePortSearch();
  void TakePrecision();
  void TakeStyle();
  void Store(const char* section, const char* key);

  MainWindow& frame_;
  QTabWidget* pages_;
  QLineEdit* operator_;
  QLineEdit* department_;
  QRadioButton* standard_;
  QRadioButton* high_;
  QCheckBox* searchPorts_;
  QLabel* portLabel_ = nullptr;
  QComboBox* ports_;
  QComboBox* styles_;
};

}  // namespace spectrane
