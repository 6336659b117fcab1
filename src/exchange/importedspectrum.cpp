#include "exchange/importedspectrum.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "link/function.h"

namespace spectrane {
namespace {

/// From where up a value on the scale of absorbance is shown in steps of this [Abs], and so on.
constexpr double kAbsStep = 0.1;
constexpr double kTransStep = 10.0;

/// The ends of a scale with all values in it, on multiples of `step`; not narrower than from `bottom` to
/// `top`.
std::pair<double, double> ScaleEnds(const std::vector<double>& values, double step, double bottom,
                                    double top) {
  const auto [low, high] = std::minmax_element(values.begin(), values.end());
  const double lower = std::floor(*low / step) * step;
  const double upper = std::ceil(*high / step) * step;
  return {std::min(lower, bottom), std::max(upper, top)};
}

}  // namespace

ImportedSpectrum NoSpectrum(std::string reason) {
  ImportedSpectrum none;
  none.Reason = std::move(reason);
  return none;
}

void AddAbs(Spectrum& points, double wavelength, double abs) {
  points.Add(wavelength, TransFromAbs(abs), abs);
}

void AddTrans(Spectrum& points, double wavelength, double trans) {
  points.Add(wavelength, trans, AbsFromTrans(trans));
}

void AddRemark(ImportedSpectrum& spectrum, std::size_t count, const std::string& unit, const char* which) {
  if (count == 0) return;
  spectrum.Remark += (spectrum.Remark.empty() ? "" : ", ") + std::to_string(count) + " " + unit +
                     (count == 1 ? " " : "s ") + which;
}

ImportedSpectrum Arranged(ImportedSpectrum spectrum) {
  const Spectrum& all = spectrum.Points;
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < all.Size(); ++i) {
    if (std::isfinite(all.WL[i]) && all.WL[i] > 0 && std::isfinite(all.Abs[i]) && std::isfinite(all.Trans[i]))
      order.push_back(i);
  }
  if (order.empty()) return NoSpectrum("has no points");
  if (order.size() > static_cast<std::size_t>(kMostSpectrumPoints))
    return NoSpectrum("has more than " + std::to_string(kMostSpectrumPoints) + " points");
  AddRemark(spectrum, all.Size() - order.size(), "point", "without numbers");
  std::stable_sort(order.begin(), order.end(),
                   [&all](std::size_t a, std::size_t b) { return all.WL[a] < all.WL[b]; });
  Spectrum rising;
  for (const std::size_t i : order) rising.Add(all.WL[i], all.Trans[i], all.Abs[i]);
  spectrum.Points = std::move(rising);
  return spectrum;
}

WLSOption HomeViewOf(const ImportedSpectrum& spectrum) {
  const Spectrum& points = spectrum.Points;
  WLSOption option;
  option.StartWavelength = points.WL.front();
  option.EndWavelength = points.WL.back();
  std::tie(option.AbsBottom, option.AbsTop) = ScaleEnds(points.Abs, kAbsStep, 0.0, kAbsStep);
  std::tie(option.TransBottom, option.TransTop) = ScaleEnds(points.Trans, kTransStep, 0.0, 100.0);
  option.DisplayMode = spectrum.ShowsTrans ? 2 : 1;
  return option;
}

}  // namespace spectrane
