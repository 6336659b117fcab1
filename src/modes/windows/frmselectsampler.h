#pragma once

#include <QDialog>

#include <functional>

#include "app/ground/mainwindow.h"

class QComboBox;
class QLabel;
class QPushButton;

namespace spectrane {

/// Asks which position of the automatic sampler holds what is measured next, and moves the sampler there.
/// The caller owns the instrument (InstrumentRun) and has stopped the live reading.
class FrmSelectSampler : public QDialog {
  Q_OBJECT

 public:
  explicit FrmSelectSampler(MainWindow& frame);

 public slots:
  /// Asks the instrument where the sampler stands before the dialog comes up. Yields.
  int exec() override;
  /// Moves the sampler to the position chosen. When it does not go there, the dialog stays, says so in itself
  /// and in the status bar, and the list is at its first entry. Yields.
  void accept() override;
  /// Nothing closes the dialog while the instrument is being spoken to.
  void done(int result) override;

 private:
  void LoadPosition();
  /// Nothing can be pressed while `work` speaks to the instrument. Yields.
  bool WithInstrument(const std::function<bool()>& work);
  void SetBusy(bool busy);
  void Tell(int textId);

  MainWindow& frame_;
  QComboBox* positions_;
  QLabel* state_;
  bool busy_ = false;
  bool told_ = false;
};

}  // namespace spectrane
