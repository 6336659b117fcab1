#include "output/scanview.h"

#include <algorithm>

#include "base/language.h"
#include "base/numbers.h"
#include "output/colours.h"
#include "output/foundmarks.h"
#include "output/plottexts.h"

namespace spectrane {
namespace {

QString FigureText(double value, const std::string& pattern) {
  return QString::fromStdString(Format(value, pattern));
}

QString TitleText(int textId) {
  return QString::fromStdString(Text(textId)).trimmed();
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
  view.Colours = ColoursOf(settings);
  CurveLine line;
  line.X = document.Wavelength();
  line.Y = document.Values(mode);
  line.Colour = ColourOf(settings.CurveColor);
  line.Name = name;
  view.Lines.push_back(line);
  view.Marks =
      FoundMarks(document.Found(), line.X, line.Y,
                 {settings.PeakDetailEnable, settings.ValleyDetailEnable, [&](std::int32_t point) {
                    const double wavelength = document.Wavelength()[static_cast<std::size_t>(point)];
                    return FigureText(wavelength, "0.0nm") + u'-' + ScanValueText(document, formats, point);
                  }});
  const ScanScale home = ScaleOf(document.Option());
  const auto [first, last] = document.WavelengthRange();
  if (document.PointCount() > 0)
    view.FarthestX = {std::min(first, home.StartWavelength), std::max(last, home.EndWavelength)};
  return view;
}

}  // namespace spectrane
