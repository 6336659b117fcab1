#pragma once

#include <QWidget>

#include "simulator/compartment.h"

namespace spectrane {

/// The beam path from left to right: lamp, monochromator, cuvette, detector, and below them the eight cells
/// when the sampler is fitted. Every colour has its word beside it.
class BeamPicture : public QWidget {
  Q_OBJECT

 public:
  explicit BeamPicture(QWidget* parent = nullptr);

  void ShowState(const CompartmentState& state);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  /// One of the four stations: where it is drawn, and where its words go.
  struct Station {
    QRectF Body;
    QRectF Words;
  };

  double HeightBeside() const;
  Station StationAt(std::size_t index) const;
  QRectF Glass() const;
  bool HasLight() const;
  QColor BeamColour(double share) const;
  void DrawLiquid(QPainter& painter) const;
  void DrawBeam(QPainter& painter) const;
  void DrawLamp(QPainter& painter) const;
  void DrawMonochromator(QPainter& painter) const;
  void DrawCuvette(QPainter& painter) const;
  void DrawDetector(QPainter& painter) const;
  void DrawCells(QPainter& painter) const;
  void DrawWords(QPainter& painter, const Station& station, const QString& first,
                 const QString& second) const;

  CompartmentState state_;
};

}  // namespace spectrane
