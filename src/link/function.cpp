#include "link/function.h"

#include <cmath>

#include "base/numbers.h"

namespace spectrane {

double TransFromEnergy(std::int32_t E, std::int32_t R, std::int32_t D) {
  if (R <= D) return -1.0;
  const auto difference = [](std::int32_t a, std::int32_t b) {
    return static_cast<double>(std::int64_t{a} - std::int64_t{b});
  };
  const double T = difference(E, D) / difference(R, D) * 100.0;
  if (T > 200.0) return 200.0;
  if (T < -1.0) return -1.0;
  return T;
}

double AbsFromTrans(double T) {
  const double t = T / 100.0;
  if (!(t > 0.0)) return 3.0;
  const double A = 0.0 - std::log(t) / std::log(10.0);  // no light lost is 0, not -0
  if (A > 3.0) return 3.0;
  if (A < -0.5) return -0.5;
  return A;
}

double TransFromAbs(double A) {
  return 100.0 * std::pow(10.0, -1.0 * A);
}

double AbsFromEnergy(std::int32_t E, std::int32_t R, std::int32_t D) {
  if (R <= D) return 3.0;
  return AbsFromTrans(TransFromEnergy(E, R, D));
}

std::string FormatValue(double V) {
  struct Row {
    double Above;
    const char* Pattern;
  };
  static constexpr Row rows[] = {{999.95, " 0.0"},     {99.995, " 0.00"},    {9.9995, " 0.000"},
                                 {-0.00005, "0.0000"}, {-9.99995, "0.0000"}, {-99.9995, "0.000"},
                                 {-999.995, "0.00"}};
  for (const Row& row : rows) {
    if (V > row.Above) return Format(V, row.Pattern);
  }
  return Format(V, "0.0");
}

}  // namespace spectrane
