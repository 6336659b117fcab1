#include "exchange/exchangecurve.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "base/numbers.h"
#include "base/version.h"

namespace spectrane {
namespace {

constexpr const char* kCsvLineEnd = "\r\n";
constexpr const char* kJcampLineEnd = "\r\n";
/// Longest line of a JCAMP-DX file [characters].
constexpr std::size_t kLongestLine = 80;
constexpr double kSignificant = 999'999'999.0;

std::string CsvNumber(double value) {
  return std::isfinite(value) ? ShortestText(value) : "-";
}

/// ASCII in one line, without what begins a comment.
std::string LabelText(const std::string& text, const char* otherwise) {
  std::string plain;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0U) == 0x80U) continue;  // the rest of a character that has its "?" already
    const bool printable = byte >= 0x20 && byte < 0x7F;
    plain += !printable ? '?' : c == '$' && !plain.empty() && plain.back() == '$' ? '_' : c;
  }
  return plain.empty() ? otherwise : plain;
}

void AddLabel(std::string& text, const std::string& label, const std::string& value) {
  text += "##" + label + "=" + value + kJcampLineEnd;
}

bool IsEvenlySpaced(const std::vector<double>& x) {
  if (x.size() < 2) return false;
  const double step = (x.back() - x.front()) / static_cast<double>(x.size() - 1);
  if (!std::isfinite(step) || step == 0) return false;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (!(std::abs(x.front() + static_cast<double>(i) * step - x[i]) <= std::abs(step) * 1e-6)) return false;
  }
  return true;
}

/// Highest and lowest of the numbers among the values; 0 without any.
std::pair<double, double> ExtremesOf(const std::vector<double>& values) {
  double low = std::numeric_limits<double>::infinity();
  double high = -low;
  for (const double value : values) {
    if (!std::isfinite(value)) continue;
    low = std::min(low, value);
    high = std::max(high, value);
  }
  return low <= high ? std::pair{high, low} : std::pair{0.0, 0.0};
}

/// The power of ten by which whole numbers of nine digits stand for the values.
double FactorFor(const std::vector<double>& values) {
  const auto [high, low] = ExtremesOf(values);
  const double largest = std::max(std::abs(high), std::abs(low));
  if (largest == 0) return 1e-9;
  double factor = std::pow(10.0, std::ceil(std::log10(largest)) - 9.0);
  if (largest / factor > kSignificant) factor *= 10;
  return *ParseNumber(ShortestText(factor));
}

/// Lines that begin with x and hold as many ordinates as fit.
std::string DataLines(const std::vector<double>& x, const std::vector<double>& y, double factor) {
  std::string text;
  std::string line;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const std::string value =
        std::isfinite(y[i]) ? std::to_string(std::llround(y[i] / factor)) : std::string("?");
    if (!line.empty() && line.size() + 1 + value.size() > kLongestLine) {
      text += line + kJcampLineEnd;
      line.clear();
    }
    line += (line.empty() ? ShortestText(x[i]) : std::string()) + " " + value;
  }
  return line.empty() ? text : text + line + kJcampLineEnd;
}

std::string PointLines(const std::vector<double>& x, const std::vector<double>& y) {
  std::string text;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const auto number = [](double value) { return std::isfinite(value) ? ShortestText(value) : "?"; };
    text += number(x[i]) + ", " + number(y[i]) + kJcampLineEnd;
  }
  return text;
}

std::string HeadOf(const ExchangeCurve& curve) {
  std::string text;
  AddLabel(text, "TITLE", LabelText(curve.Title, "spectrum"));
  AddLabel(text, "JCAMP-DX", "4.24");
  AddLabel(text, "DATA TYPE", curve.TimeScanWavelength ? "UV/VIS TIME SCAN" : "UV/VIS SPECTRUM");
  AddLabel(text, "ORIGIN", LabelText(curve.Origin, "unknown"));
  AddLabel(text, "OWNER", LabelText(curve.Owner, "unknown"));
  AddLabel(text, "SPECTROMETER/DATA SYSTEM", "Spectrane " + VersionText());
  if (curve.TimeScanWavelength) AddLabel(text, "$WAVELENGTH", ShortestText(*curve.TimeScanWavelength));
  AddLabel(text, "XUNITS", curve.TimeScanWavelength ? "SECONDS" : "NANOMETERS");
  AddLabel(text, "YUNITS", curve.ShowsTrans ? "TRANSMITTANCE" : "ABSORBANCE");
  return text;
}

std::string LabelNumber(double value) {
  return std::isfinite(value) ? ShortestText(value) : "?";
}

}  // namespace

std::string CsvText(const ExchangeCurve& curve) {
  std::string text = std::string(curve.TimeScanWavelength ? "Time (s)" : "Wavelength (nm)") +
                     ",Absorbance (Abs),Transmittance (%T)" + kCsvLineEnd;
  for (std::size_t i = 0; i < curve.X.size(); ++i) {
    text +=
        CsvNumber(curve.X[i]) + "," + CsvNumber(curve.Abs[i]) + "," + CsvNumber(curve.Trans[i]) + kCsvLineEnd;
  }
  return text;
}

std::string JcampText(const ExchangeCurve& curve) {
  std::vector<double> y = curve.Abs;
  if (curve.ShowsTrans) {
    y = curve.Trans;
    for (double& value : y) value /= 100.0;
  }
  const bool even = IsEvenlySpaced(curve.X);
  const double factor = even ? FactorFor(y) : 1.0;
  const auto [highX, lowX] = ExtremesOf(curve.X);
  const auto [highY, lowY] = ExtremesOf(y);
  std::string text = HeadOf(curve);
  AddLabel(text, "XFACTOR", "1");
  AddLabel(text, "YFACTOR", ShortestText(factor));
  if (!curve.X.empty()) {
    AddLabel(text, "FIRSTX", LabelNumber(curve.X.front()));
    AddLabel(text, "LASTX", LabelNumber(curve.X.back()));
    if (even) {
      const double step = (curve.X.back() - curve.X.front()) / static_cast<double>(curve.X.size() - 1);
      AddLabel(text, "DELTAX", ShortestText(std::round(step * 1e9) / 1e9));
    }
    AddLabel(text, "MAXX", LabelNumber(highX));
    AddLabel(text, "MINX", LabelNumber(lowX));
    AddLabel(text, "MAXY", LabelNumber(highY));
    AddLabel(text, "MINY", LabelNumber(lowY));
    AddLabel(text, "FIRSTY", LabelNumber(y.front()));
  }
  AddLabel(text, "NPOINTS", std::to_string(curve.X.size()));
  AddLabel(text, even ? "XYDATA" : "XYPOINTS", even ? "(X++(Y..Y))" : "(XY..XY)");
  text += even ? DataLines(curve.X, y, factor) : PointLines(curve.X, y);
  AddLabel(text, "END", "");
  return text;
}

}  // namespace spectrane
