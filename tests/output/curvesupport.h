#pragma once

#include <QImage>
#include <QPainter>

#include <cmath>
#include <cstdint>
#include <vector>

#include "output/curvepicture.h"

namespace spectrane {

/// A view with the arrays that it shows.
struct OwnedCurve {
  std::vector<double> X;
  std::vector<double> Y;
  CurveView View;

  OwnedCurve() = default;
  OwnedCurve(std::vector<double> x, std::vector<double> y) : X(std::move(x)), Y(std::move(y)) { Show(); }
  OwnedCurve(const OwnedCurve&) = delete;
  OwnedCurve& operator=(const OwnedCurve&) = delete;
  OwnedCurve(OwnedCurve&& other) noexcept
      : X(std::move(other.X)), Y(std::move(other.Y)), View(std::move(other.View)) {}

  void Show() {
    View.Lines.resize(1);
    View.Lines[0].X = X;
    View.Lines[0].Y = Y;
    View.X.Title = QStringLiteral("WL.(nm)");
    View.Y.Title = QStringLiteral("Absorbance(Abs)");
  }
};

/// The absorbance bands of holmium oxide, roughly.
inline double HolmiumAbs(double wavelength) {
  struct Band {
    double At, Width, Height;
  };
  static constexpr Band kBands[] = {{361, 2.4, 0.55},   {385.8, 2.2, 0.3},  {416.5, 2.2, 0.62},
                                    {422, 2.4, 0.4},    {450.8, 2.6, 1.02}, {453.6, 2, 0.7},
                                    {460.2, 2.2, 0.95}, {467.8, 2.4, 0.3},  {485.2, 2.2, 0.25},
                                    {536.6, 3, 0.62},   {640.5, 3.4, 0.4}};
  double abs = 0.06 + 0.9 * std::exp(-(wavelength - 300) / 25);
  for (const Band& band : kBands)
    abs += band.Height * std::exp(-std::pow((wavelength - band.At) / band.Width, 2) / 2);
  return abs;
}

/// Numbers between -1 and 1, the same in every run.
class SmallNoise {
 public:
  double Next() {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<double>(static_cast<std::int64_t>(state_) >> 11) / 4503599627370496.0 / 1.0;
  }

 private:
  std::uint64_t state_ = 42;
};

/// `count` points from 350 to 1100 nm with that much noise.
inline OwnedCurve HolmiumCurve(std::size_t count, double noise = 0) {
  std::vector<double> x(count);
  std::vector<double> y(count);
  SmallNoise random;
  for (std::size_t i = 0; i < count; ++i) {
    x[i] = 350 + 750.0 * static_cast<double>(i) / static_cast<double>(count > 1 ? count - 1 : 1);
    y[i] = HolmiumAbs(x[i]) + noise * random.Next();
  }
  return {std::move(x), std::move(y)};
}

}  // namespace spectrane
