#include "app/ground/storeddrawing.h"

#include <algorithm>
#include <array>
#include <QDir>
#include <QPainter>
#include <vector>

namespace spectrane {
namespace {

/// The widths that `folder` has pictures of, rising.
std::vector<int> StoredWidths(const QString& folder) {
  std::vector<int> widths;
  for (const QString& name : QDir(folder).entryList({QStringLiteral("*.png")}, QDir::Files)) {
    const int width = name.chopped(4).toInt();
    if (width > 0) widths.push_back(width);
  }
  std::sort(widths.begin(), widths.end());
  return widths;
}

QImage StoredPicture(const QString& folder, int width) {
  return QImage(QStringLiteral("%1/%2.png").arg(folder).arg(width));
}

}  // namespace

QImage ColoredShares(const QImage& shares, const IconColors& colors) {
  const QImage given = shares.convertToFormat(QImage::Format_ARGB32);
  QImage colored(given.size(), QImage::Format_ARGB32_Premultiplied);
  const std::array<QRgb, 4> inks{colors.Accent.rgb(), colors.Go.rgb(), colors.Halt.rgb(), colors.Ink.rgb()};
  for (int y = 0; y < given.height(); ++y) {
    const auto* const from = reinterpret_cast<const QRgb*>(given.constScanLine(y));
    auto* const to = reinterpret_cast<QRgb*>(colored.scanLine(y));
    for (int x = 0; x < given.width(); ++x) {
      const QRgb share = from[x];
      const int ink = qAlpha(share) - qRed(share) - qGreen(share) - qBlue(share);
      const std::array<int, 4> parts{qRed(share), qGreen(share), qBlue(share), std::max(ink, 0)};
      std::array<int, 3> sums{};
      for (std::size_t i = 0; i < parts.size(); ++i) {
        sums[0] += parts[i] * qRed(inks[i]);
        sums[1] += parts[i] * qGreen(inks[i]);
        sums[2] += parts[i] * qBlue(inks[i]);
      }
      const auto channel = [&](std::size_t i) { return std::min((sums[i] + 127) / 255, qAlpha(share)); };
      to[x] = qRgba(channel(0), channel(1), channel(2), qAlpha(share));
    }
  }
  return colored;
}

QImage StoredDrawing(const QString& folder, QSize size, const IconColors* colors) {
  const std::vector<int> widths = StoredWidths(folder);
  if (widths.empty() || size.isEmpty()) return {};
  const QSize fitting = StoredDrawingSize(folder).scaled(size, Qt::KeepAspectRatio);
  const auto large = std::lower_bound(widths.begin(), widths.end(), fitting.width());
  QImage picture = StoredPicture(folder, large == widths.end() ? widths.back() : *large);
  if (colors != nullptr) picture = ColoredShares(picture, *colors);
  if (picture.size() == size) return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  QImage whole(size, QImage::Format_ARGB32_Premultiplied);
  whole.fill(Qt::transparent);
  const QImage fitted = picture.scaled(fitting, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QPainter(&whole).drawImage((size.width() - fitted.width()) / 2, (size.height() - fitted.height()) / 2,
                             fitted);
  return whole;
}

QSize StoredDrawingSize(const QString& folder) {
  const std::vector<int> widths = StoredWidths(folder);
  return widths.empty() ? QSize() : StoredPicture(folder, widths.front()).size();
}

}  // namespace spectrane
