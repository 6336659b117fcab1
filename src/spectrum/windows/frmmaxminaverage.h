#pragma once

#include <QDialog>

#include "base/displayformats.h"
#include "spectrum/statistics.h"

class QLabel;

namespace spectrane {

class FrmWLS;
class NumberField;

/// Maximum, minimum and mean of a range of the spectrum window's spectrum.
class FrmMaxMinAverage : public QDialog {
  Q_OBJECT

 public:
  /// Both must outlive the dialog. The range is kept in the window.
  FrmMaxMinAverage(FrmWLS& document, const DisplayFormats& formats, QWidget* parent);

 private:
  void Caculate();
  void ShowResults();
  QString LineOf(const SpectrumValues& values, bool withWavelength) const;

  FrmWLS& document_;
  const DisplayFormats& formats_;
  NumberField* start_;
  NumberField* end_;
  QLabel* max_;
  QLabel* min_;
  QLabel* average_;
};

}  // namespace spectrane
