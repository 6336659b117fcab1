#include "output/scanview.h"

#include <algorithm>

#include "base/language.h"
#include "base/numbers.h"
#include "output/colours.h"
#include "output/plottexts.h"

namespace spectrane {
namespace {

QString FigureText(double value, const std::string& pattern) {
  return QString::fromStdString(Format(value, pattern));
}

QString TitleText(int textId) {
  return QString::fromStdString(Text(textId)).trimmed();
}

QString MarkText(const SpectrumDocument& document, const DisplayFormats& formats, std::int32_t point,
                 int number, bool detail) {
  if (!detail) return QString::number(number);
  return FigureText(document.Wavelength()[static_cast<std::size_t>(point)], "0.0nm") + u'-' +
         ScanValueText(document, formats, point);
}

std::vector<PointMark> MarksOf(const SpectrumDocument& document, const ScanSettings& settings,
                               const DisplayFormats& formats) {
  const FoundPeaks& found = document.Found();
  const std::span<const double> wavelengths = document.Wavelength();
  const std::span<const double> values = document.Values(document.Mode());
  std::vector<PointMark> marks;
  marks.reserve(found.PeakIndex.size() + found.ValleyIndex.size());
  const auto add = [&](const std::vector<std::int32_t>& points, bool valley, bool detail) {
    for (const std::int32_t point : points) {
      const auto i = static_cast<std::size_t>(point);
      // Numbered as in the list, where the valleys come behind the peaks.
      const int number = static_cast<int>(marks.size()) + 1;
      marks.push_back(
          {wavelengths[i], values[i], valley, MarkText(document, formats, point, number, detail)});
    }
  };
  add(found.PeakIndex, false, settings.PeakDetailEnable);
  add(found.ValleyIndex, true, settings.ValleyDetailEnable);
  return marks;
}

}  // namespace

AxisKind ScanAxis(ScanMode mode) {
  return mode == ScanMode::Trans    ? AxisKind::Trans
         : mode == ScanMode::Energy ? AxisKind::Energy
                                    : AxisKind::Abs;
}

QString ScanValueText(const SpectrumDocument& document, const DisplayFormats& formats, std::int32_t point) {
  const ScanMode mode = document.Mode();
  const double value = document.Values(mode)[static_cast<std::size_t>(point)];
  switch (mode) {
    case ScanMode::Trans:
      return FigureText(value, formats.TransFormat) + QStringLiteral("%T");
    case ScanMode::Energy:
      return FigureText(value, "0");
    default:
      return FigureText(value, formats.AbsFormat);
  }
}

CurveScale SeenOf(const ScanScale& scale, ScanMode mode) {
  const ScanRange& values = scale.Of(mode);
  return {{scale.StartWavelength, scale.EndWavelength}, {values.Bottom, values.Top}};
}

CurveScale ScanViewScale(const SpectrumDocument& document) {
  return SeenOf(document.View(), document.Mode());
}

void LookThrough(ScanScale& scale, ScanMode mode, const CurveScale& seen) {
  scale.StartWavelength = seen.X.Low;
  scale.EndWavelength = seen.X.High;
  scale.Of(mode) = {seen.Y.High, seen.Y.Low};
}

CurveAxis WavelengthAxis() {
  return {AxisKind::Wavelength, TitleText(kWavelengthTitle), {}, {}};
}

CurveAxis ValueAxis(ScanMode mode, const DisplayFormats& formats) {
  const int title = mode == ScanMode::Trans    ? kTransTitle
                    : mode == ScanMode::Energy ? kEnergyTitle
                                               : kAbsTitle;
  CurveAxis axis{ScanAxis(mode), TitleText(title), {}, {}};
  if (mode == ScanMode::Abs) axis.CursorPattern = formats.AbsFormat;
  if (mode == ScanMode::Trans) axis.CursorPattern = formats.TransFormat;
  return axis;
}

CurveView ScanView(const SpectrumDocument& document, const ScanSettings& settings,
                   const DisplayFormats& formats, const QString& name) {
  const ScanMode mode = document.Mode();
  CurveView view;
  view.X = WavelengthAxis();
  view.Y = ValueAxis(mode, formats);
  view.Scale = ScanViewScale(document);
  view.Grid = settings.GridEnable;
  view.Colours = {Qt::white, ColourOf(settings.ScaleColor), ColourOf(settings.MarkColor),
                  ColourOf(settings.PeakColor), ColourOf(settings.ValleyColor)};
  CurveLine line;
  line.X = document.Wavelength();
  line.Y = document.Values(mode);
  line.Colour = ColourOf(settings.CurveColor);
  line.Name = name;
  view.Lines.push_back(line);
  view.Marks = MarksOf(document, settings, formats);
  const ScanScale home = ScaleOf(document.Option());
  const auto [first, last] = document.WavelengthRange();
  if (document.PointCount() > 0)
    view.FarthestX = {std::min(first, home.StartWavelength), std::max(last, home.EndWavelength)};
  return view;
}

}  // namespace spectrane
