#include "modes/quantitation/curvefit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace spectrane {
namespace {

constexpr double kLeastCorrelation = 0.8;
// What rounding may add to a correlation of 1.
constexpr double kCorrelationRounding = 1e-9;

/// A number that turns into NaN at the first overflow or division by zero and stays so, also where plain
/// arithmetic would come back to a finite number (1 / infinity).
class Checked {
 public:
  Checked(double value) : value_(std::isfinite(value) ? value : std::numeric_limits<double>::quiet_NaN()) {}
  double Value() const { return value_; }
  bool Faulted() const { return std::isnan(value_); }
  friend Checked operator+(Checked a, Checked b) { return a.value_ + b.value_; }
  friend Checked operator-(Checked a, Checked b) { return a.value_ - b.value_; }
  friend Checked operator*(Checked a, Checked b) { return a.value_ * b.value_; }
  friend Checked operator/(Checked a, Checked b) { return a.value_ / b.value_; }

 private:
  double value_;
};

Checked Power(Checked base, double exponent) {
  return std::pow(base.Value(), exponent);
}
Checked Root(Checked value) {
  return std::sqrt(value.Value());
}

/// One statement: the variable takes the value, or keeps its own when the value faulted.
void Assign(double& variable, Checked value) {
  if (!value.Faulted()) variable = value.Value();
}

/// Abscissa and ordinate of the table's rows for a fit over one column.
struct Points {
  QuaOption& Qua;
  std::size_t Column;

  double& X(std::int32_t row) const { return Qua.StandardAbs[static_cast<std::size_t>(row)][Column]; }
  double& Y(std::int32_t row) const { return Qua.StandardConc[static_cast<std::size_t>(row)]; }
  bool Finite(std::int32_t first, std::int32_t count) const {
    for (std::int32_t i = first; i < first + count; ++i) {
      if (!std::isfinite(X(i)) || !std::isfinite(Y(i))) return false;
    }
    return true;
  }
  /// Different abscissas among the rows. A parabola wants three, a line two: with fewer its denominator is
  /// zero, whatever rounding leaves of it.
  std::int32_t Levels(std::int32_t first, std::int32_t count) const {
    std::int32_t levels = 0;
    for (std::int32_t i = first; i < first + count; ++i) {
      bool isNew = true;
      for (std::int32_t k = first; k < i && isNew; ++k) isNew = X(k) != X(i);
      levels += isNew ? 1 : 0;
    }
    return levels;
  }
};

bool CountWithin(const QuaOption& qua, std::int32_t least) {
  return qua.SampleNumber >= least && qua.SampleNumber <= kMostStandards;
}

/// r of `rows` rows about the means given.
Checked Correlation(const Points& points, std::int32_t rows, Checked xMean, Checked yMean) {
  Checked sxy = 0, sxx = 0, syy = 0;
  for (std::int32_t i = 0; i < rows; ++i) {
    const Checked dx = points.X(i) - xMean;
    const Checked dy = points.Y(i) - yMean;
    sxy = sxy + dx * dy;
    sxx = sxx + dx * dx;
    syy = syy + dy * dy;
  }
  const Checked r = sxy / (Root(sxx) * Root(syy));
  const double size = std::fabs(r.Value());
  if (size > 1.0 && size - 1.0 < kCorrelationRounding) return std::copysign(1.0, r.Value());
  return r;
}

bool CorrelationServes(Checked r) {
  const double size = std::fabs(r.Value());
  return size >= kLeastCorrelation && size <= 1.0;
}

/// Sums of a straight-line fit over the standards.
struct LineSums {
  Checked X = 0, Y = 0, X2 = 0, XY = 0;

