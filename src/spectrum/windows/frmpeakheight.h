#pragma once

#include <QDialog>

namespace spectrane {

class MainWindow;
class NumberField;

/// By how much a peak stands out: one number.
class FrmPeakHeight : public QDialog {
  Q_OBJECT

 public:
  FrmPeakHeight(MainWindow& frame, double height);

  /// The value confirmed last [Abs].
  double PeakHeight() const { return height_; }

  void accept() override;

 private:
  NumberField* field_;
  double height_;
};

}  // namespace spectrane
