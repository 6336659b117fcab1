#include "simulator/optics.h"

#include <array>
#include <cmath>

#include "simulator/smoothcurve.h"

namespace spectrane::optics {
namespace {

// Counts at gain 1 per nanometre of slit: the brightest wavelength then gives about 9000 at 1 nm and stays
// below the full scale with the widest slit.
constexpr double CountsPerUnitAndNm = 6600.0;

const SmoothCurve& DeuteriumContinuum() {
  static const SmoothCurve curve{{190, 1.05}, {200, 1.65}, {215, 2.55}, {230, 3.0},  {250, 2.76},
                                 {280, 2.1},  {310, 1.5},  {340, 1.08}, {370, 0.84}, {400, 0.69},
                                 {500, 0.36}, {600, 0.24}, {800, 0.15}, {1100, 0.09}};
  return curve;
}

/// Height of an emission line of natural width `width` seen through the slit: the wider the slit, the lower.
double EmissionLine(double nm, double centre, double height, double width, double bandwidth) {
  const double seen = std::hypot(width, bandwidth);
  const double offset = (nm - centre) / seen;
  return height * width / seen * std::exp(-4.0 * std::log(2.0) * offset * offset);
}

}  // namespace

double SlitWidth(int code) {
  constexpr std::array<double, SlitCodes> Widths{0.5, 1.0, 2.0, 4.0, 5.0};
  return Widths.at(static_cast<std::size_t>(code - 1));
}

double GainFactor(int gain) {
  return std::ldexp(1.0, gain - 1);
}

int DarkEnergy(int gain) {
  constexpr std::array<int, MaximumGains> Dark{52, 55, 60, 68, 80, 98, 124, 162, 218, 300, 420};
  return Dark.at(static_cast<std::size_t>(gain - 1));
}

double Tungsten(double nm) {
  // Planck's law at the colour temperature left by the balancing filter, 1 at 1000 nm.
  constexpr double Temperature = 4500.0;
  constexpr double SecondConstant = 1.438777e7;  // nm K
  const auto radiance = [](double at) {
    return std::pow(1000.0 / at, 5.0) / std::expm1(SecondConstant / (at * Temperature));
  };
  return radiance(nm) / radiance(1000.0);
}

double Deuterium(double nm, double bandwidth) {
  return DeuteriumContinuum().At(nm) + EmissionLine(nm, 486.0, 2.0, 0.3, bandwidth) +
         EmissionLine(nm, 656.1, 3.0, 0.3, bandwidth);
}

double Response(double nm) {
  static const SmoothCurve curve{{190, 0.10}, {200, 0.13},  {220, 0.18},  {250, 0.24},
                                 {280, 0.28}, {320, 0.30},  {340, 0.32},  {400, 0.42},
                                 {500, 0.62}, {600, 0.80},  {700, 0.92},  {800, 1.00},
                                 {900, 0.95}, {1000, 0.65}, {1050, 0.40}, {1100, 0.20}};
  return curve.At(nm);
}

double CountsPerUnit(double bandwidth) {
  return CountsPerUnitAndNm * bandwidth;
}

double StrayLight(double nm, double base) {
  return base * (1.0 + 100.0 * std::exp(-(nm - 190.0) / 8.0));
}

double ThroughSlit(double nm, double bandwidth, const std::function<double(double)>& transmittance) {
  constexpr int Half = 32;
  double sum = 0.0;
  double weights = 0.0;
  for (int i = -Half + 1; i < Half; ++i) {
    const double weight = Half - std::abs(i);
    sum += weight * transmittance(nm + bandwidth * i / Half);
    weights += weight;
  }
  return sum / weights;
}

}  // namespace spectrane::optics
