#pragma once

#include <QDialog>

#include "app/ground/mainwindow.h"

namespace spectrane {

class NumberField;

/// Options of the photometry test: its wavelength.
class FrmBasicConfig : public QDialog {
  Q_OBJECT

 public:
  /// `wavelength` [nm] is what the field begins with.
  FrmBasicConfig(MainWindow& frame, double wavelength);

  /// [nm] What was confirmed, or the beginning.
  double WaveLength() const { return wavelength_; }

 public slots:
  /// Takes the field and stores it for later windows; a text that is no wavelength of the instrument is told
  /// and stays in the field. Yields.
  void accept() override;

 private:
  MainWindow& frame_;
  double wavelength_;
  NumberField* field_ = nullptr;
};

}  // namespace spectrane
