#include "modes/quantitation/curveaxes.h"

#include <algorithm>
#include <cmath>

#include "modes/quantitation/curvefit.h"

namespace spectrane {
namespace {

// Without standards nothing tells how far the curve should go; readings beyond this are poor.
constexpr double kTypedCurveAbs = 2.0;

std::size_t StandardsInUse(const QuaOption& qua) {
  return static_cast<std::size_t>(std::clamp(qua.SampleNumber, 0, kMostStandards));
}

bool IsTyped(const QuaOption& qua) {
  return qua.CurveItem == static_cast<std::int32_t>(CurveSource::Coefficients);
}

double StepFor(double value) {
  for (const double step : {1000.0, 100.0, 10.0, 1.0}) {
    if (value >= step) return step;
  }
  return 0.1;
}

}  // namespace

CurvePoint CurveAxes::Held(const CurvePoint& point) const {
  return {std::clamp(point.Abs, 0.0, AbsTop), std::clamp(point.Conc, 0.0, ConcTop)};
}

double ScaleUp(double value) {
  const double step = StepFor(value);
  for (int k = 1; k <= 10; ++k) {
    if (k * step >= value) return k * step;
  }
  return 0;
}

CurveAxes AxesOf(const QuaOption& qua) {
  double abs = kTypedCurveAbs;
  double conc = 0;
  const std::size_t count = StandardsInUse(qua);
  if (!IsTyped(qua) && count > 0) {
    abs = qua.StandardAbs[0][FitColumn(qua)];
    conc = qua.StandardConc[0];
    for (std::size_t i = 1; i < count; ++i) {
      abs = std::max(abs, qua.StandardAbs[i][FitColumn(qua)]);
      conc = std::max(conc, qua.StandardConc[i]);
    }
  }
  CurveAxes axes;
  axes.AbsTop = ScaleUp(abs);
  const double concAtTop = CalcConc(qua, axes.AbsTop);
  axes.ConcTop = ScaleUp(concAtTop > conc ? concAtTop : conc);
  return axes;
}

std::vector<CurveMark> CurveMarks(const QuaOption& qua, const CurveAxes& axes) {
  std::vector<CurveMark> marks;
  if (IsTyped(qua)) return marks;
  for (std::size_t i = 0; i < StandardsInUse(qua); ++i) {
    const CurvePoint point = {qua.StandardAbs[i][FitColumn(qua)], qua.StandardConc[i]};
    const bool given = qua.StandardAbsSet[i] && qua.StandardConcSet[i];
    if (!given || std::isnan(point.Abs) || std::isnan(point.Conc)) continue;
    marks.push_back({static_cast<std::int32_t>(i), point, axes.Held(point)});
  }
  return marks;
}

std::vector<CurvePoint> CurvePoints(const QuaOption& qua, const CurveAxes& axes, int count) {
  std::vector<CurvePoint> points;
  const int last = std::max(count, 2) - 1;
  points.reserve(static_cast<std::size_t>(last) + 1);
  for (int i = 0; i <= last; ++i) {
    const double abs = axes.AbsTop * i / last;
    const double conc = CalcConc(qua, abs);
    if (!std::isnan(conc)) points.push_back(axes.Held({abs, conc}));
  }
  return points;
}

}  // namespace spectrane
