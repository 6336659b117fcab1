#include "spectrum/windows/spectrumcolumns.h"

#include <utility>

#include "app/ground/words.h"
#include "base/numbers.h"
#include "output/plottexts.h"

namespace spectrane {
namespace {

constexpr int kWavelengthColumn = 702;
constexpr const char* kPointWavelengthFormat = "0.0";

QString Figure(double value, const std::string& pattern) {
  return QString::fromStdString(Format(value, pattern));
}

}  // namespace

std::vector<PointColumn> SpectrumColumns(const DisplayFormats& formats,
                                         const std::function<SpectrumPoints()>& points) {
  const auto at = [](std::span<const double> values, std::int32_t point) {
    return values[static_cast<std::size_t>(point)];
  };
  return {{Words(kNumberTitle), {}, QStringLiteral("00000")},
          {Words(kWavelengthColumn),
           [points, at](std::int32_t point) {
             return Figure(at(points().Wavelength, point), kPointWavelengthFormat);
           },
           QStringLiteral("1000.0")},
          {Words(kAbsTitle),
           [points, at, &formats](std::int32_t point) {
             return Figure(at(points().Abs, point), formats.AbsFormat);
           },
           QStringLiteral("-0.0000")},
          {Words(kTransTitle),
           [points, at, &formats](std::int32_t point) {
             return Figure(at(points().Trans, point), formats.TransFormat);
           },
           QStringLiteral("200.00")}};
}

QString PointLine(const DisplayFormats& formats, const SpectrumPoints& points, std::size_t point) {
  if (point >= points.Wavelength.size()) return {};
  return QStringLiteral("No. %1    %2    %3 Abs    %4 %T")
      .arg(point + 1)
      .arg(Figure(points.Wavelength[point], "0.0 nm"), Figure(points.Abs[point], formats.AbsFormat),
           Figure(points.Trans[point], formats.TransFormat));
}

}  // namespace spectrane
