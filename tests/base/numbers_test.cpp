#include "base/numbers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/basesupport.h"
#include "base/notfinite.h"
#include "base/numericfault.h"

namespace spectrane {
namespace {

struct FormatRow {
  const char* Name;
  double Value;
  const char* Pattern;
  std::string Expected;
};
void PrintTo(const FormatRow& row, std::ostream* out) {
  *out << row.Value << " by \"" << row.Pattern << "\"";
}

class FormatTest : public testing::TestWithParam<FormatRow> {};

TEST_P(FormatTest, GivesTheText) {
  EXPECT_EQ(Format(GetParam().Value, GetParam().Pattern), GetParam().Expected);
}

const FormatRow kFormatRows[] = {
    {"Wavelength", 546.1, "0.0", "546.1"},
    {"WholeWavelength", 546.0, "0.0", "546.0"},
    {"Absorbance", 0.3010, "0.000", "0.301"},
    {"AbsorbanceHigh", 0.30103, "0.0000", "0.3010"},
    {"Coefficient", 1.23456749, "0.000000", "1.234567"},
    {"WholeNumber", 1234.5, "0", "1235"},
    // Ties are decided on the decimal digits, not on the binary value, which lies a little off the tie.
    {"TieBinaryBelow", 2.675, "0.00", "2.68"},
    {"TieBinaryBelowThreePlaces", 1.0005, "0.000", "1.001"},
    {"TieExact", 0.125, "0.00", "0.13"},
    {"TieEvenNeighbour", 2.5, "0", "3"},
    {"TieNegative", -2.5, "0", "-3"},
    {"TieNegativeDecimals", -0.0005, "0.000", "-0.001"},
    {"JustBelowTie", 0.00049999, "0.000", "0.000"},
    {"BelowTieBeyondTheDigitsThatCount", 0.4999999999999999, "0", "1"},
    {"TieInFifteenDigits", 0.499999999999999, "0", "0"},
    {"CarryThroughAllDigits", 99.95, "0.0", "100.0"},
    {"CarryIntoTheOnes", 0.96, "0.0", "1.0"},
    {"CarryNegative", -999.96, "0.0", "-1000.0"},
    {"CarryAtFirstDigit", 0.05, "0.0", "0.1"},
    {"CarryAtFirstDigitWhole", 0.5, "0", "1"},
    {"FirstDigitTooSmall", 0.04, "0.0", "0.0"},
    {"FarBelowTheLastPlace", 1e-300, "0.0000", "0.0000"},
    {"SmallestDenormal", 4.9406564584124654e-324, "0.000", "0.000"},
    {"ExtraPlacesAreZeros", 0.1, "0.00000000000000000000", "0.10000000000000000000"},
    {"NoDigitsBehindTheFifteenth", 1.0 / 3.0, "0.0000000000000000000", "0.3333333333333330000"},
    {"NoDigitsBehindTheFifteenthWhole", 12345678901234567.0, "0", "12345678901234600"},
    {"Zero", 0.0, "0.000", "0.000"},
    {"NegativeZero", -0.0, "0.000", "0.000"},
    {"NegativeThatRoundsToZero", -0.0004, "0.000", "0.000"},
    {"NegativeThatRoundsToZeroWithBlank", -0.04, " 0.0", " 0.0"},
    {"NegativeThatJustShows", -0.0005, "0.000", "-0.001"},
    {"Huge", 1e20, "0.0", "100000000000000000000.0"},
    {"HugeDigits", 1.23456789012345e20, "0.0", "123456789012345000000.0"},
    {"LargestDouble", 1.7976931348623157e308, "0", "179769313486232" + std::string(294, '0')},
    {"NotANumber", kNaN, "0.0nm", "-"},
    {"Infinity", kInfinity, "0.0", "-"},
    {"NegativeInfinity", -kInfinity, "0.0", "-"},
    {"LeadingBlank", 1234.56, " 0.0", " 1234.6"},
    {"LeadingBlankNegative", -5.0, " 0.0", "- 5.0"},
    {"UnitBehind", 546.0, "0.0nm", "546.0nm"},
    {"UnitBehindNegative", -0.25, "0.0nm", "-0.3nm"},
    {"UnitAndHyphen", 190.0, "0.0nm-", "190.0nm-"},
    {"UnitAfterABlank", 0.5, "0.0 s", "0.5 s"},
    {"LiteralOutsideAscii", 3.0, "µ 0 µm", "µ 3 µm"},
    {"LiteralBetweenThePlaces", 1234.0, "00-00", "12-34"},
    {"LiteralBetweenThePlacesFew", 7.0, "00-00", "00-07"},
    {"LiteralBetweenThePlacesMany", 1234567.0, "00-00", "12345-67"},
    {"LiteralInTheDecimals", 0.1234, "0.00 00", "0.12 34"},
    {"OptionalPlacesNotNeeded", 0.001, "0.000##", "0.001"},
    {"OptionalPlacesOneNeeded", 0.0012, "0.000##", "0.0012"},
    {"OptionalPlacesAllNeeded", 0.00123, "0.000##", "0.00123"},
    {"OptionalPlacesRounded", 0.001235, "0.000##", "0.00124"},
    {"OptionalPlacesRoundedAway", 0.001001, "0.000##", "0.001"},
    {"OptionalPlacesZero", 0.0, "0.000##", "0.000"},
    {"OptionalPlaceInsideZeros", 1.5, "0.#0", "1.50"},
    {"OptionalInFront", 546.0, "###0.0", "546.0"},
    {"OptionalInFrontShort", 5.0, "###0.0", "5.0"},
    {"OptionalInFrontLong", 123456.0, "###0.0", "123456.0"},
    {"OptionalInFrontZero", 0.0, "###0", "0"},
    {"OptionalWholePart", 0.5, "#.0", ".5"},
    {"OptionalOnlyZero", 0.0, "#", ""},
    {"OptionalOnlyRoundedToZero", -0.3, "#", ""},
    {"ZeroInFrontOfOptional", 5.0, "0##", "005"},
    {"PaddedWhole", 7.0, "00", "07"},
    {"PaddedWholeNegative", -7.0, "00", "-07"},
    {"NoPlaceInFrontOfThePoint", 12.5, ".00", "12.50"},
    {"PointStaysWithoutDecimals", 1.0, "0.##", "1."},
    {"PointAtTheEnd", 1.6, "0.", "2."},
    {"SecondPointIsALiteral", 1.25, "0.0.0", "1.2.5"},
    {"NoPlaces", -5.0, "nm", "nm"},
    {"NoPlacesNotANumber", kNaN, "nm", "-"},
    {"EmptyPattern", 5.0, "", ""},
};
INSTANTIATE_TEST_SUITE_P(Rows, FormatTest, testing::ValuesIn(kFormatRows), NameOfRow<FormatRow>);

TEST(FormatSweep, EveryTenThousandthRoundsHalfAwayFromZero) {
  for (int n = -20010; n <= 20010; ++n) {
    const int rounded = (std::abs(n) + 5) / 10;
    std::string expected =
        std::to_string(rounded / 1000) + "." + std::to_string(1000 + rounded % 1000).substr(1);
    if (n < 0 && rounded > 0) expected.insert(0, "-");
    ASSERT_EQ(Format(n / 10000.0, "0.000"), expected) << n;
  }
}

struct ValRow {
  const char* Name;
  std::string Text;
  double Expected;
};
void PrintTo(const ValRow& row, std::ostream* out) {
  *out << '"' << row.Text << '"';
}

class ValTest : public testing::TestWithParam<ValRow> {};

TEST_P(ValTest, GivesTheNumber) {
  const double value = Val(GetParam().Text);
  EXPECT_EQ(value, GetParam().Expected);
  EXPECT_EQ(std::signbit(value), std::signbit(GetParam().Expected));
}

const ValRow kValRows[] = {
    {"Whole", "546", 546.0},
    {"Decimals", "546.25", 546.25},
    {"LeadingBlanks", "  \t 12.5", 12.5},
    {"BlankInsideEnds", "1 2", 1.0},
    {"Negative", "-0.5", -0.5},
    {"Plus", "+3", 3.0},
    {"NoDigitInFront", ".5", 0.5},
    {"NoDigitBehind", "5.", 5.0},
    {"NegativeZero", "-0", -0.0},
    {"UnitBehind", "12.5nm", 12.5},
    {"SecondPointEnds", "1.2.3", 1.2},
    {"CommaEnds", "1,5", 1.0},
    {"Exponent", "1e3", 1000.0},
    {"ExponentCapital", "1E+3", 1000.0},
    {"ExponentNegative", "25e-1x", 2.5},
    {"ExponentAndText", "1e5x", 100000.0},
    {"ExponentWithoutDigits", "12e", 12.0},
    {"ExponentWithoutDigitsSigned", "12e+", 12.0},
    {"ExponentSpaced", "12e 3", 12.0},
    {"NoDoubleExponent", "1D3", 1.0},
    {"ExponentOnly", "e5", 0.0},
    {"Hexadecimal", "0x10", 0.0},
    {"HexadecimalOther", "&H10", 0.0},
    {"NotANumberWord", "nan", 0.0},
    {"InfinityWord", "inf", 0.0},
    {"Letters", "abc", 0.0},
    {"Empty", "", 0.0},
    {"Blanks", "   ", 0.0},
    {"SignOnly", "-", 0.0},
    {"TwoSigns", "--5", 0.0},
    {"PointOnly", ".", 0.0},
    {"SignAndPoint", "-.", 0.0},
    {"TooSmall", "1e-400", 0.0},
    {"TooSmallNegative", "-1e-400", -0.0},
    {"TooSmallByTheDigits", "0." + std::string(400, '0') + "1", 0.0},
    {"HugeNegativeExponent", "1e-99999999999999999999", 0.0},
    {"ZeroWithAHugeExponent", "0e99999999999999999999", 0.0},
    {"SmallMantissaLargeExponent", "0." + std::string(400, '0') + "1e401", 1.0},
    {"ManyDigits", std::string(400, '0') + "7", 7.0},
    {"ManyDecimals", "0.1" + std::string(1000, '0'), 0.1},
    {"LargestDouble", "1.7976931348623157e308", std::numeric_limits<double>::max()},
    {"NulEnds", std::string("5\0006", 3), 5.0},
};
INSTANTIATE_TEST_SUITE_P(Rows, ValTest, testing::ValuesIn(kValRows), NameOfRow<ValRow>);

TEST(Val, ANumberThatDoesNotFitIsAFault) {
  for (const char* text : {"1e309", "-1e309", "1e400x", "1e99999999999999999999", "0.0001e400"}) {
    EXPECT_THROW(Val(text), NumericFault) << text;
  }
  EXPECT_THROW(Val("1" + std::string(400, '0')), NumericFault);
}

TEST(ParseNumber, TakesWholeNumbersOnly) {
  EXPECT_EQ(ParseNumber("1.5"), 1.5);
  EXPECT_EQ(ParseNumber(" \t1.5 \t"), 1.5);
  EXPECT_EQ(ParseNumber("-1e-3"), -0.001);
  EXPECT_EQ(ParseNumber("+.5"), 0.5);
  EXPECT_EQ(ParseNumber("5."), 5.0);
  EXPECT_EQ(ParseNumber("1e-400"), 0.0);
  EXPECT_TRUE(std::signbit(ParseNumber("-0").value()));
}

TEST(ParseNumber, RefusesEverythingElse) {
  for (const char* text : {"",
                           " ",
                           "abc",
                           "1,5",
                           "1.5nm",
                           "1 5",
                           "1.2.3",
                           "1e",
                           "1e+",
                           "1d3",
                           "0x10",
                           "&H10",
                           "nan",
                           "NaN",
                           "inf",
                           "-inf",
                           "infinity",
                           "1e400",
                           "-1e400",
                           "--1",
                           "+-1",
                           "-",
                           ".",
                           "1_000",
                           "\xC2\xA0"
                           "1",
                           "1\n"}) {
    EXPECT_EQ(ParseNumber(text), std::nullopt) << '"' << text << '"';
  }
  EXPECT_EQ(ParseNumber(std::string_view("1\0", 2)), std::nullopt);
}

TEST(ParseLong, RoundsHalfToEven) {
  EXPECT_EQ(ParseLong("7"), 7);
  EXPECT_EQ(ParseLong(" -7 "), -7);
  EXPECT_EQ(ParseLong("0.5"), 0);
  EXPECT_EQ(ParseLong("1.5"), 2);
  EXPECT_EQ(ParseLong("2.5"), 2);
  EXPECT_EQ(ParseLong("-2.5"), -2);
  EXPECT_EQ(ParseLong("1e3"), 1000);
  EXPECT_EQ(ParseLong("2147483647"), 2147483647);
  EXPECT_EQ(ParseLong("2147483647.4"), 2147483647);
  EXPECT_EQ(ParseLong("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(ParseLong("-2147483648.5"), std::numeric_limits<std::int32_t>::min());
}

TEST(ParseLong, AFaultForNoNumberAndForNoRoom) {
  for (const char* text :
       {"", "abc", "1,5", "12x", "2147483648", "2147483647.5", "-2147483649", "99999999999", "1e400"}) {
    EXPECT_THROW(ParseLong(text), NumericFault) << '"' << text << '"';
  }
}

TEST(ToLong, AFaultOutsideThirtyTwoBits) {
  EXPECT_EQ(ToLong(2147483647.5 - 0.25), 2147483647);
  for (const double value : {2147483647.5, -2147483648.75, 1e300, -1e300, kInfinity, -kInfinity, kNaN}) {
    EXPECT_THROW(ToLong(value), NumericFault) << value;
  }
}

TEST(RoundHalfEven, DecidesTiesByTheEvenNeighbour) {
  const std::pair<double, double> rows[] = {{0.5, 0.0},
                                            {1.5, 2.0},
                                            {2.5, 2.0},
                                            {3.5, 4.0},
                                            {-0.5, -0.0},
                                            {-1.5, -2.0},
                                            {-2.5, -2.0},
                                            {2.4, 2.0},
                                            {2.6, 3.0},
                                            {-2.6, -3.0},
                                            {0.0, 0.0},
                                            {-0.0, -0.0},
                                            {1e18, 1e18},
                                            {-1e300, -1e300},
                                            {0.49999999999999994, 0.0},
                                            {4503599627370495.5, 4503599627370496.0},
                                            {4503599627370494.5, 4503599627370494.0}};
  for (const auto& [value, expected] : rows) {
    EXPECT_EQ(RoundHalfEven(value), expected) << value;
    EXPECT_EQ(std::signbit(RoundHalfEven(value)), std::signbit(expected)) << value;
  }
  EXPECT_EQ(RoundHalfEven(kInfinity), kInfinity);
  EXPECT_TRUE(std::isnan(RoundHalfEven(kNaN)));
}

TEST(GeneralText, HasABlankInThePlaceOfTheSign) {
  const std::pair<double, const char*> rows[] = {{546.5, " 546.5"},
                                                 {546.0, " 546"},
                                                 {-0.25, "-0.25"},
                                                 {0.0, " 0"},
                                                 {-0.0, " 0"},
                                                 {1100.0, " 1100"},
                                                 {0.1 + 0.2, " 0.3"},
                                                 {1.0 / 3.0, " 0.333333333333333"},
                                                 {100000.0, " 100000"},
                                                 {123456789012345.0, " 123456789012345"},
                                                 {1e15, " 1E+15"},
                                                 {-1.25e20, "-1.25E+20"},
                                                 {0.00001, " 0.00001"},
                                                 {0.0000012, " 1.2E-06"},
                                                 {1e-300, " 1E-300"},
                                                 {kInfinity, ""},
                                                 {kNaN, ""}};
  for (const auto& [value, expected] : rows) EXPECT_EQ(GeneralText(value), expected);
}

TEST(ShortestText, IsTheShortestDecimalThatReadsBack) {
  const std::pair<double, const char*> rows[] = {
      {0.1, "0.1"},        {546.0, "546"},       {1e-300, "1e-300"}, {0.1 + 0.2, "0.30000000000000004"},
      {-0.5, "-0.5"},      {100000.0, "100000"}, {1e15, "1e+15"},    {0.00001, "0.00001"},
      {0.000001, "1e-06"}, {0.0, "0"},           {-0.0, "-0"},       {kInfinity, ""},
      {kNaN, ""}};
  for (const auto& [value, expected] : rows) EXPECT_EQ(ShortestText(value), expected);
}

TEST(ShortestText, EveryDoubleReadsBack) {
  std::mt19937_64 random(20240501);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = random();
    double value = 0.0;
    static_assert(sizeof value == sizeof bits);
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    ASSERT_EQ(ParseNumber(ShortestText(value)), value) << ShortestText(value);
  }
}

/// A decimal comma and grouped thousands for everything that asks the global locale.
class CommaNumbers : public std::numpunct<char> {
 protected:
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

/// The five conversions under the locale that stands now; compared once the old one is back.
std::vector<std::string> TextsInThisLocale() {
  return {Format(1234.5, "0.0"), std::to_string(Val("1234.5") == 1234.5),
          std::to_string(ParseNumber("1234.5") == 1234.5), ShortestText(1234.5), GeneralText(1234.5)};
}
const std::vector<std::string> kTextsWithAPoint = {"1234.5", "1", "1", "1234.5", " 1234.5"};

TEST(Numbers, TheLocaleOfTheStreamsDoesNotMatter) {
  const std::locale before = std::locale::global(std::locale(std::locale(), new CommaNumbers));
  const std::vector<std::string> texts = TextsInThisLocale();
  std::locale::global(before);
  EXPECT_EQ(texts, kTextsWithAPoint);
}

TEST(Numbers, TheLocaleOfTheProcessDoesNotMatter) {
  bool set = false;
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "tr_TR.UTF-8"}) {
    set = set || std::setlocale(LC_ALL, name) != nullptr;
  }
  if (!set) GTEST_SKIP() << "no locale with a decimal comma is installed";
  const std::vector<std::string> texts = TextsInThisLocale();
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(texts, kTextsWithAPoint);
}

}  // namespace
}  // namespace spectrane
