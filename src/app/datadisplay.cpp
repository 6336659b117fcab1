#include "app/datadisplay.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "app/ground/words.h"

namespace spectrane {
namespace {

constexpr int kFieldWidths[] = {140, 150, 140};

}  // namespace

DataDisplay::DataDisplay(QWidget* parent, QAction* setWavelength) : QToolBar(Words(205), parent) {
  setObjectName(QStringLiteral("DataDisplayToolsbar"));
  setAccessibleName(Words(205));
  fields_[0] = AddField("WavelengthData", 701, kFieldWidths[0]);
  addAction(setWavelength);
  fields_[1] = AddField("AbsData", 703, kFieldWidths[1]);
  fields_[2] = AddField("TransData", 705, kFieldWidths[2]);
  SizeFields();
}

QLabel* DataDisplay::AddField(const char* objectName, int captionTextId, int width) {
  auto* box = new QWidget(this);
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(6, 1, 6, 1);
  layout->setSpacing(0);
  auto* caption = new QLabel(Words(captionTextId), box);
  auto* value = new QLabel(box);
  value->setObjectName(QString::fromLatin1(objectName));
  value->setAccessibleName(Words(captionTextId));
  value->setTextFormat(Qt::PlainText);
  value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  value->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Sunken));
  value->setAutoFillBackground(true);
  value->setBackgroundRole(QPalette::Base);
  value->setForegroundRole(QPalette::Text);
  value->setMargin(2);
  value->setMinimumWidth(width);
  layout->addWidget(caption);
  layout->addWidget(value);
  addWidget(box);
  return value;
}

void DataDisplay::SizeFields() {
  QFont large = font();
  large.setPointSizeF(font().pointSizeF() * 1.5);
  large.setBold(true);
  for (std::size_t i = 0; i < 3; ++i) {
    if (!fields_[i]) continue;
    fields_[i]->setFont(large);
    const int widest = QFontMetrics(large).horizontalAdvance(QStringLiteral("-0.0000Abs")) + 16;
    fields_[i]->setMinimumWidth(std::max(kFieldWidths[i], widest));
  }
}

void DataDisplay::changeEvent(QEvent* event) {
  QToolBar::changeEvent(event);
  if (event->type() == QEvent::FontChange) SizeFields();
}

void DataDisplay::SetField(Field field, const QString& text) {
  QLabel* label = fields_[static_cast<int>(field)];
  if (label->text() != text) label->setText(text);
}

QString DataDisplay::FieldText(Field field) const {
  return fields_[static_cast<int>(field)]->text();
}

}  // namespace spectrane
