// Texts of others, broken in every way: nothing but a spectrum or a reason may come of them.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "exchange/exchangecurve.h"
#include "exchange/importedspectrum.h"

namespace spectrane {
namespace {

void ExpectSound(const ImportedSpectrum& spectrum, const std::string& text) {
  const Spectrum& points = spectrum.Points;
  ASSERT_EQ(points.Empty(), !spectrum.Reason.empty()) << text;
  ASSERT_LE(points.Size(), static_cast<std::size_t>(kMostSpectrumPoints));
  for (std::size_t i = 0; i < points.Size(); ++i) {
    ASSERT_TRUE(std::isfinite(points.WL[i]) && std::isfinite(points.Abs[i]) && std::isfinite(points.Trans[i]))
        << text;
    ASSERT_TRUE(i == 0 || points.WL[i - 1] <= points.WL[i]) << text;
  }
  if (points.Empty()) return;
  const WLSOption option = HomeViewOf(spectrum);
  ASSERT_TRUE(option.AbsTop > option.AbsBottom && option.TransTop > option.TransBottom) << text;
}

/// A piece of `text` is taken out, put in twice, or overwritten with what the formats are made of.
std::string Broken(std::string text, std::mt19937& random) {
  constexpr std::string_view kPieces = "0123456789+-.,;?%$#=EeDJSs@AaIi \t\r\n\"\xFF";
  const auto below = [&random](std::size_t limit) { return random() % std::max<std::size_t>(limit, 1); };
  for (std::size_t times = 1 + below(4); times > 0; --times) {
    const std::size_t at = below(text.size());
    const std::size_t size = 1 + below(8);
    switch (below(3)) {
      case 0:
        text.erase(at, size);
        break;
      case 1:
        text.insert(at, text.substr(below(text.size()), size));
        break;
      default:
        for (std::size_t i = at; i < std::min(at + size, text.size()); ++i) {
          text[i] = kPieces[below(kPieces.size())];
        }
    }
  }
  return text;
}

TEST(BrokenTexts, BecomeASpectrumOrAReason) {
  ExchangeCurve curve;
  curve.Title = "x";
  for (int i = 0; i < 24; ++i) {
    curve.X.push_back(400 + 0.5 * i);
    curve.Abs.push_back(std::sin(i));
    curve.Trans.push_back(50 + i);
  }
  const std::string compressed =
      "##TITLE=x\n##JCAMP-DX=4.24\n##XUNITS=1/"
      "CM\n##YUNITS=ABSORBANCE\n##XFACTOR=1\n##YFACTOR=0.5\n##FIRSTX=1000\n"
      "##LASTX=1009\n##NPOINTS=10\n##XYDATA=(X++(Y..Y))\n1000AJT%jX\n1009c\n##END=\n";
  curve.ShowsTrans = true;
  const std::string even = JcampText(curve);
  curve.X[3] += 0.1;
  const std::vector<std::string> whole = {compressed, even, JcampText(curve), CsvText(curve)};
  ASSERT_FALSE(ImportJcamp(compressed).Points.Empty()) << ImportJcamp(compressed).Reason;
  std::mt19937 random(20);
  for (int i = 0; i < 2000; ++i) {
    for (const std::string& text : whole) {
      const std::string broken = Broken(text, random);
      ASSERT_NO_FATAL_FAILURE(ExpectSound(ImportJcamp(broken), broken));
      ASSERT_NO_FATAL_FAILURE(ExpectSound(ImportCsv(broken), broken));
    }
  }
}

}  // namespace
}  // namespace spectrane
