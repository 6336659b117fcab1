#include "modes/quantitation/curveformula.h"

#include <limits>

#include "base/basesupport.h"

namespace spectrane {
namespace {

using K = std::array<double, 4>;

struct TextRow {
  const char* Name;
  double Value;
  const char* Text;
};

class CoefficientText : public testing::TestWithParam<TextRow> {};

TEST_P(CoefficientText, HasFewerDecimalsTheLargerItIs) {
  EXPECT_EQ(Get5BitString(GetParam().Value, DisplayFormats::AtStart(0)), GetParam().Text);
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, CoefficientText,
    testing::Values(TextRow{"AboveThousand", 999.951, "1000.0"}, TextRow{"ThousandBound", 999.95, "999.95"},
                    TextRow{"AboveHundred", 99.996, "100.00"}, TextRow{"HundredBound", 99.995, "99.995"},
                    TextRow{"AboveTen", 9.9996, "10.000"}, TextRow{"Small", 2.5, "2.500"},
                    TextRow{"SmallNegative", -2.5, "-2.500"},
                    TextRow{"NegativeTenNotYet", -9.9999, "-10.000"},
                    TextRow{"NegativeTenBound", -9.99995, "-10.000"},
                    TextRow{"NegativeHundredNotYet", -99.999, "-99.999"},
                    TextRow{"NegativeHundredBound", -99.9995, "-100.00"},
                    TextRow{"NegativeThousandNotYet", -999.98, "-999.98"},
                    TextRow{"NegativeThousandBound", -999.995, "-1000.0"},
                    TextRow{"Huge", 1234567.89, "1234567.9"}, TextRow{"RoundsToZero", -0.0001, "0.000"},
                    TextRow{"NoNumber", std::numeric_limits<double>::quiet_NaN(), "-"}),
    NameOfRow<TextRow>);

TEST(CoefficientText, TheSmallOnesFollowThePrecision) {
  const DisplayFormats high = DisplayFormats::AtStart(1);
  EXPECT_EQ(Get5BitString(2.5, high), "2.5000");
  EXPECT_EQ(Get5BitString(9.9995, high), "9.9995");
  EXPECT_EQ(Get5BitString(-9.99994, high), "-9.9999");
  EXPECT_EQ(Get5BitString(-9.99995, high), "-10.000");
  EXPECT_EQ(Get5BitString(12.5, high), "12.500");
}

struct FormulaRow {
  const char* Name;
  std::int32_t Method;
  K Coefficients;
  double R;
  std::vector<FormulaPart> Parts;
};

class Formula : public testing::TestWithParam<FormulaRow> {};

TEST_P(Formula, IsWrittenTermByTerm) {
  const FormulaRow& row = GetParam();
  EXPECT_EQ(CurveFormula(row.Method, row.Coefficients, row.R, DisplayFormats::AtStart(0)), row.Parts);
}

INSTANTIATE_TEST_SUITE_P(
    Methods, Formula,
    testing::Values(
        FormulaRow{"ThroughZero", 0, {9, 2.0743801, 9, 9}, 0.9966035, {{"Conc.=(2.074)xA  r = 0.996604"}}},
        FormulaRow{"ThroughZeroFalling", 0, {9, -2, 9, 9}, -1, {{"Conc.=(-2.000)xA  r = -1.000000"}}},
        FormulaRow{
            "Line", 1, {-0.3089, 1.00335, 9, 9}, 0.999998704, {{"Conc.=(1.003)xA(-0.309)  r = 0.999999"}}},
        FormulaRow{
            "LineRising", 1, {0, 1365678.86, 9, 9}, 1, {{"Conc.=(1365678.9)xA+(0.000)  r = 1.000000"}}},
        FormulaRow{"Parabola",
                   2,
                   {0.0231, 70.1129, -0.8651, 9},
                   1,
                   {{"Conc.=(-0.865)xA"}, {"2", true}, {"+(70.113)xA+(0.023)"}}},
        FormulaRow{"ThirdOrder",
                   3,
                   {1, -2, 3, 0},
                   1,
                   {{"Conc.=(0.000)xA"}, {"3", true}, {"+(3.000)xA"}, {"2", true}, {"(-2.000)xA+(1.000)"}}},
        FormulaRow{"Unknown", 9, {1, 2, 3, 4}, 1, {}}),
    NameOfRow<FormulaRow>);

TEST(Formula, StandsInOneLineWithPlainDigits) {
  const DisplayFormats formats = DisplayFormats::AtStart(0);
  EXPECT_EQ(FormulaText(CurveFormula(3, {1, 2, 3, 0}, 1, formats)),
            "Conc.=(0.000)xA3+(3.000)xA2+(2.000)xA+(1.000)");
  EXPECT_EQ(FormulaText({}), "");
}

TEST(Formula, ThePlusIsLeftOutFromMinusHalfATenthOfAThousandthOn) {
  const DisplayFormats formats = DisplayFormats::AtStart(0);
  EXPECT_EQ(FormulaText(CurveFormula(1, {-0.00005, 1, 0, 0}, 1, formats)),
            "Conc.=(1.000)xA(0.000)  r = 1.000000");
  EXPECT_EQ(FormulaText(CurveFormula(1, {-0.000049, 1, 0, 0}, 1, formats)),
            "Conc.=(1.000)xA+(0.000)  r = 1.000000");
  EXPECT_EQ(FormulaText(CurveFormula(1, {std::numeric_limits<double>::quiet_NaN(), 1, 0, 0}, 1, formats)),
            "Conc.=(1.000)xA+(-)  r = 1.000000");
}

TEST(Formula, RHasTheDecimalsOfTheCoefficientFormat) {
  DisplayFormats formats = DisplayFormats::AtStart(0);
  formats.ApplyOption(1);
  EXPECT_EQ(FormulaText(CurveFormula(0, {0, 2.5, 0, 0}, 0.99666, formats)), "Conc.=(2.5000)xA  r = 0.9967");
}

}  // namespace
}  // namespace spectrane