  explicit LineSums(const Points& points) {
    for (std::int32_t i = 0; i < points.Qua.SampleNumber; ++i) {
      const Checked x = points.X(i), y = points.Y(i);
      X = X + x;
      Y = Y + y;
      X2 = X2 + x * x;
      XY = XY + y * x;
    }
  }
};

bool ZeroCrossing(const Points& points, std::int32_t least) {
  QuaOption& qua = points.Qua;
  const std::int32_t n = qua.SampleNumber;
  if (!CountWithin(qua, least) || !points.Finite(0, n)) return false;
  const LineSums sums(points);
  if (sums.X.Faulted() || sums.Y.Faulted()) return false;
  Checked r = 1;
  if (n != 1) {
    points.X(n) = 0;
    points.Y(n) = 0;
    r = Correlation(points, n + 1, sums.X / n, sums.Y / n);
  }
  const Checked k1 = sums.XY / sums.X2;
  if (r.Faulted() || k1.Faulted()) return false;
  qua.CurveK[0] = 0;
  qua.CurveK[1] = k1.Value();
  qua.CurveR = r.Value();
  return CorrelationServes(r);
}

bool FirstOrder(const Points& points) {
  QuaOption& qua = points.Qua;
  const std::int32_t n = qua.SampleNumber;
  if (!CountWithin(qua, 2) || !points.Finite(0, n) || points.Levels(0, n) < 2) return false;
  const LineSums sums(points);
  const Checked r = n == 2 ? Checked(1) : Correlation(points, n, sums.X / n, sums.Y / n);
  if (!CorrelationServes(r)) return false;
  const Checked k1 = (n * sums.XY - sums.X * sums.Y) / (n * sums.X2 - sums.X * sums.X);
  const Checked k0 = (sums.Y - sums.X * k1) / n;
  if (k0.Faulted()) return false;
  qua.CurveK[0] = k0.Value();
  qua.CurveK[1] = k1.Value();
  qua.CurveR = std::fabs(r.Value());
  return true;
}

/// Each sum and each coefficient is a statement of its own: one that faults is left out.
bool Parabola(const Points& points, std::int32_t first) {
  QuaOption& qua = points.Qua;
  const std::int32_t rows = qua.SampleNumber;
  if (!CountWithin(qua, 0) || !points.Finite(first, rows)) return false;
  double sx = 0, sx2 = 0, sx3 = 0, sx4 = 0, sy = 0, sxy = 0, sx2y = 0;
  for (std::int32_t i = first; i < first + rows; ++i) {
    const Checked x = points.X(i), y = points.Y(i);
    Assign(sx, sx + x);
    Assign(sx2, sx2 + Power(x, 2));
    Assign(sx3, sx3 + Power(x, 3));
    Assign(sx4, sx4 + Power(x, 4));
    Assign(sy, sy + y);
    Assign(sxy, sxy + y * x);
    Assign(sx2y, sx2y + Power(x, 2) * y);
  }
  using C = Checked;
  const double n = rows;
  double a = 0, b = 0, c = 0, d = 0, e = 0;
  Assign(a, C(sx) * sy - C(n) * sxy);
  Assign(b, C(sx) * sx2 - C(n) * sx3);
  Assign(c, Power(sx, 2) - C(n) * sx2);
  Assign(d, C(sx2) * sy - C(n) * sx2y);
  Assign(e, Power(sx2, 2) - C(n) * sx4);
  const std::int32_t levels = points.Levels(first, rows);
  auto& [k0, k1, k2, k3] = qua.CurveK;
  if (levels >= 3) Assign(k2, (C(a) * b - C(c) * d) / (Power(b, 2) - C(c) * e));
  if (levels >= 2) Assign(k1, (a - C(b) * k2) / c);
  Assign(k0, (sy - C(sx) * k1 - C(sx2) * k2) / n);
  return true;
}

bool FitByMethod(QuaOption& qua) {
  const bool one = qua.WaveLengthNumber == 1;
  switch (static_cast<FittingMethod>(qua.FittingMethod)) {
    case FittingMethod::ZeroCrossing:
      return one ? FitZeroCrossing(qua) : FitZeroCrossingTwoWavelength(qua);
    case FittingMethod::FirstOrder:
      return one ? FitFirstOrder(qua) : FitFirstOrderTwoWavelength(qua);
    case FittingMethod::SecondOrder:
      return one ? QUA_Linear2(qua) : QUA_Linear2TwoWavelength(qua);
    case FittingMethod::ThirdOrder:
      return one ? QUA_Linear3(qua) : QUA_Linear3TwoWavelength(qua);
  }
  return false;
}

}  // namespace

FitOutcome CreateCurve(QuaOption& qua) {
  const bool complete = StandardsComplete(qua);
  qua.CurveK.fill(0);
  qua.CurveR = 1;
  if (CountWithin(qua, 0) && !complete) return FitOutcome::Incomplete;
  qua.CurveValid = FitByMethod(qua);
  return qua.CurveValid ? FitOutcome::Accepted : FitOutcome::Rejected;
}

bool FitZeroCrossing(QuaOption& qua) {
  return ZeroCrossing({qua, 0}, 1);
}
bool FitZeroCrossingTwoWavelength(QuaOption& qua) {
  return ZeroCrossing({qua, 2}, 2);
}
bool FitFirstOrder(QuaOption& qua) {
  return FirstOrder({qua, 0});
}
bool FitFirstOrderTwoWavelength(QuaOption& qua) {
  return FirstOrder({qua, 2});
}
bool QUA_Linear2(QuaOption& qua) {
  return Parabola({qua, 0}, 0);
}
bool QUA_Linear2TwoWavelength(QuaOption& qua) {
  return Parabola({qua, 2}, 0);
}
bool QUA_Linear3(QuaOption& qua) {
  return Parabola({qua, 0}, 1);
}
bool QUA_Linear3TwoWavelength(QuaOption& qua) {
  return Parabola({qua, 2}, 1);
}

std::size_t FitColumn(const QuaOption& qua) {
  return qua.WaveLengthNumber == 1 ? 0 : 2;
}

bool StandardsComplete(const QuaOption& qua) {
  if (!CountWithin(qua, 0)) return false;
  for (std::size_t i = 0; i < static_cast<std::size_t>(qua.SampleNumber); ++i) {
    if (!qua.StandardConcSet[i] || !qua.StandardAbsSet[i]) return false;
  }
  return true;
}

const std::array<double, 4>& CoefficientsInForce(const QuaOption& qua) {
  return qua.CurveItem == static_cast<std::int32_t>(CurveSource::Coefficients) ? qua.InputK : qua.CurveK;
}

double CorrelationInForce(const QuaOption& qua) {
  return qua.CurveItem == static_cast<std::int32_t>(CurveSource::Coefficients) ? 1.0 : qua.CurveR;
}

double CalcConc(const QuaOption& qua, double absorbance) {
  const auto& [k0, k1, k2, k3] = CoefficientsInForce(qua);
  const double a = absorbance;
  switch (static_cast<FittingMethod>(qua.FittingMethod)) {
    case FittingMethod::ZeroCrossing:
      return a * k1;
    case FittingMethod::FirstOrder:
      return a * k1 + k0;
    case FittingMethod::SecondOrder:
      return std::pow(a, 2.0) * k2 + a * k1 + k0;
    case FittingMethod::ThirdOrder:
      return (std::pow(a, 2.0) * k2 + std::pow(a, 3.0) * k3) + a * k1 + k0;
  }
  return a * qua.InputK[0];
}

}  // namespace spectrane
