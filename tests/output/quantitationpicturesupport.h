#pragma once

#include <QImage>
#include <QPainter>

#include "modes/quantitation/quantitationsupport.h"
#include "output/pixels.h"
#include "output/quantitationpicture.h"

namespace spectrane {

inline QuaOption FittedStandards(const Standards& standards, std::int32_t method,
                                 std::int32_t wavelengths = 1) {
  QuaOption qua = WithStandards(standards, method, wavelengths);
  qua.ConcUnit = "mg/ml";
  CreateCurve(qua);
  return qua;
}

inline QImage PictureOf(const QuaOption& qua, const QSize& size,
                        const QuantitationPictureOptions& options = {}, double dots = 1) {
  QImage image((QSizeF(size) * dots).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(dots);
  image.fill(Qt::magenta);
  QPainter painter(&image);
  PaintQuantitation(painter, QRectF(QPointF(), QSizeF(size)), qua, DisplayFormats(), options);
  return image;
}

}  // namespace spectrane
