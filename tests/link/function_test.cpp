#include "link/function.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace spectrane {
namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

struct EnergyCase {
  const char* Name;
  std::int32_t E, R, D;
  double Trans, Abs;
};

// Abs by hand: -log10(T / 100).
TEST(Function, TransAndAbsOfEnergies) {
  const EnergyCase cases[] = {
      {"sample as the reference", 50000, 50000, 100, 100.0, 0.0},
      {"sample dark", 100, 50000, 100, 0.0, 3.0},
      {"sample a little below dark", 50, 50000, 100, 50 / 49900.0 * -100.0, 3.0},
      {"sample far below dark is held at -1", 0, 200, 100, -1.0, 3.0},
      {"reference equals dark", 500, 100, 100, -1.0, 3.0},
      {"reference below dark", 500, 90, 100, -1.0, 3.0},
      {"half the light", 25050, 50000, 100, 50.0, 0.30102999566398120},
      {"a tenth of the light", 5090, 50000, 100, 10.0, 1.0},
      {"a thousandth", 150, 50100, 100, 0.1, 3.0},
      {"far above the reference", 500000, 50000, 100, 200.0, -0.30102999566398120},
      {"widest differences do not wrap", kMax, kMax, kMin, 100.0, 0.0},
  };
  for (const EnergyCase& c : cases) {
    EXPECT_NEAR(TransFromEnergy(c.E, c.R, c.D), c.Trans, 1e-12) << c.Name;
    EXPECT_NEAR(AbsFromEnergy(c.E, c.R, c.D), c.Abs, 1e-12) << c.Name;
  }
}

TEST(Function, AbsOfTheReferenceItselfHasNoSign) {
  EXPECT_FALSE(std::signbit(AbsFromEnergy(50000, 50000, 100)));
  EXPECT_FALSE(std::signbit(AbsFromTrans(100.0)));
}

TEST(Function, SmallNegativeTransIsNotHeld) {
  EXPECT_DOUBLE_EQ(TransFromEnergy(95, 1100, 100), -0.5);
}

TEST(Function, AbsFromTransIsHeldBetweenMinusHalfAndThree) {
  EXPECT_EQ(AbsFromTrans(0.0), 3.0);
  EXPECT_EQ(AbsFromTrans(-5.0), 3.0);
  EXPECT_EQ(AbsFromTrans(0.01), 3.0);
  EXPECT_NEAR(AbsFromTrans(0.2), 2.6989700043360187, 1e-12);
  EXPECT_EQ(AbsFromTrans(1000.0), -0.5);
  EXPECT_NEAR(AbsFromTrans(200.0), -0.30102999566398120, 1e-12);
  EXPECT_EQ(AbsFromTrans(std::nan("")), 3.0);
}

TEST(Function, TransFromAbsHasNoLimits) {
  EXPECT_DOUBLE_EQ(TransFromAbs(0.0), 100.0);
  EXPECT_DOUBLE_EQ(TransFromAbs(1.0), 10.0);
  EXPECT_DOUBLE_EQ(TransFromAbs(-1.0), 1000.0);
  EXPECT_DOUBLE_EQ(TransFromAbs(5.0), 0.001);
}

TEST(Function, FormatValueChoosesDecimalsBySize) {
  struct Case {
    double V;
    const char* Text;
  };
  const Case cases[] = {
      {1234.56, " 1234.6"},  {999.96, " 1000.0"},  {999.95, " 999.95"},   {99.996, " 100.00"},
      {99.995, " 99.995"},   {9.99951, " 10.000"}, {9.9995, "9.9995"},    {1.0, "1.0000"},
      {0.0, "0.0000"},       {-0.00004, "0.0000"}, {-0.00005, "-0.0001"}, {-9.9999, "-9.9999"},
      {-9.99995, "-10.000"}, {-99.99, "-99.990"},  {-99.9995, "-100.00"}, {-999.99, "-999.99"},
      {-999.995, "-1000.0"}, {-5000.0, "-5000.0"},
  };
  for (const Case& c : cases) EXPECT_EQ(FormatValue(c.V), c.Text) << c.V;
}

}  // namespace
}  // namespace spectrane
