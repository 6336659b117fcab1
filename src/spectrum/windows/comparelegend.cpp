#include "spectrum/windows/comparelegend.h"

#include <QPainter>
#include <QScopedValueRollback>

#include <algorithm>

namespace spectrane {
namespace {

/// Of the line in front of a name [pixels].
constexpr int kSampleWidth = 36;
constexpr int kSampleHeight = 12;
constexpr int kFewestCharacters = 14;
constexpr int kMostCharacters = 30;
constexpr int kMargin = 8;

void DrawSample(QPainter& painter, const QRectF& place, const LegendEntry& entry) {
  painter.setPen(QPen(entry.Colour, 2, entry.Pattern, Qt::FlatCap));
  const double y = place.center().y();
  painter.drawLine(QPointF(place.left(), y), QPointF(place.right(), y));
}

/// On white, as in the picture.
QIcon SampleOf(const LegendEntry& entry, double ratio) {
  QPixmap picture(QSize(kSampleWidth, kSampleHeight) * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::white);
  QPainter painter(&picture);
  if (entry.HasCurve) DrawSample(painter, QRectF(2, 0, kSampleWidth - 4, kSampleHeight), entry);
  painter.end();
  QIcon icon(picture);
  // A row that is chosen is not tinted.
  icon.addPixmap(picture, QIcon::Selected);
  icon.addPixmap(picture, QIcon::Disabled);
  return icon;
}

}  // namespace

CompareLegend::CompareLegend(QWidget* parent) : QListWidget(parent) {
  setObjectName(QStringLiteral("CompareLegend"));
  setAccessibleName(tr("Curves"));
  setFrameShape(QFrame::NoFrame);
  setIconSize({kSampleWidth, kSampleHeight});
  setTextElideMode(Qt::ElideMiddle);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setUniformItemSizes(true);
  connect(this, &QListWidget::itemChanged, this, [this](const QListWidgetItem* item) {
    if (filling_) return;
    emit Ticked(item->data(Qt::UserRole).toULongLong(), item->checkState() == Qt::Checked);
  });
  hide();
}

void CompareLegend::Show(const std::vector<LegendEntry>& entries) {
  const QScopedValueRollback<bool> filling(filling_, true);
  const int current = currentRow();
  clear();
  qsizetype longest = kFewestCharacters;
  for (const LegendEntry& entry : entries) {
    auto* const item = new QListWidgetItem(SampleOf(entry, devicePixelRatioF()), entry.Name, this);
    item->setData(Qt::UserRole, QVariant::fromValue<qulonglong>(entry.Row));
    item->setToolTip(entry.Fault.isEmpty() ? entry.Path : entry.Path + u'\n' + entry.Fault);
    item->setFlags(entry.HasCurve ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable
                                  : Qt::NoItemFlags);
    item->setCheckState(entry.Shown && entry.HasCurve ? Qt::Checked : Qt::Unchecked);
    longest = std::max(longest, entry.Name.size());
  }
  const int characters = static_cast<int>(std::min<qsizetype>(longest, kMostCharacters));
  setFixedWidth(fontMetrics().averageCharWidth() * (characters + 6) + kSampleWidth + 2 * kMargin);
  setVisible(!entries.empty());
  setCurrentRow(std::clamp(current, -1, count() - 1));
}

QImage WithLegend(const QImage& picture, const std::vector<LegendEntry>& entries, const QFont& font) {
  std::vector<const LegendEntry*> shown;
  for (const LegendEntry& entry : entries) {
    if (entry.Shown && entry.HasCurve) shown.push_back(&entry);
  }
  if (picture.isNull() || shown.empty()) return picture;
  const double ratio = picture.devicePixelRatio();
  const QFontMetricsF metrics(font);
  const double width = picture.width() / ratio;
  const double lineHeight = metrics.height() + 4;
  const int columns = width < 500 ? 1 : 2;
  const auto lines = (static_cast<int>(shown.size()) + columns - 1) / columns;
  const double height = picture.height() / ratio;
  QImage whole((QSizeF(width, height + lines * lineHeight + kMargin) * ratio).toSize(), picture.format());
  whole.setDevicePixelRatio(ratio);
  whole.fill(Qt::white);
  QPainter painter(&whole);
  painter.drawImage(0, 0, picture);
  painter.setFont(font);
  const double column = (width - 2 * kMargin) / columns;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const int across = static_cast<int>(i) / lines;
    const int down = static_cast<int>(i) % lines;
    const double x = kMargin + across * column;
    const double y = height + down * lineHeight;
    DrawSample(painter, QRectF(x, y, kSampleWidth, lineHeight), *shown[i]);
    painter.setPen(Qt::black);
    const double text = x + kSampleWidth + kMargin;
    const double room = column - kSampleWidth - 2 * kMargin;
    painter.drawText(QRectF(text, y, room, lineHeight), Qt::AlignVCenter | Qt::AlignLeft,
                     metrics.elidedText(shown[i]->Name, Qt::ElideMiddle, room));
  }
  return whole;
}

}  // namespace spectrane
