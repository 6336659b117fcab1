#include <gtest/gtest.h>

#include "base/notfinite.h"
#include "exchange/exchangecurve.h"
#include "exchange/importedspectrum.h"
#include "link/function.h"

namespace spectrane {
namespace {

ExchangeCurve Curve() {
  ExchangeCurve curve;
  curve.Title = "a.wls";
  curve.X = {400, 400.5, 401};
  curve.Abs = {0.1, 0.30000000000000004, -0.02};
  curve.Trans = {79.4, 50.11872336272722, 104.7};
  return curve;
}

TEST(CsvText, HasALineForEachPointInFullLength) {
  EXPECT_EQ(CsvText(Curve()),
            "Wavelength (nm),Absorbance (Abs),Transmittance (%T)\r\n400,0.1,79.4\r\n"
            "400.5,0.30000000000000004,50.11872336272722\r\n401,-0.02,104.7\r\n");
}

TEST(CsvText, TimeScansSayTime) {
  ExchangeCurve curve = Curve();
  curve.TimeScanWavelength = 340;
  EXPECT_TRUE(CsvText(curve).starts_with("Time (s),"));
}

TEST(CsvText, WhatIsNoNumberIsADash) {
  ExchangeCurve curve = Curve();
  curve.Abs[1] = kNaN;
  curve.Trans[1] = kInfinity;
  EXPECT_NE(CsvText(curve).find("\r\n400.5,-,-\r\n"), std::string::npos);
}

TEST(ImportCsv, TakesBackWhatWasExported) {
  const ExchangeCurve curve = Curve();
  const ImportedSpectrum spectrum = ImportCsv(CsvText(curve));
  EXPECT_EQ(spectrum.Reason, "");
  EXPECT_EQ(spectrum.Points, (Spectrum{curve.X, curve.Trans, curve.Abs}));
  EXPECT_FALSE(spectrum.ShowsTrans);
}

struct CsvCase {
  const char* Name;
  const char* Text;
  double Abs;
  double Trans;
};

class CsvShape : public testing::TestWithParam<CsvCase> {};

TEST_P(CsvShape, IsUnderstood) {
  const ImportedSpectrum spectrum = ImportCsv(GetParam().Text);
  ASSERT_EQ(spectrum.Reason, "");
  ASSERT_EQ(spectrum.Points.Size(), 2u);
  EXPECT_EQ(spectrum.Points.WL, (std::vector<double>{400.5, 401}));
  EXPECT_NEAR(spectrum.Points.Abs[0], GetParam().Abs, 1e-12);
  EXPECT_NEAR(spectrum.Points.Trans[0], GetParam().Trans, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(
    Tables, CsvShape,
    testing::Values(CsvCase{"Untitled", "400.5,0.25\n401,0.5\n", 0.25, TransFromAbs(0.25)},
                    CsvCase{"Falling", "401,0.5\r\n400.5,0.25\r\n", 0.25, TransFromAbs(0.25)},
                    CsvCase{"Semicolons", "nm;A\n400,5;0,25\n401;0,5\n", 0.25, TransFromAbs(0.25)},
                    CsvCase{"Tabs", "nm\t%T\n400.5\t50\n401\t60\n", AbsFromTrans(50), 50},
                    CsvCase{"InBrackets", "nm,T (%)\n400.5,50\n401,60\n", AbsFromTrans(50), 50},
                    CsvCase{"Percent", "Wavelength nm.,%T\n400.5,50\n401,60\n", AbsFromTrans(50), 50},
                    CsvCase{"BothSwapped", "nm,Trans,Abs\n400.5,7,8\n401,9,1\n", 8, 7},
                    CsvCase{"ByteOrderMark",
                            "\xEF\xBB\xBF"
                            "400.5,0.25\n401,0.5\n",
                            0.25, TransFromAbs(0.25)},
                    CsvCase{"Quoted", "\"x, nm\",\"Abs\"\n\"400.5\",\"0.25\"\n\"401\",\"0.5\"\n", 0.25,
                            TransFromAbs(0.25)},
                    CsvCase{"QuotedSeparator", "\"x, nm\",Trans,Abs\n400.5,7,8\n401,9,1\n", 8, 7},
                    CsvCase{"HeadLines", "Sample 7\n\nDate,2026-01-01\nnm,Abs\n400.5,0.25\n401,0.5\n", 0.25,
                            TransFromAbs(0.25)},
                    CsvCase{"EmptyColumnBehind", "nm,Abs,\n400.5,0.25,\n401,0.5,\n", 0.25,
                            TransFromAbs(0.25)}),
    [](const auto& instance) { return std::string(instance.param.Name); });

TEST(ImportCsv, SaysWhatStandsBehindTheTable) {
  const ImportedSpectrum spectrum = ImportCsv("400,1\n401,2\n\nInstrument,X\n402,3\n");
  EXPECT_EQ(spectrum.Points.Size(), 2u);
  EXPECT_EQ(spectrum.Remark, "2 lines behind the table");
}

TEST(ImportCsv, SaysHowManyPointsHaveNoNumbers) {
  const ImportedSpectrum spectrum = ImportCsv("nm,Abs\n400,1\n401,-\n402,3\n");
  EXPECT_EQ(spectrum.Points.WL, (std::vector<double>{400, 402}));
  EXPECT_EQ(spectrum.Remark, "1 point without numbers");
}

TEST(ImportCsv, RefusesWhatIsNoSpectrum) {
  EXPECT_EQ(ImportCsv("").Reason, "has no points");
  EXPECT_EQ(ImportCsv("nothing\nhere\n").Reason, "has no points");
  EXPECT_NE(ImportCsv("Time (s),Abs\n0,1\n").Reason.find("no wavelength"), std::string::npos);
  EXPECT_EQ(ImportCsv("nm,Abs 1,Abs 2\n400,1,2\n401,1,2\n").Reason, "it has several curves: Abs 2");
  for (const char* const title : {"Reflectance %", "Energy", "R%"}) {
    EXPECT_EQ(ImportCsv("nm," + std::string(title) + "\n400,1\n401,1\n").Reason,
              "a column of it is neither absorbance nor transmittance: " + std::string(title));
  }
  EXPECT_NE(ImportCsv("cm-1,Abs\n4000,1\n").Reason.find("no wavelength"), std::string::npos);
  std::string many;
  for (int i = 0; i < 10002; ++i) many += std::to_string(200 + i) + ",1\n";
  EXPECT_NE(ImportCsv(many).Reason.find("10001"), std::string::npos);
  EXPECT_EQ(ImportCsv(many.substr(0, many.rfind('\n', many.size() - 2) + 1)).Points.Size(), 10001u);
}

TEST(HomeView, HoldsEveryPoint) {
  ImportedSpectrum spectrum;
  spectrum.Points.Add(400, 150, -0.05);
  spectrum.Points.Add(700, -3, 1.23);
  const WLSOption option = HomeViewOf(spectrum);
  EXPECT_EQ(option.StartWavelength, 400);
  EXPECT_EQ(option.EndWavelength, 700);
  EXPECT_NEAR(option.AbsBottom, -0.1, 1e-12);
  EXPECT_NEAR(option.AbsTop, 1.3, 1e-12);
  EXPECT_EQ(option.TransBottom, -10);
  EXPECT_EQ(option.TransTop, 150);
  EXPECT_EQ(option.DisplayMode, 1);
}

}  // namespace
}  // namespace spectrane
