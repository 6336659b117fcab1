#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "base/notfinite.h"
#include "exchange/exchangecurve.h"
#include "exchange/importedspectrum.h"
#include "exchange/ordinates.h"

namespace spectrane {
namespace {

ExchangeCurve EvenSpectrum(std::size_t points) {
  ExchangeCurve curve;
  curve.Title = "holmium.wls";
  for (std::size_t i = 0; i < points; ++i) {
    curve.X.push_back((2300.0 + 5.0 * static_cast<double>(i)) / 10.0);
    curve.Abs.push_back(std::sin(static_cast<double>(i)));
    curve.Trans.push_back(100.0 * std::pow(10.0, -curve.Abs.back()));
  }
  return curve;
}

std::string LabelOf(const std::string& text, const std::string& label) {
  const std::size_t at = text.find("##" + label + "=");
  if (at == std::string::npos) return "missing";
  const std::size_t begin = at + label.size() + 3;
  return text.substr(begin, text.find('\r', begin) - begin);
}

TEST(JcampText, HasTheLabelsOfItsVersionInOrder) {
  const std::string text = JcampText(EvenSpectrum(30));
  EXPECT_TRUE(text.starts_with("##TITLE=holmium.wls\r\n##JCAMP-DX=4.24\r\n##DATA TYPE=UV/VIS SPECTRUM\r\n"));
  EXPECT_TRUE(text.ends_with("##END=\r\n"));
  EXPECT_EQ(LabelOf(text, "XUNITS"), "NANOMETERS");
  EXPECT_EQ(LabelOf(text, "YUNITS"), "ABSORBANCE");
  EXPECT_EQ(LabelOf(text, "FIRSTX"), "230");
  EXPECT_EQ(LabelOf(text, "LASTX"), "244.5");
  EXPECT_EQ(LabelOf(text, "DELTAX"), "0.5");
  EXPECT_EQ(LabelOf(text, "NPOINTS"), "30");
  EXPECT_EQ(LabelOf(text, "YFACTOR"), "1e-09");
  EXPECT_EQ(LabelOf(text, "XYDATA"), "(X++(Y..Y))");
  EXPECT_EQ(LabelOf(text, "FIRSTY"), "0");
}

TEST(JcampText, LinesAreShortAsciiAndBeginWithTheirAbscissa) {
  ExchangeCurve curve = EvenSpectrum(200);
  curve.Title = "Me\xC3\x9Fung $$ 5";
  std::istringstream lines(JcampText(curve));
  std::string line;
  bool data = false;
  while (std::getline(lines, line)) {
    EXPECT_EQ(line.back(), '\r');
    line.pop_back();
    EXPECT_LE(line.size(), 80u);
    for (const char c : line) EXPECT_TRUE(c >= 0x20 && c < 0x7F) << line;
    EXPECT_EQ(line.find("$$"), std::string::npos);
    if (line.starts_with("##")) {
      data = line.starts_with("##XYDATA");
    } else {
      EXPECT_TRUE(data);
      EXPECT_EQ(std::fmod(std::stod(line) * 10.0, 5.0), 0.0) << line;
    }
  }
}

TEST(JcampText, NinePlacesOfTheLargestValueAreKept) {
  ExchangeCurve curve = EvenSpectrum(3);
  curve.Abs = {12345.678901, 0.5, -1};
  const std::string text = JcampText(curve);
  EXPECT_EQ(LabelOf(text, "YFACTOR"), "0.0001");
  EXPECT_NE(text.find("230 123456789 5000 -10000\r\n"), std::string::npos) << text;
  curve.Abs = {0, 0, 0};
  EXPECT_NE(JcampText(curve).find("\r\n230 0 0 0\r\n"), std::string::npos);
}

TEST(JcampText, TransmittanceGoesFromZeroToOne) {
  ExchangeCurve curve = EvenSpectrum(2);
  curve.ShowsTrans = true;
  curve.Trans = {50, 25};
  const std::string text = JcampText(curve);
  EXPECT_EQ(LabelOf(text, "YUNITS"), "TRANSMITTANCE");
  EXPECT_EQ(LabelOf(text, "MAXY"), "0.5");
}

TEST(JcampText, PointsAtUnequalDistancesStandInPairs) {
  ExchangeCurve curve = EvenSpectrum(3);
  curve.X = {400, 401, 403};
  const std::string text = JcampText(curve);
  EXPECT_EQ(LabelOf(text, "XYPOINTS"), "(XY..XY)");
  EXPECT_NE(text.find("\r\n401, 0.8414709848078965\r\n"), std::string::npos) << text;
}

TEST(JcampText, ATimeScanIsInSeconds) {
  ExchangeCurve curve = EvenSpectrum(3);
  curve.TimeScanWavelength = 340.5;
  const std::string text = JcampText(curve);
  EXPECT_EQ(LabelOf(text, "XUNITS"), "SECONDS");
  EXPECT_EQ(LabelOf(text, "$WAVELENGTH"), "340.5");
  EXPECT_NE(ImportJcamp(text).Reason.find("SECONDS"), std::string::npos) << "is no spectrum";
}

TEST(ImportJcamp, TakesBackWhatWasExported) {
  for (const bool even : {true, false}) {
    ExchangeCurve curve = EvenSpectrum(101);
    if (!even) curve.X[50] += 0.1;
    const ImportedSpectrum spectrum = ImportJcamp(JcampText(curve));
    ASSERT_EQ(spectrum.Reason, "");
    EXPECT_EQ(spectrum.Points.WL, curve.X);
    for (std::size_t i = 0; i < curve.X.size(); ++i) {
      EXPECT_NEAR(spectrum.Points.Abs[i], curve.Abs[i], 1e-9);
    }
  }
}

TEST(ImportJcamp, AnUnknownValueIsPassedOver) {
  ExchangeCurve curve = EvenSpectrum(5);
  curve.Abs[2] = kNaN;
  const ImportedSpectrum spectrum = ImportJcamp(JcampText(curve));
  EXPECT_EQ(spectrum.Points.Size(), 4u);
  EXPECT_EQ(spectrum.Remark, "1 point without numbers");
}

/// A file of somebody else: labels in small letters, comments, a falling axis of wavenumbers.
std::string Foreign(const std::string& table, const std::string& npoints = "4") {
  return "##title= x $$ comment\n##jcamp-dx= 5.00\n##data type= UV/VIS SPECTRUM\n##X UNITS= 1/CM\n"
         "##y_units= % Transmittance\n##xfactor= 10\n##yfactor= 0.5\n##firstx= 40000\n##lastx= 10000\n"
         "##npoints= " +
         npoints + "\n##xydata= (X++(Y..Y)) $$ decreasing\n" + table + "##end=\n";
}

TEST(ImportJcamp, TakesWavenumbersAndPercent) {
  const ImportedSpectrum spectrum = ImportJcamp(Foreign("4000 100 120 $$ two\n2000 140 160\n"));
  ASSERT_EQ(spectrum.Reason, "");
  EXPECT_TRUE(spectrum.ShowsTrans);
  EXPECT_EQ(spectrum.Points.WL, (std::vector<double>{250, 333.333333, 500, 1000}));
  EXPECT_EQ(spectrum.Points.Trans, (std::vector<double>{50, 60, 70, 80}));
}

TEST(ImportJcamp, TakesTransmittanceFromZeroToOne) {
  ExchangeCurve curve = EvenSpectrum(2);
  curve.ShowsTrans = true;
  curve.Trans = {50, 25};
  const ImportedSpectrum spectrum = ImportJcamp(JcampText(curve));
  ASSERT_EQ(spectrum.Reason, "");
  EXPECT_TRUE(spectrum.ShowsTrans);
  EXPECT_EQ(spectrum.Points.Trans, curve.Trans);
}

TEST(ImportJcamp, TakesExponentsOfEitherLetter) {
  for (const char* first : {"40000", "4.0d4", "4.0D4", "4.0e4"}) {
    std::string text = Foreign("4000 100 120\n2000 140 160\n");
    text.replace(text.find("40000"), 5, first);
    const ImportedSpectrum spectrum = ImportJcamp(text);
    ASSERT_EQ(spectrum.Reason, "") << first;
    EXPECT_EQ(spectrum.Points.WL.front(), 250) << first;
  }
}

// 100, 120, 140; the next line says 140 again, as a check, and stands at that point.
TEST(ImportJcamp, TakesLinesOfDifferencesThatBeginWithTheLastValue) {
  const ImportedSpectrum spectrum = ImportJcamp(Foreign("4000A00K0K0\n2000A40K0\n"));
  ASSERT_EQ(spectrum.Reason, "");
  EXPECT_EQ(spectrum.Points.Trans, (std::vector<double>{50, 60, 70, 80}));
  EXPECT_EQ(ImportJcamp(Foreign("4000A00K0K0\n1000A40K0\n")).Reason, "its lines do not begin where they say");
}

TEST(ImportJcamp, RefusesDamage) {
  EXPECT_EQ(ImportJcamp(Foreign("4000 100 120 140 160\n", "5")).Reason, "states 5 points and has 4");
  EXPECT_EQ(ImportJcamp(Foreign("4000 100 120\n1000 140 160\n")).Reason,
            "its lines do not begin where they say");
  EXPECT_EQ(ImportJcamp(Foreign("4000 100 !! 140 160\n")).Reason, "a value that is no number");
  EXPECT_EQ(ImportJcamp("").Reason, "has no curve of JCAMP-DX");
  EXPECT_EQ(ImportJcamp("##TITLE=x\n##PEAK TABLE=(XY..XY)\n1,2\n##END=\n").Reason,
            "has no curve of JCAMP-DX");
  const std::string two = JcampText(EvenSpectrum(3)) + JcampText(EvenSpectrum(3));
  EXPECT_EQ(ImportJcamp(two).Reason, "has 2 curves, not one");
}

TEST(ImportJcamp, ABlockOfLinksAroundOneCurveIsNoMatter) {
  const std::string text =
      "##TITLE=all\n##DATA TYPE=LINK\n##BLOCKS=1\n" + JcampText(EvenSpectrum(3)) + "##END=\n";
  EXPECT_EQ(ImportJcamp(text).Points.Size(), 3u);
}

struct OrdinateCase {
  const char* Name;
  const char* Lines;
  std::vector<double> Values;
};

class OrdinateForm : public testing::TestWithParam<OrdinateCase> {};

TEST_P(OrdinateForm, IsRead) {
  const Ordinates read = ReadOrdinates(GetParam().Lines);
  EXPECT_EQ(read.Reason, "");
  EXPECT_EQ(read.Values, GetParam().Values);
}

// The same numbers in the forms of the format's own description.
INSTANTIATE_TEST_SUITE_P(
    Forms, OrdinateForm,
    testing::Values(OrdinateCase{"Plain", "0 1 2 3 3 2 1 0 -1 -2 -3\n", {1, 2, 3, 3, 2, 1, 0, -1, -2, -3}},
                    OrdinateCase{"Packed", "0+1+2+3+3+2+1+0-1-2-3\n", {1, 2, 3, 3, 2, 1, 0, -1, -2, -3}},
                    OrdinateCase{"Squeezed", "0ABCCBA@abc\n", {1, 2, 3, 3, 2, 1, 0, -1, -2, -3}},
                    OrdinateCase{"Differences", "0AJJ%jjjjjj\n10c\n", {1, 2, 3, 3, 2, 1, 0, -1, -2, -3}},
                    OrdinateCase{"Repeats", "0AJT%jX\n10c\n", {1, 2, 3, 3, 2, 1, 0, -1, -2, -3}},
                    OrdinateCase{"RepeatOfAValue", "0AV2\n", std::vector<double>(42, 1)},
                    OrdinateCase{"RepeatOfEightAndOfNine", "0AZ\n0As\n", std::vector<double>(17, 1)},
                    OrdinateCase{"LongNumbers", "599.860D0A2J05B3\n", {40, 12, 117, 23}},
                    OrdinateCase{"Exponents", "0 1.5E+2 2E-1\n", {150, 0.2}},
                    OrdinateCase{"TwoLinesOfDifferences", "0 A0J5\n1 B5J5\n2 D0\n", {10, 25, 40}}),
    [](const auto& instance) { return std::string(instance.param.Name); });

TEST(Ordinates, CheckValuesThatDoNotAgreeAreAReason) {
  EXPECT_EQ(ReadOrdinates("0A0J5\n1A6J5\n").Reason, "its check values do not agree");
  EXPECT_NE(ReadOrdinates("0 J5\n").Reason, "");
  EXPECT_NE(ReadOrdinates("0 1 U99999999\n").Reason, "") << "no memory for it";
  EXPECT_NE(ReadOrdinates("x 1\n").Reason, "");
}

}  // namespace
}  // namespace spectrane
