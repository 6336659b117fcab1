#pragma once

#include <QColor>
#include <QImage>

#include <algorithm>
#include <utility>
#include <vector>

namespace spectrane {

/// Pixels of exactly that colour.
inline int CountOf(const QImage& image, const QColor& colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    count += static_cast<int>(std::count(line, line + image.width(), colour.rgb()));
  }
  return count;
}

/// Top and bottom of that colour in each column; height and -1 where there is none.
inline std::vector<std::pair<int, int>> SpansOf(const QImage& image, const QColor& colour) {
  std::vector<std::pair<int, int>> spans(static_cast<std::size_t>(image.width()), {image.height(), -1});
  for (int y = 0; y < image.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      if (line[x] != colour.rgb()) continue;
      auto& [top, bottom] = spans[static_cast<std::size_t>(x)];
      top = std::min(top, y);
      bottom = std::max(bottom, y);
    }
  }
  return spans;
}

}  // namespace spectrane
