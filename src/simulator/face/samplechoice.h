#pragma once

#include <QComboBox>

namespace spectrane {

struct Sample;

/// A list of all samples by plain name, each with its colour; the tool tip of an entry tells more.
class SampleChoice : public QComboBox {
  Q_OBJECT

 public:
  explicit SampleChoice(QWidget* parent = nullptr);

  /// Shows a sample without telling anybody. A list that is open stays as it is.
  void ShowSample(const Sample& sample);

 signals:
  /// The operator chose this sample, possibly the one that was there: it is filled in afresh.
  void Chosen(const QString& name);

 protected:
  /// Names that are too long end in an ellipsis.
  void paintEvent(QPaintEvent* event) override;
  /// A wheel that passes by must not change what stands in the beam.
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace spectrane
