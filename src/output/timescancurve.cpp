#include "output/timescancurve.h"

#include <algorithm>

#include "base/numbers.h"
#include "output/colours.h"
#include "output/foundmarks.h"

namespace spectrane {
namespace {

/// Twips above the plot, where the wavelength stands.
constexpr double kTimeScanTop = 500;
/// Below both of these [twips] the frame stands without its curve.
constexpr CurveRoom kTimeScanRoom{2000, 1300, false};

QString TimedValue(const TimeScanSource& scan, std::int32_t point) {
  const auto i = static_cast<std::size_t>(point);
  const bool trans = scan.Document.ShowsTrans();
  return QString::fromStdString(
      Format(scan.Points.Time[i], "0.0s") + "-" +
      Format(scan.Points.Values(trans)[i], trans ? scan.Formats.TransFormat : scan.Formats.AbsFormat) +
      (trans ? "%T" : "Abs"));
}

/// From the home view to the points that there are.
AxisRange AllTimes(const TimeScanSource& scan) {
  AxisRange all{std::min(0.0, scan.Document.StartSecond()), scan.Document.EndSecond()};
  for (const double time : scan.Points.Time) {
    all.Low = std::min(all.Low, time);
    all.High = std::max(all.High, time);
  }
  return all;
}

}  // namespace

FoundPeaks FindPeaks(const TimeScanDocument& document, const TimeScanSettings& settings) {
  return FindPeak(document.AllAbs(), {settings.PeakHeight, settings.PeakEnable, settings.ValleyEnable});
}

CurveScale TimeScanScale(const TimeScanDocument& document, const TimeScanView& seen) {
  const AxisSpan& values = seen.Of(document.ShowsTrans());
  return {{seen.Time.Low, seen.Time.High}, {values.Low, values.High}};
}

CurveView TimeScanCurve(const TimeScanSource& scan, const TimeScanView& seen, const QString& name) {
  const bool trans = scan.Document.ShowsTrans();
  CurveView view;
  view.X = {AxisKind::Time, QStringLiteral("Second.(s)"), {}, {}};
  view.Y = {trans ? AxisKind::Trans : AxisKind::Abs,
            trans ? QStringLiteral("Transmission (%T)") : QStringLiteral("Absorbancy (Abs)"),
            {},
            trans ? scan.Formats.TransFormat : scan.Formats.AbsFormat};
  view.Scale = TimeScanScale(scan.Document, seen);
  view.Margins.Top = kTimeScanTop;
  view.Room = kTimeScanRoom;
  view.Grid = scan.Settings.GridEnable;
  view.Colours = ColoursOf(scan.Settings);
  view.Caption = QString::fromStdString(
      "WaveLength = " + Format(scan.Document.PointWavelength(), scan.Formats.WavelengthFormat) + " nm");
  CurveLine line;
  line.X = scan.Points.Time;
  line.Y = scan.Points.Values(trans);
  line.Colour = ColourOf(scan.Settings.CurveColor);
  line.Name = name;
  view.Lines.push_back(line);
  view.Marks = FoundMarks(scan.Found, scan.Points.Time, line.Y,
                          {scan.Settings.PeakDetailEnable, scan.Settings.ValleyDetailEnable,
                           [&scan](std::int32_t point) { return TimedValue(scan, point); }});
  view.FarthestX = AllTimes(scan);
  return view;
}

}  // namespace spectrane
