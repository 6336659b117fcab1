#pragma once

#include <QWidget>

#include <array>

#include "simulator/compartment.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace spectrane {

class SampleChoice;

/// A part of the window: shows the state and asks for commands of the prompt.
class Page : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;
  virtual void ShowState(const CompartmentState& state) = 0;

 signals:
  void Wanted(const QString& command);

 protected:
  /// A check box that asks for "COMMAND yes" or "COMMAND no"; the words are given.
  QCheckBox* MakeSwitch(const char* name, const QString& label, const QString& command, const QString& yes,
                        const QString& no);
  QPushButton* MakeButton(const char* name, const QString& label, const QString& hint);
};

/// The eight cells: what is in them, and which one stands in the beam.
class SamplerPage : public Page {
  Q_OBJECT

 public:
  explicit SamplerPage(QWidget* parent = nullptr);
  void ShowState(const CompartmentState& state) override;

 private:
  QCheckBox* fitted_;
  std::array<QLabel*, InstrumentModel::Cells> labels_{};
  std::array<SampleChoice*, InstrumentModel::Cells> choices_{};
  QLabel* words_;
};

/// Lamps, wavelength, gain and slit.
class InstrumentPage : public Page {
  Q_OBJECT

 public:
  explicit InstrumentPage(QWidget* parent = nullptr);
  void ShowState(const CompartmentState& state) override;

 private:
  QLabel* MakeValue(const char* name, const QString& label);

  QLabel* wavelength_;
  QLabel* slit_;
  QLabel* gain_;
  QLabel* absorbance_;
  QLabel* tungsten_;
  QLabel* deuterium_;
  QCheckBox* tungstenDead_;
  QCheckBox* deuteriumDead_;
  QCheckBox* noise_;
};

/// What the operator can let go wrong.
class FaultPage : public Page {
  Q_OBJECT

 public:
  explicit FaultPage(QWidget* parent = nullptr);
  void ShowState(const CompartmentState& state) override;

 private:
  void PlayFault();

  QComboBox* kind_;
  QComboBox* request_;
  QPushButton* clear_;
  QLabel* pending_;
  QCheckBox* jammed_;
  QCheckBox* busy_;
};

/// The line: where a program finds it, whether one is there, and the cable.
class LinePanel : public Page {
  Q_OBJECT

 public:
  explicit LinePanel(QWidget* parent = nullptr);
  void ShowState(const CompartmentState& state) override;

 private:
  QLineEdit* path_;
  QPushButton* copy_;
  QPushButton* cable_;
  QLabel* program_;
  QLabel* request_;
  bool plugged_ = false;
};

}  // namespace spectrane
