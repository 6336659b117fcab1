#include "base/displayformats.h"

#include <gtest/gtest.h>

#include <ostream>

#include "base/basesupport.h"

namespace spectrane {
namespace {

TEST(DisplayFormats, StandardPrecisionAfterStart) {
  const DisplayFormats formats = DisplayFormats::AtStart(0);
  EXPECT_EQ(formats.WavelengthFormat, "0.0");
  EXPECT_EQ(formats.AbsFormat, "0.000");
  EXPECT_EQ(formats.TransFormat, "0.0");
  EXPECT_EQ(formats.CoefficientFormat, "0.000000");
}

TEST(DisplayFormats, HighPrecisionAfterStart) {
  const DisplayFormats formats = DisplayFormats::AtStart(1);
  EXPECT_EQ(formats.PrecisionMode, 1);
  EXPECT_EQ(formats.WavelengthFormat, "0.0");
  EXPECT_EQ(formats.AbsFormat, "0.0000");
  EXPECT_EQ(formats.TransFormat, "0.00");
  EXPECT_EQ(formats.CoefficientFormat, "0.000000");
}

TEST(DisplayFormats, ConfirmedOptionsGiveCoefficientsTheAbsorbanceFormat) {
  DisplayFormats formats = DisplayFormats::AtStart(0);
  formats.ApplyOption(0);
  EXPECT_EQ(formats.CoefficientFormat, "0.000");
  formats.ApplyOption(1);
  EXPECT_EQ(formats.PrecisionMode, 1);
  EXPECT_EQ(formats.AbsFormat, "0.0000");
  EXPECT_EQ(formats.TransFormat, "0.00");
  EXPECT_EQ(formats.CoefficientFormat, "0.0000");
}

TEST(DisplayFormats, AnUnknownModeShowsAsStandard) {
  const DisplayFormats formats = DisplayFormats::AtStart(7);
  EXPECT_EQ(formats.AbsFormat, "0.000");
  EXPECT_EQ(AbsDisplay(-0.0004, formats), " 0.000Abs");
}

struct FieldRow {
  const char* Name;
  std::string (*Display)(double, const DisplayFormats&);
  int PrecisionMode;
  double Value;
  const char* Expected;
};
void PrintTo(const FieldRow& row, std::ostream* out) {
  *out << row.Value << " at precision " << row.PrecisionMode;
}

class FieldTest : public testing::TestWithParam<FieldRow> {};

TEST_P(FieldTest, ShowsTheText) {
  const FieldRow& row = GetParam();
  EXPECT_EQ(row.Display(row.Value, DisplayFormats::AtStart(row.PrecisionMode)), row.Expected);
}

const FieldRow kFieldRows[] = {
    {"WavelengthBelowThousand", WavelengthDisplay, 0, 546.0, " 546.0nm"},
    {"WavelengthJustBelowThousand", WavelengthDisplay, 0, 999.9, " 999.9nm"},
    {"WavelengthThousand", WavelengthDisplay, 0, 1000.0, "1000.0nm"},
    {"WavelengthHighest", WavelengthDisplay, 1, 1100.0, "1100.0nm"},
    {"AbsZero", AbsDisplay, 0, 0.0, " 0.000Abs"},
    {"AbsPositive", AbsDisplay, 0, 3.0, " 3.000Abs"},
    {"AbsNegativeUnseen", AbsDisplay, 0, -0.0004, " 0.000Abs"},
    {"AbsNegativeAtLimit", AbsDisplay, 0, -0.0005, "-0.001Abs"},
    {"AbsNegative", AbsDisplay, 0, -0.301, "-0.301Abs"},
    {"AbsHighZero", AbsDisplay, 1, 0.0, " 0.0000Abs"},
    {"AbsHighNegativeUnseen", AbsDisplay, 1, -0.00004, " 0.0000Abs"},
    {"AbsHighNegativeAtLimit", AbsDisplay, 1, -0.00005, "-0.0001Abs"},
    {"AbsHighNegativeBelowStandardLimit", AbsDisplay, 1, -0.0004, "-0.0004Abs"},
    {"TransHundred", TransDisplay, 0, 100.0, "100.0%T"},
    {"TransJustAboveUpper", TransDisplay, 0, 99.96, "100.0%T"},
    {"TransUpperLimit", TransDisplay, 0, 99.95, " 100.0%T"},
    {"TransBetween", TransDisplay, 0, 50.0, " 50.0%T"},
    {"TransJustAboveLower", TransDisplay, 0, 9.96, " 10.0%T"},
    {"TransLowerLimit", TransDisplay, 0, 9.95, "  10.0%T"},
    {"TransSmall", TransDisplay, 0, 0.0, "  0.0%T"},
    {"TransNegative", TransDisplay, 0, -1.0, "  -1.0%T"},
    {"TransHighHundred", TransDisplay, 1, 100.0, "100.00%T"},
    {"TransHighJustAboveUpper", TransDisplay, 1, 99.996, "100.00%T"},
    {"TransHighUpperLimit", TransDisplay, 1, 99.995, " 100.00%T"},
    {"TransHighBetweenTheTwoLimits", TransDisplay, 1, 99.96, " 99.96%T"},
    {"TransHighJustAboveLower", TransDisplay, 1, 9.996, " 10.00%T"},
    {"TransHighLowerLimit", TransDisplay, 1, 9.995, "  10.00%T"},
    {"TransHighBelowLower", TransDisplay, 1, 9.96, "  9.96%T"},
};
INSTANTIATE_TEST_SUITE_P(Rows, FieldTest, testing::ValuesIn(kFieldRows), NameOfRow<FieldRow>);

}  // namespace
}  // namespace spectrane
