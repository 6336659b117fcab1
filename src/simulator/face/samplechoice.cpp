#include "simulator/face/samplechoice.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QPixmap>
#include <QStylePainter>
#include <QWheelEvent>

#include "simulator/samplecolour.h"
#include "simulator/samples.h"

namespace spectrane {
namespace {

constexpr int SwatchSize = 14;
constexpr int IconGap = 4;
constexpr int VisibleEntries = 18;

QIcon Swatch(const Sample& sample, qreal ratio) {
  QPixmap picture(QSize(SwatchSize, SwatchSize) * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  const ScreenColour colour = ColourOf(sample);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(128, 128, 128), 1.0));
  painter.setBrush(QColor(colour.Red, colour.Green, colour.Blue));
  painter.drawRoundedRect(QRectF(1.5, 1.5, SwatchSize - 3, SwatchSize - 3), 2, 2);
  painter.end();
  return QIcon(picture);
}

}  // namespace

SampleChoice::SampleChoice(QWidget* parent) : QComboBox(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setMaxVisibleItems(VisibleEntries);
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(10);
  setIconSize({SwatchSize, SwatchSize});
  for (const Sample& sample : AllSamples()) {
    addItem(Swatch(sample, devicePixelRatioF()), QString::fromStdString(sample.Label),
            QString::fromStdString(sample.Name));
    setItemData(count() - 1, QString::fromStdString(sample.Description), Qt::ToolTipRole);
  }
  connect(this, &QComboBox::activated, this, [this](int index) { emit Chosen(itemData(index).toString()); });
}

void SampleChoice::ShowSample(const Sample& sample) {
  if (view()->isVisible()) return;
  setCurrentIndex(findData(QString::fromStdString(sample.Name)));
  setToolTip(QString::fromStdString(sample.Description));
}

void SampleChoice::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionComboBox option;
  initStyleOption(&option);
  const QRect field =
      style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
  const int space = field.width() - iconSize().width() - IconGap;
  option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideRight, space);
  painter.drawComplexControl(QStyle::CC_ComboBox, option);
  painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void SampleChoice::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QComboBox::wheelEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace spectrane
